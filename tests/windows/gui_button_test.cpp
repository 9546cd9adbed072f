// Buttons whose clicks run a callback.
// SPDX-License-Identifier: MIT

#include "ks_gui_button.h"

#include "ks_exception.h"
#include "ks_string.h"
#include "tests/host/host_fixture.h"
#include "tests/windows/modal_answer.h"

#include <QAction>
#include <QHBoxLayout>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>
#include <QToolButton>
#include <QtTest/QTest>

namespace {

using namespace kst;
using str::ToStd;

const char* const knownIcon = ":/bootstrap/24/magic.png";

class GuiButton : public HostTest {
protected:
    QWidget window;
    QHBoxLayout row{&window};
};

TEST_F(GuiButton, runs_the_callback_at_each_click)
{
    QPushButton button(QStringLiteral("&Save"));
    ButtonHandler handler;
    int clicks = 0;
    handler.connect(
        button, [&] { ++clicks; }, "Press %% to go on.");
    QTest::mouseClick(&button, Qt::LeftButton);
    QTest::keyClick(&button, Qt::Key_Space);
    EXPECT_EQ(clicks, 2);
    EXPECT_EQ(ToStd(button.toolTip()), "Press <b>\xE2\x80\x9CSave\xE2\x80\x9D</b> to go on.");
}

TEST_F(GuiButton, survives_a_callback_that_destroys_its_handler)
{
    QPushButton button;
    auto handler = std::make_unique<ButtonHandler>();
    const auto kept = std::make_shared<int>(0);
    handler->connect(button, [&handler, kept] {
        handler.reset();
        ++*kept; // what the callback holds must still be there
    });
    QTest::mouseClick(&button, Qt::LeftButton);
    EXPECT_EQ(*kept, 1);
    EXPECT_EQ(handler, nullptr);
}

TEST_F(GuiButton, makes_tool_buttons_that_act_as_long_as_their_set_lives)
{
    auto buttons = std::make_unique<ToolButtons>();
    int clicks = 0;
    QToolButton& auto_ = buttons->addToolButton(
        row, knownIcon, [&] { ++clicks; }, "Auto", "Calculates a height.");
    QToolButton& help = buttons->addToolButton(
        row, ":/bootstrap/24/question-square.png", [] {}, "Help", "", 0);
    EXPECT_EQ(row.itemAt(0)->widget(), &help);
    EXPECT_EQ(row.itemAt(1)->widget(), &auto_);
    EXPECT_EQ(auto_.parentWidget(), &window);
    QTest::mouseClick(&auto_, Qt::LeftButton);
    EXPECT_EQ(clicks, 1);
    buttons.reset();
    QTest::mouseClick(&auto_, Qt::LeftButton);
    EXPECT_EQ(clicks, 1);
}

TEST_F(GuiButton, says_what_a_tool_button_does)
{
    QToolButton button;
    gui::SetUpToolButton(button, knownIcon, "Auto", "Calculates a height.");
    EXPECT_EQ(ToStd(button.toolTip()), "<b>Auto:</b> Calculates a height.");
    EXPECT_EQ(ToStd(button.accessibleName()), "Auto");
    EXPECT_EQ(ToStd(button.styleSheet()), "QToolButton { padding: 0px; margin: 0px; }");
    EXPECT_EQ(button.toolButtonStyle(), Qt::ToolButtonIconOnly);
    EXPECT_FALSE(button.icon().isNull());
    gui::SetUpToolButton(button, knownIcon, "Auto", "");
    EXPECT_EQ(ToStd(button.toolTip()), "<b>Auto</b>");
}

TEST_F(GuiButton, shows_its_text_when_there_is_no_such_picture)
{
    QToolButton button;
    gui::SetUpToolButton(button, ":/bootstrap/24/no-such-picture.png", "Auto", "");
    EXPECT_EQ(button.toolButtonStyle(), Qt::ToolButtonTextOnly);
    EXPECT_EQ(ToStd(button.text()), "Auto");
}

TEST_F(GuiButton, draws_its_picture_in_the_colours_of_button_texts)
{
    QToolButton button;
    gui::SetUpToolButton(button, knownIcon, "Auto", "");
    for (const auto& [mode, group] :
         {std::pair(QIcon::Normal, QPalette::Normal), std::pair(QIcon::Disabled, QPalette::Disabled)}) {
        const QImage image =
            button.icon().pixmap(QSize(24, 24), mode).toImage().convertToFormat(QImage::Format_ARGB32);
        ASSERT_EQ(image.size(), QSize(24, 24));
        const QRgb expected = button.palette().color(group, QPalette::ButtonText).rgb();
        int opaquePixels = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                if (qAlpha(image.pixel(x, y)) == 255) {
                    ++opaquePixels;
                    ASSERT_EQ(image.pixel(x, y), expected);
                }
        EXPECT_GT(opaquePixels, 0);
    }
}

TEST_F(GuiButton, makes_push_buttons_of_several_kinds)
{
    QAction receiver(nullptr);
    const QSignalSpy spy(&receiver, &QAction::triggered);
    QPushButton* const plain =
        gui::CreateAndConnectButtonClicked("Show in Parameters", &receiver, SLOT(trigger()), &window);
    EXPECT_EQ(ToStd(plain->text()), "Show in Parameters");
    QTest::mouseClick(plain, Qt::LeftButton);
    EXPECT_EQ(spy.count(), 1);

    QPushButton* const tiny = gui::CreateTinyPushButton("+", &window);
    EXPECT_LT(tiny->maximumWidth(), plain->sizeHint().width());
    EXPECT_GE(tiny->maximumWidth(), tiny->fontMetrics().boundingRect(QLatin1Char('+')).width());

    QMenu menu(QStringLiteral("More"));
    QPushButton* const drop = gui::CreateDropDownMenuButton(menu, &window);
    EXPECT_EQ(drop->menu(), &menu);
    EXPECT_EQ(ToStd(drop->text()), "More");
    EXPECT_EQ(ToStd(drop->styleSheet()), "QPushButton { font-size: 12pt; }");
}

} // namespace
