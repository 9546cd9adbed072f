// The boxes that tell of failures and successes, and the outermost handler.
// SPDX-License-Identifier: MIT

#include "ks_critical-box.h"

#include "ks_exception.h"
#include "ks_gui_button.h"
#include "ks_manual.h"
#include "ks_string.h"
#include "tests/host/host_fixture.h"
#include "tests/windows/modal_answer.h"
#include "tests/windows/picture.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <QtTest/QTest>

#include <dzmainwindow.h>

#include <memory>

namespace {

const char* const boxTitle = "Error \xE2\x80\x94 Kestrom's Gantrel V" GANTREL_VERSION;

using kst::str::ToQ;
using kst::str::ToStd;

class CriticalBox : public HostTest {
protected:
    QString newLogText() const { return LogText().mid(_logBefore); }

private:
    const int _logBefore = LogText().size();
};

TEST_F(CriticalBox, shows_heading_and_message_as_sentences_over_one_button)
{
    ModalAnswer box(Press("OK"));
    kst::daz::CriticalBox("could not convert figure", "failed to get Daz Studio main window", nullptr, true);
    ASSERT_TRUE(box.seen);
    EXPECT_EQ(ToStd(box.title), boxTitle);
    EXPECT_EQ(ToStd(box.text), "<p><b>Could not convert figure.</b></p>\n"
                               "<p>Failed to get Daz Studio main window.</p>");
    EXPECT_EQ(box.icon, QMessageBox::Critical);
    EXPECT_EQ(ToStd(box.buttons.join(QLatin1Char('|'))), "OK");
    EXPECT_TRUE(box.isModal);
}

TEST_F(CriticalBox, adds_no_full_stop_behind_what_ends_a_sentence_and_escapes_nothing)
{
    ModalAnswer box(Press("OK"));
    kst::daz::CriticalBox("Really?", "see <i>here</i>", nullptr, false);
    EXPECT_EQ(ToStd(box.text), "<p><b>Really?</b></p>\n<p>See <i>here</i></p>");
}

TEST_F(CriticalBox, writes_one_log_line_with_the_texts_as_they_were_given)
{
    ModalAnswer box(Press("OK"));
    kst::daz::CriticalBox("Could not convert figure", "missing morph name", nullptr, true);
    const QString line =
        QStringLiteral("KeGNT: Critical error message box in Kestrom's Gantrel V" GANTREL_VERSION ": "
                       "Could not convert figure: missing morph name");
    EXPECT_EQ(newLogText().count(line), 1) << ToStd(newLogText());
}

TEST_F(CriticalBox, writes_no_log_line_when_none_is_wanted)
{
    ModalAnswer box(Press("OK"));
    kst::daz::CriticalBox("Could not convert figure", "missing morph name", nullptr, false);
    EXPECT_TRUE(box.seen);
    EXPECT_FALSE(newLogText().contains(QStringLiteral("Critical error")));
}

TEST_F(CriticalBox, stands_over_the_given_parent)
{
    QWidget parent;
    ModalAnswer box(Press("OK"));
    kst::daz::CriticalBox("Heading", "message", &parent, false);
    EXPECT_EQ(box.parent, &parent);
}

TEST_F(CriticalBox, stands_over_the_hosts_dialog_parent_without_one)
{
    ASSERT_NE(dzApp->getInterface(), nullptr);
    ModalAnswer box(Press("OK"));
    kst::daz::CriticalBox("Heading", "message", nullptr, false);
    EXPECT_EQ(box.parent, static_cast<QWidget*>(dzApp->getInterface()));
}

TEST_F(CriticalBox, closes_on_escape)
{
    ModalAnswer box(PressKey(Qt::Key_Escape));
    kst::daz::CriticalBox("Heading", "message", nullptr, false);
    EXPECT_TRUE(box.seen);
}

TEST_F(CriticalBox, shows_all_of_its_text_at_a_large_font_too)
{
    for (const bool isLarge : {false, true}) {
        const auto large = isLarge ? std::make_unique<LargeFont>() : nullptr;
        ModalAnswer box([isLarge](QWidget& window) {
            const auto* const label = window.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
            ASSERT_TRUE(label);
            EXPECT_GE(label->height(), label->heightForWidth(label->width()));
            SavePicture(window, isLarge ? "critical-box-18pt" : "critical-box");
        });
        kst::daz::CriticalBox("Could not convert figure", "failed to get Daz Studio main window", nullptr,
                              false);
        EXPECT_TRUE(box.seen);
    }
}

TEST_F(CriticalBox, has_a_friendly_sister_that_tells_what_went_well_as_it_stands)
{
    QWidget parent;
    ModalAnswer box(Press("OK"));
    kst::daz::InfoBox("Morph support assets saved", "The 2 selected morphs have been saved to /library",
                      &parent);
    ASSERT_TRUE(box.seen);
    EXPECT_EQ(ToStd(box.title), "Kestrom's Gantrel V" GANTREL_VERSION);
    EXPECT_EQ(ToStd(box.text), "<p><b>Morph support assets saved</b></p>\n"
                               "<p>The 2 selected morphs have been saved to /library</p>");
    EXPECT_EQ(box.icon, QMessageBox::Information);
    EXPECT_EQ(ToStd(box.buttons.join(QLatin1Char('|'))), "OK");
    EXPECT_EQ(box.parent, &parent);
    EXPECT_FALSE(newLogText().contains(QStringLiteral("message box")));
}

TEST_F(CriticalBox, shows_what_a_button_throws_and_leaves_its_dialog_open)
{
    QDialog dialog;
    QPushButton button(&dialog);
    kst::ButtonHandler handler;
    handler.connect(button, [] { throw kst::Exception("missing morph name"); });
    dialog.show();
    ModalAnswer box(Press("OK"));
    QTest::mouseClick(&button, Qt::LeftButton);
    ASSERT_TRUE(box.seen);
    EXPECT_EQ(ToStd(box.title), boxTitle);
    EXPECT_EQ(ToStd(box.text),
              "<p><b>Unhandled exception in button handler.</b></p>\n<p>Missing morph name.</p>");
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_TRUE(
        newLogText().contains(QStringLiteral("Unhandled exception in button handler: missing morph name")));
}

TEST_F(CriticalBox, shows_a_cancellation_too_when_a_button_throws_it)
{
    QPushButton button;
    kst::ButtonHandler handler;
    handler.connect(button, [] { throw kst::CanceledException(); });
    ModalAnswer box(Press("OK"));
    QTest::mouseClick(&button, Qt::LeftButton);
    EXPECT_TRUE(box.text.contains(QStringLiteral("<p>Operation canceled.</p>"))) << ToStd(box.text);
}

TEST_F(CriticalBox, shows_a_standard_exception_under_its_own_text)
{
    QPushButton button;
    kst::ButtonHandler handler;
    handler.connect(button, std::function<void()>());
    ModalAnswer box(Press("OK"));
    QTest::mouseClick(&button, Qt::LeftButton);
    EXPECT_TRUE(box.text.contains(QStringLiteral("<p>Bad_function_call.</p>"))) << ToStd(box.text);
}

TEST_F(CriticalBox, tells_of_a_manual_that_is_not_there)
{
    ModalAnswer box(Press("OK"));
    kst::daz::OpenPluginManual("Gantrel for Genesis 9");
    ASSERT_TRUE(box.seen);
    EXPECT_EQ(ToStd(box.title), boxTitle);
    EXPECT_EQ(
        ToStd(box.text),
        "<p><b>Could not open PDF file.</b></p>\n<p>The file \xE2\x80\x9C" +
            ToStd(dzApp->getDocumentationPath()) +
            "/Plugins/Gantrel for Genesis 9/Gantrel for Genesis 9 Manual.pdf\xE2\x80\x9D does not exist. "
            "Did you install the plugin correctly?</p>");
    EXPECT_TRUE(
        newLogText().contains(QStringLiteral("V" GANTREL_VERSION ": Could not open PDF file: The file")));
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

using CriticalBoxDeathTest = CriticalBox;

TEST_F(CriticalBoxDeathTest, ends_the_process_when_a_handler_throws_anything_else)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_DEATH(kst::daz::CallOutermost("Heading", nullptr, [] { throw 1; }), "terminate called");
}

} // namespace
