// The pictures on the buttons beside a dial.
// SPDX-License-Identifier: MIT

#include "ks_gui_button.h"
#include "tests/windows/success_dialog_scene.h"

#include <QImage>
#include <QToolButton>

namespace {

QImage PictureOn(const QToolButton& button)
{
    return button.icon().pixmap(button.iconSize()).toImage();
}

QImage PictureOf(const char* file)
{
    QToolButton button;
    kst::gui::SetUpToolButton(button, file, "Name", "");
    return PictureOn(button);
}

using DialIcons = SuccessDialogTest;

TEST_F(DialIcons, point_to_both_ends_and_show_the_default_between_them)
{
    open({"Vera"});
    const QImage left = PictureOf(":/bootstrap/24/chevron-bar-left.png");
    const QImage middle = PictureOf(":/bootstrap/24/stop-circle.png");
    const QImage right = PictureOf(":/bootstrap/24/chevron-bar-right.png");
    ASSERT_TRUE(!left.isNull() && left != middle && middle != right && right != left);
    EXPECT_EQ(PictureOn(dialButton(0, "Min")), left);
    EXPECT_EQ(PictureOn(dialButton(0, "Default")), middle);
    EXPECT_EQ(PictureOn(dialButton(0, "Max")), right);
}

} // namespace
