// The message box with buttons, check boxes and widgets of one's own.
// SPDX-License-Identifier: MIT

#include "ks_dlg_action-box.h"

#include "ks_help.h"
#include "ks_string.h"
#include "tests/host/host_fixture.h"
#include "tests/windows/modal_answer.h"
#include "tests/windows/picture.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStyle>
#include <QtTest/QTest>

#include <dzappsettings.h>

namespace {

using kst::ActionBoxDialog;
using kst::str::ToStd;

class ActionBox : public HostTest {
protected:
    static ActionBoxDialog* make(ActionBoxDialog::ButtonMode mode,
                                 ActionBoxDialog::Icon icon = ActionBoxDialog::Question)
    {
        return new ActionBoxDialog(nullptr, icon, "the morph exists", "overwrite it or keep both", nullptr,
                                   mode);
    }
    static std::string buttonsFromLeftToRight(const ActionBoxDialog& box)
    {
        std::string texts;
        const QHBoxLayout& row = box.getButtonLayout();
        for (int i = 0; i < row.count(); ++i)
            if (const auto* const button = qobject_cast<QPushButton*>(row.itemAt(i)->widget()))
                texts += (texts.empty() ? "" : "|") + ToStd(button->text());
        return texts;
    }
};

TEST_F(ActionBox, shows_heading_and_message_as_sentences_that_can_be_copied)
{
    const std::unique_ptr<ActionBoxDialog> box(make(ActionBoxDialog::OK));
    const auto* const label = box->findChild<QLabel*>(QStringLiteral("plblMessage"));
    ASSERT_TRUE(label);
    EXPECT_EQ(ToStd(label->text()), "<p><b>The morph exists.</b></p>\n<p>Overwrite it or keep both.</p>");
    EXPECT_TRUE(label->wordWrap());
    EXPECT_TRUE(label->textInteractionFlags() & Qt::TextSelectableByMouse);
}

TEST_F(ActionBox, has_its_layouts_by_name)
{
    const std::unique_ptr<ActionBoxDialog> box(make(ActionBoxDialog::OK));
    EXPECT_EQ(box->objectName(), QStringLiteral("ActionBox"));
    EXPECT_EQ(box->findChild<QVBoxLayout*>(QStringLiteral("pvertMain")), &box->getMainLayout());
    EXPECT_NE(box->findChild<QHBoxLayout*>(QStringLiteral("phorzLabel")), nullptr);
    EXPECT_NE(box->findChild<QVBoxLayout*>(QStringLiteral("pvertForCheckbox")), nullptr);
}

TEST_F(ActionBox, has_the_products_title_unless_it_is_given_one_to_put_before)
{
    const std::unique_ptr<ActionBoxDialog> plain(make(ActionBoxDialog::OK));
    EXPECT_EQ(ToStd(plain->windowTitle()),
              ToStd(QString::fromUtf8("Kestrom's Gantrel ")) + kst::daz::MakeExtendedVersionString());
    const ActionBoxDialog titled(nullptr, ActionBoxDialog::NoIcon, "a", "b", "Morph exists",
                                 ActionBoxDialog::OK);
    EXPECT_EQ(titled.windowTitle(), QStringLiteral("Morph exists \u2014 ") + plain->windowTitle());
}

TEST_F(ActionBox, has_the_buttons_of_its_mode_with_the_affirmative_one_at_the_right)
{
    const std::pair<ActionBoxDialog::ButtonMode, const char*> modes[] = {
        {ActionBoxDialog::OK, "OK"},
        {ActionBoxDialog::OKCancel, "Cancel|OK"},
        {ActionBoxDialog::YesNo, "No|Yes"},
        {ActionBoxDialog::YesNoCancel, "Cancel|No|Yes"},
        {ActionBoxDialog::CancelOnly, "Cancel"},
        {ActionBoxDialog::CustomButtons, ""},
    };
    for (const auto& [mode, texts] : modes) {
        const std::unique_ptr<ActionBoxDialog> box(make(mode));
        EXPECT_EQ(buttonsFromLeftToRight(*box), texts);
    }
}

TEST_F(ActionBox, gives_the_result_of_the_button_pressed)
{
    const std::pair<const char*, int> answers[] = {{"Yes", ActionBoxDialog::ResultYes},
                                                   {"No", ActionBoxDialog::ResultNo},
                                                   {"Cancel", ActionBoxDialog::ResultCancel}};
    for (const auto& [text, result] : answers) {
        const std::unique_ptr<ActionBoxDialog> box(make(ActionBoxDialog::YesNoCancel));
        ModalAnswer answer(Press(text));
        EXPECT_EQ(box->exec(), result) << text;
        EXPECT_TRUE(answer.seen);
    }
}

TEST_F(ActionBox, takes_escape_as_cancel_and_return_as_the_affirmative_button)
{
    for (const auto& [key, result] : {std::pair(Qt::Key_Escape, ActionBoxDialog::ResultCancel),
                                      std::pair(Qt::Key_Return, ActionBoxDialog::ResultYes)}) {
        const std::unique_ptr<ActionBoxDialog> box(make(ActionBoxDialog::YesNo));
        ModalAnswer answer(PressKey(key));
        EXPECT_EQ(box->exec(), result);
        EXPECT_TRUE(answer.seen);
    }
}

TEST_F(ActionBox, gives_the_code_of_a_button_of_ones_own)
{
    const std::unique_ptr<ActionBoxDialog> box(make(ActionBoxDialog::OKCancel));
    box->addButton("Keep both", ActionBoxDialog::CustomResult + 4);
    EXPECT_EQ(buttonsFromLeftToRight(*box), "Keep both|Cancel|OK");
    ModalAnswer answer(Press("Keep both"));
    EXPECT_EQ(box->exec(), ActionBoxDialog::CustomResult + 4);
    EXPECT_TRUE(answer.seen);
}

TEST_F(ActionBox, makes_the_first_button_the_default_also_among_custom_ones)
{
    const std::unique_ptr<ActionBoxDialog> box(make(ActionBoxDialog::CustomButtons));
    const QPushButton& first = box->addButton("Continue", ActionBoxDialog::ResultOK);
    const QPushButton& second = box->addButton("Skip", ActionBoxDialog::CustomResult);
    EXPECT_TRUE(first.isDefault());
    EXPECT_FALSE(second.isDefault());
    EXPECT_EQ(buttonsFromLeftToRight(*box), "Skip|Continue");
    EXPECT_EQ(second.nextInFocusChain(), &first);
}

TEST_F(ActionBox, stores_its_geometry_whichever_button_is_pressed)
{
    const QString group = QStringLiteral("Test/ActionBox"), key = QStringLiteral("winpos_box");
    const std::unique_ptr<ActionBoxDialog> box(make(ActionBoxDialog::YesNo));
    box->setWindowPosSettingsKey(group, key);
    ModalAnswer answer(Press("No"));
    box->exec();
    DzAppSettings settings(group);
    EXPECT_FALSE(settings.getStringValue(key).isEmpty());
    settings.removeValue(key);
}

TEST_F(ActionBox, shows_the_icon_of_its_kind_or_none)
{
    const std::unique_ptr<ActionBoxDialog> box(make(ActionBoxDialog::OK, ActionBoxDialog::NoIcon));
    const auto* const icon = box->findChild<QLabel*>(QStringLiteral("plblIcon"));
    ASSERT_TRUE(icon);
    box->show();
    EXPECT_FALSE(icon->isVisible());
    const std::pair<ActionBoxDialog::Icon, QStyle::StandardPixmap> icons[] = {
        {ActionBoxDialog::Question, QStyle::SP_MessageBoxQuestion},
        {ActionBoxDialog::Information, QStyle::SP_MessageBoxInformation},
        {ActionBoxDialog::Warning, QStyle::SP_MessageBoxWarning},
        {ActionBoxDialog::Critical, QStyle::SP_MessageBoxCritical}};
    for (const auto& [kind, standard] : icons) {
        box->setIcon(kind);
        EXPECT_TRUE(icon->isVisible());
        const QSize size = icon->pixmap(Qt::ReturnByValue).size();
        EXPECT_EQ(icon->pixmap(Qt::ReturnByValue).toImage(),
                  box->style()->standardIcon(standard, nullptr, box.get()).pixmap(size).toImage());
    }
}

TEST_F(ActionBox, holds_labels_check_boxes_and_widgets_below_the_message)
{
    const std::unique_ptr<ActionBoxDialog> box(make(ActionBoxDialog::OKCancel));
    const QLabel& label = box->addLabel("A <b>note</b>");
    const QCheckBox& check = box->addCheckBox("Do not &ask again", "%%: remembers the ``answer''.");
    auto* const edit = new QLineEdit;
    box->addWidget(*edit);
    box->show();
    const int messageBottom = box->findChild<QLabel*>(QStringLiteral("plblMessage"))->geometry().bottom();
    EXPECT_GT(label.y(), messageBottom);
    EXPECT_GT(check.y(), label.geometry().bottom());
    EXPECT_GT(edit->y(), check.geometry().bottom());
    EXPECT_GT(FindButton(*box, "OK")->y(), edit->geometry().bottom());
    EXPECT_EQ(ToStd(check.toolTip()), "<b>\xE2\x80\x9C"
                                      "Do not ask again\xE2\x80\x9D</b>: remembers the \xE2\x80\x9C"
                                      "answer\xE2\x80\x9D.");
    EXPECT_EQ(box->getMainLayout().parentWidget(), box.get());
}

TEST_F(ActionBox, shows_all_of_its_text_at_a_large_font_too)
{
    for (const bool isLarge : {false, true}) {
        const auto large = isLarge ? std::make_unique<LargeFont>() : nullptr;
        ActionBoxDialog box(
            nullptr, ActionBoxDialog::Question, "the morph exists",
            "a morph with the name \xE2\x80\x9CVera Head\xE2\x80\x9D is already on the target "
            "figure. You may overwrite it, or keep both under different names",
            "Morph exists", ActionBoxDialog::OKCancel);
        box.addCheckBox("Do not ask again", "");
        box.addButton("Keep both", ActionBoxDialog::CustomResult);
        box.show();
        const auto* const label = box.findChild<QLabel*>(QStringLiteral("plblMessage"));
        EXPECT_GE(label->height(), label->heightForWidth(label->width()));
        for (const QPushButton* const button : box.findChildren<QPushButton*>())
            EXPECT_GE(button->width(), button->fontMetrics().boundingRect(button->text()).width() +
                                           2 * button->fontMetrics().averageCharWidth());
        SavePicture(box, isLarge ? "action-box-18pt" : "action-box");
    }
}

} // namespace
