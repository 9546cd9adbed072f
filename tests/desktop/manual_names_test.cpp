// The user manual's words against those of the program: controls, messages, keys and settings.
// SPDX-License-Identifier: MIT

#include "tests/desktop/desktop_fixture.h"
#include "tests/desktop/manual_reading.h"

#include <QAction>
#include <QDir>
#include <QFileInfo>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>
#include <QRegularExpression>

#include <algorithm>

#include <dzappsettings.h>
#include <dzmainwindow.h>

namespace {

/// The texts that a source file throws.
QStringList MessagesIn(const QString& source)
{
    static const QRegularExpression thrown(
        QStringLiteral("\\bException\\([^\";]*((?:\"(?:[^\"\\\\]|\\\\.)*\"\\s*)+)"));
    static const QRegularExpression literal(QStringLiteral("\"((?:[^\"\\\\]|\\\\.)*)\""));
    QStringList messages;
    const QString code = QString::fromUtf8(BytesOf(source));
    for (auto found = thrown.globalMatch(code); found.hasNext();) {
        QString message;
        for (auto part = literal.globalMatch(found.next().captured(1)); part.hasNext();)
            message += part.next().captured(1);
        messages << message;
    }
    return messages;
}

QString WithoutMnemonic(QString text)
{
    return text.remove(QLatin1Char('&'));
}

/// The texts of a form's controls, and those of its standard buttons.
QStringList TextsOfForm(const QString& code)
{
    static const QRegularExpression text(QStringLiteral("<string[^>]*>([^<]*)</string>"));
    static const QRegularExpression standard(QStringLiteral("QDialogButtonBox::(\\w+)"));
    QStringList texts;
    for (auto found = text.globalMatch(code); found.hasNext();)
        texts << found.next().captured(1).remove(QRegularExpression(QStringLiteral(":? *$")));
    for (auto found = standard.globalMatch(code); found.hasNext();) {
        const QString button = found.next().captured(1);
        texts << (button == QLatin1String("Ok") ? QStringLiteral("OK") : button);
    }
    return texts;
}

QStringList TextsOfCode(const QString& code)
{
    static const QRegularExpression text(QStringLiteral("\"([^\"\\n]+)\""));
    QStringList texts;
    for (auto found = text.globalMatch(code); found.hasNext();)
        texts << WithoutMnemonic(found.next().captured(1));
    return texts;
}

/// What stands on controls, of all files that match, such as "plugin/gnt_dlg_success*".
QStringList TextsOnControls(const QStringList& patterns)
{
    QStringList texts;
    for (const QString& pattern : patterns) {
        const QDir folder(QStringLiteral(GANTREL_SOURCE "/") + QFileInfo(pattern).path());
        const QStringList names = folder.entryList({QFileInfo(pattern).fileName()}, QDir::Files);
        EXPECT_FALSE(names.isEmpty()) << pattern.toStdString();
        for (const QString& name : names) {
            const QString code = QString::fromUtf8(BytesOf(folder.filePath(name)));
            texts += name.endsWith(QLatin1String(".ui")) ? TextsOfForm(code) : TextsOfCode(code);
        }
    }
    return texts;
}

/// Where a chapter's controls are.
QStringList SourcesOfChapter(const QString& chapter)
{
    QStringList sources{QStringLiteral("plugin/gnt_dlg_convert*.cpp"),
                        QStringLiteral("shared/forms/gnt_dlg_convert.ui")};
    const auto isOneOf = [&chapter](const QStringList& begins) {
        return std::any_of(begins.begin(), begins.end(),
                           [&chapter](const QString& begin) { return chapter.startsWith(begin); });
    };
    if (isOneOf({QStringLiteral("02"), QStringLiteral("03")}))
        sources << QStringLiteral("plugin/gnt_actions.cpp");
    if (isOneOf({QStringLiteral("03"), QStringLiteral("06")}))
        sources << QStringLiteral("plugin/gnt_dlg_success*.cpp")
                << QStringLiteral("shared/forms/gnt_dlg_success.ui");
    if (isOneOf({QStringLiteral("04")}))
        sources << QStringLiteral("shared/ks_gui_button.cpp")
                << QStringLiteral("shared/forms/ks_dlg_morph-path.ui");
    if (isOneOf({QStringLiteral("08")}))
        sources << QStringLiteral("host/figure/shape.cpp");
    if (isOneOf({QStringLiteral("02"), QStringLiteral("09")}))
        sources << QStringLiteral("apps/desktop/*.cpp") << QStringLiteral("apps/desktop/jobs/*.cpp")
                << QStringLiteral("host/ui/*.cpp");
    return sources;
}

const QLatin1String betweenMenus(" > ");

/// What a chapter has in bold letters: names on controls, and paths through menus. Words with a full stop
/// begin a paragraph, and keys are on no control.
QStringList NamesInBold(const QString& chapter)
{
    static const QRegularExpression bold(QStringLiteral("\\*\\*([^*]+)\\*\\*"));
    static const QRegularExpression key(QStringLiteral("^(Ctrl|Alt|Shift|F\\d+)(\\+\\w+)*$"));
    QStringList names;
    for (auto found = bold.globalMatch(ChapterText(chapter)); found.hasNext();) {
        const QString words = found.next().captured(1);
        const bool isBeginning = words.endsWith(QLatin1Char('.')) && !words.endsWith(QLatin1String("..."));
        if (!isBeginning && !key.match(words).hasMatch())
            names << words;
    }
    return names;
}

TEST(ManualNames, calls_every_control_by_the_name_that_stands_on_it)
{
    int seen = 0;
    for (const QString& chapter : ChapterFiles()) {
        const QStringList texts = TextsOnControls(SourcesOfChapter(chapter));
        for (const QString& name : NamesInBold(chapter)) {
            if (name.contains(betweenMenus))
                continue;
            // A level stands in brackets behind the resolution's name.
            const auto isOn = [&name](const QString& text) {
                return text == name || text.startsWith(name + QStringLiteral(" ("));
            };
            EXPECT_TRUE(std::any_of(texts.begin(), texts.end(), isOn))
                << chapter.toStdString() << ": " << name.toStdString();
            ++seen;
        }
    }
    EXPECT_GT(seen, 50);
}

TEST(ManualNames, tells_of_every_control_of_the_dialogs)
{
    const QString warning = QStringLiteral("Note: Subd morphs can take several minutes to convert!");
    const QStringList replaced{QStringLiteral("Dialog"), QStringLiteral("TBR1"), QStringLiteral("Subd"),
                               QStringLiteral("You are about to convert the active morphs in the selected")};
    QStringList told;
    for (const QString& chapter : ChapterFiles())
        told += NamesInBold(chapter);
    const QStringList texts = TextsOnControls({QStringLiteral("shared/forms/gnt_*.ui")});
    EXPECT_GT(texts.size(), 15);
    for (const QString& text : texts) {
        if (!replaced.contains(text) && text != warning) {
            EXPECT_TRUE(told.contains(text)) << text.toStdString();
        }
    }
    EXPECT_TRUE(HasMessage(warning));
}

TEST(ManualNames, tells_of_every_message_that_the_product_throws)
{
    const QDir plugin(QStringLiteral(GANTREL_SOURCE "/plugin"));
    QStringList messages;
    for (const QString& name : plugin.entryList({QStringLiteral("*.cpp")}, QDir::Files))
        messages += MessagesIn(plugin.filePath(name));
    EXPECT_TRUE(messages.contains(QStringLiteral("source figure {} has no morphs dialed in; nothing to do")));
    for (const QString& message : qAsConst(messages))
        EXPECT_TRUE(HasMessage(message));
}

TEST(ManualNames, tells_of_the_messages_of_the_library_below)
{
    const QDir library(QStringLiteral(GANTREL_SOURCE "/shared"));
    // What is not among them is not reached from the product.
    for (const char* const name :
         {"ks_daz-properties.cpp", "ks_filtered-save.cpp", "ks_morph-loader.cpp", "ks_obj-settings.cpp",
          "ks_qt-magic.cpp", "ks_transfer-utility.cpp", "ks_daz-managers.cpp"})
        for (const QString& message : MessagesIn(library.filePath(QLatin1String(name))))
            EXPECT_TRUE(HasMessage(message)) << name;
    for (const char* const message :
         {"node {} is not a DzFigure", "failed to export OBJ {}: {}", "failed to export import OBJ {}: {}",
          "cannot find morph {} in node {}", "expected modifier to have exactly one property",
          "failed to get Daz Studio main window", "failed to get Daz Studio content manager",
          "failed to get Daz Studio asset manager", "failed to get Daz Studio asset IO manager",
          "failed to get Daz Studio action manager", "failed to find DzObjExporter",
          "failed to find DzObjImporter", "failed to invoke DzParametersPane::jumpToProperty()",
          "The file {} does not exist. Did you install the plugin correctly?"})
        EXPECT_TRUE(HasMessage(QLatin1String(message)));
}

TEST(ManualNames, tells_of_the_headings_of_the_boxes)
{
    for (const char* const heading :
         {"Could not convert figure", "Could not open PDF file", "Failed to save morph support assets",
          "Unhandled exception in button handler"})
        EXPECT_TRUE(HasMessage(QLatin1String(heading)));
}

class ManualNamesOfTheDesktop : public DesktopTest {};

TEST_F(ManualNamesOfTheDesktop, leads_through_menus_that_are_there)
{
    start();
    QStringList present;
    for (const QAction* const menu : window().menuBar()->actions())
        for (const QAction* const action : menu->menu()->actions())
            present << WithoutMnemonic(menu->text()) + betweenMenus + WithoutMnemonic(action->text());
    int seen = 0;
    for (const QString& chapter : ChapterFiles()) {
        for (const QString& path : NamesInBold(chapter).filter(betweenMenus)) {
            EXPECT_TRUE(present.contains(path)) << chapter.toStdString() << ": " << path.toStdString();
            ++seen;
        }
    }
    EXPECT_GT(seen, 5);
}

TEST_F(ManualNamesOfTheDesktop, tells_keys_that_the_menus_have)
{
    start();
    QStringList present;
    for (const QAction* const menu : window().menuBar()->actions())
        for (const QAction* const action : menu->menu()->actions())
            present << action->shortcut().toString(QKeySequence::PortableText);
    const QString keyboard = ChapterText(QStringLiteral("15-keyboard.md"));
    const QRegularExpression told(QStringLiteral("Ctrl\\+[\\w+]+|\\bDel\\b"));
    int seen = 0;
    for (auto found = told.globalMatch(keyboard); found.hasNext(); ++seen) {
        const QString keys = found.next().captured();
        EXPECT_TRUE(present.contains(keys)) << keys.toStdString();
    }
    EXPECT_GT(seen, 8);
}

TEST_F(ManualNamesOfTheDesktop, shows_the_setting_as_it_stands_in_the_file)
{
    start();
    DzAppSettings settings(QStringLiteral("Kestrom's Gantrel"));
    settings.setBoolValue(QStringLiteral("use-own-temp-folder"), true);
    const QString chapter = ChapterText(QStringLiteral("05-during-a-conversion.md"));
    const QString line = chapter.section(QStringLiteral("```\n"), 1, 1).trimmed();
    EXPECT_TRUE(line.contains(QStringLiteral("use-own-temp-folder")));
    const QByteArray stored = BytesOf(dzApp->getAppDataPath() + QStringLiteral("/settings.json"));
    EXPECT_TRUE(stored.contains(line.toUtf8())) << stored.constData();
    settings.removeValue(QStringLiteral("use-own-temp-folder"));
}

} // namespace
