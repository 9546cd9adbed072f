// Help texts, version texts and the manual.
// SPDX-License-Identifier: MIT

#include "ks_help.h"
#include "ks_manual.h"
#include "ks_string.h"
#include "tests/host/host_fixture.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>

namespace {

const std::string openQuote = "\xE2\x80\x9C";
const std::string closeQuote = "\xE2\x80\x9D";

TEST(HelpTexts, get_typographic_quotes)
{
    EXPECT_EQ(kst::daz::FormatHelp("a ``b'' c"), "a " + openQuote + "b" + closeQuote + " c");
    EXPECT_EQ(kst::daz::FormatHelp("%{x}%"), openQuote + "x" + closeQuote);
    EXPECT_EQ(kst::daz::FormatHelp("``''"), openQuote + closeQuote);
    EXPECT_EQ(kst::daz::FormatHelp("```b'''"), openQuote + "`b" + closeQuote + "'");
    EXPECT_EQ(kst::daz::FormatHelp("you must select two figures (a ``source'' Genesis 8 or 8.1 and a "
                                   "``target'' Genesis 9) in the scene"),
              "you must select two figures (a " + openQuote + "source" + closeQuote +
                  " Genesis 8 or 8.1 and a " + openQuote + "target" + closeQuote +
                  " Genesis 9) in the scene");
}

TEST(HelpTexts, replace_opening_marks_before_closing_ones)
{
    EXPECT_EQ(kst::daz::FormatHelp("a}%{b"), "a}\xE2\x80\x9C"
                                             "b");
}

TEST(HelpTexts, get_the_plugins_title)
{
    EXPECT_EQ(kst::daz::FormatHelp("%PLUGINNAME% help"), "Kestrom's Gantrel help");
    EXPECT_EQ(kst::daz::FormatHelpQ(kst::str::ToQ("%PLUGINNAME% %{help}%")),
              kst::str::ToQ("Kestrom's Gantrel " + openQuote + "help" + closeQuote));
}

TEST(HelpTexts, stay_as_they_are_without_a_marker)
{
    for (const char* const text : {"", "it's %% and {} `", "100 % {a} %d %PLUGIN%", "\xC3\xA4\n"})
        EXPECT_EQ(kst::daz::FormatHelp(text), text);
}

TEST(HelpTexts, name_the_version)
{
    EXPECT_EQ(kst::daz::MakeVersionStringOnly(), "V" GANTREL_VERSION);
    EXPECT_EQ(kst::daz::MakeExtendedVersionString(), "V" GANTREL_VERSION " (2023-06-22)");
}

TEST(HelpTexts, title_windows_with_and_without_a_title_of_their_own)
{
    EXPECT_EQ(kst::daz::MakeWindowTitle("Convert figure"),
              "Convert figure \xE2\x80\x94 Kestrom's Gantrel V" GANTREL_VERSION " (2023-06-22)");
    EXPECT_EQ(kst::daz::MakeWindowTitle(nullptr), "Kestrom's Gantrel V" GANTREL_VERSION " (2023-06-22)");
}

using ManualTest = HostTest;

TEST_F(ManualTest, is_shown_from_the_documentation_folder_by_its_path_as_it_is)
{
    const QString folder = dzApp->getDocumentationPath() + QStringLiteral("/Plugins/Gantrel for Genesis 9");
    ASSERT_TRUE(QDir().mkpath(folder));
    const QString path = folder + QStringLiteral("/Gantrel for Genesis 9 Manual.pdf");
    ASSERT_TRUE(QFile(path).open(QIODevice::WriteOnly));
    const int before = LogText().size();

    kst::daz::OpenPluginManual("Gantrel for Genesis 9");

    // The path begins with a slash of its own.
    const QString line = QStringLiteral("not shown without display: file:///") + path + QLatin1Char('\n');
    EXPECT_TRUE(path.startsWith(QLatin1Char('/')));
    EXPECT_TRUE(LogText().mid(before).contains(line)) << LogText().mid(before).toStdString();
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr) << "the wait cursor is gone";
}

} // namespace
