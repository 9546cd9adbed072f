// Style sheets, markup and pictures for widgets.
// SPDX-License-Identifier: MIT

#include "ks_gui_style.h"

#include "ks_string.h"
#include "tests/host/host_fixture.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>

namespace {

using namespace kst;
using str::ToStd;

class GuiStyle : public HostTest {
protected:
    static std::string sheet(const QWidget& widget) { return ToStd(widget.styleSheet()); }
};

TEST_F(GuiStyle, writes_the_style_sheets_to_the_letter)
{
    QPushButton button;
    gui::SetButtonStyle(button, 14);
    EXPECT_EQ(sheet(button), "QPushButton { font-size: 14pt; font-weight: bold; color: #ffffff; }");
    QTableView table;
    gui::setTableViewCellPadding(table, 3);
    EXPECT_EQ(sheet(table), "QTableView::item { border: 0px; padding: 3px; }");
    QLineEdit edit;
    gui::MakeControlBackgroundRed(edit, "QLineEdit");
    EXPECT_EQ(sheet(edit), "QLineEdit {font-weight:600; background-color:#aa0000; border: none; }");
    gui::MakeControlForegroundOrange(edit, "QLineEdit");
    EXPECT_EQ(sheet(edit), "QLineEdit { font-weight:600; color:#FF9933;  }");
    QLabel label;
    gui::MakeLabelForegroundOrange(label);
    EXPECT_EQ(sheet(label), "QLabel { font-weight:600; color:#FF9933;  }");
}

TEST_F(GuiStyle, applies_them)
{
    QLabel label;
    gui::MakeLabelForegroundOrange(label);
    label.ensurePolished();
    EXPECT_EQ(label.palette().color(QPalette::WindowText), QColor(0xFF, 0x99, 0x33));
    QPushButton button;
    gui::SetButtonStyle(button, 21);
    button.ensurePolished();
    EXPECT_EQ(button.font().pointSize(), 21);
    EXPECT_TRUE(button.font().bold());
}

TEST_F(GuiStyle, writes_the_markup_to_the_letter)
{
    EXPECT_EQ(gui::MakeErrorButtonStyle("Overwrite"),
              "<span style=\"font-weight:600; background-color:#aa0000; border: none; \">Overwrite</span>");
    QLabel label;
    gui::SetErrorLabel(label, "This name is taken");
    EXPECT_EQ(ToStd(label.text()), "<b>This name is taken</b>");
}

TEST_F(GuiStyle, puts_a_whole_picture_into_the_markup)
{
    QPixmap pixmap(3, 2);
    pixmap.fill(QColor(10, 20, 30));
    const QString tag = gui::MakeHtmlImageTagQ(pixmap);
    const QString begin = QStringLiteral("<img src='data:image/png;base64,"), end = QStringLiteral("'>");
    ASSERT_TRUE(tag.startsWith(begin) && tag.endsWith(end)) << ToStd(tag);
    const QString text = tag.mid(begin.size(), tag.size() - begin.size() - end.size());
    QPixmap again;
    ASSERT_TRUE(again.loadFromData(QByteArray::fromBase64(text.toLatin1()), "PNG"));
    EXPECT_EQ(again.toImage().convertToFormat(QImage::Format_RGB32),
              pixmap.toImage().convertToFormat(QImage::Format_RGB32));
    EXPECT_TRUE(gui::MakeHtmlImageTagQ(QPixmap()).isEmpty());
}

TEST_F(GuiStyle, tints_a_picture_and_keeps_its_opacity)
{
    QImage image(3, 1, QImage::Format_ARGB32);
    image.setPixelColor(0, 0, QColor(0, 0, 0, 255));
    image.setPixelColor(1, 0, QColor(9, 200, 77, 0));
    image.setPixelColor(2, 0, QColor(255, 255, 255, 51));
    const QImage tinted = gui::CreateAlphaPixmap(image, QColor(255, 0, 0)).toImage();
    ASSERT_EQ(tinted.size(), image.size());
    EXPECT_EQ(tinted.pixelColor(0, 0), QColor(255, 0, 0));
    EXPECT_EQ(tinted.pixelColor(1, 0).alpha(), 0);
    EXPECT_EQ(tinted.pixelColor(2, 0), QColor(255, 0, 0, 51));
    EXPECT_TRUE(gui::CreateAlphaPixmap(QImage(), Qt::red).isNull());
}

TEST_F(GuiStyle, puts_a_controls_own_label_into_its_help)
{
    QCheckBox box(QStringLiteral("Create &head morph"));
    gui::SetHelp(box, "%%: the ``head'' part. %%.");
    const std::string label = "<b>\xE2\x80\x9C"
                              "Create head morph\xE2\x80\x9D</b>";
    EXPECT_EQ(ToStd(box.toolTip()), label + ": the \xE2\x80\x9Chead\xE2\x80\x9D part. " + label + ".");
    QGroupBox group(QStringLiteral("Bread && butter"));
    gui::SetHelp(group, "See %%");
    EXPECT_EQ(ToStd(group.toolTip()), "See <b>\xE2\x80\x9C"
                                      "Bread &amp; butter\xE2\x80\x9D</b>");
    QLineEdit edit;
    edit.setAccessibleName(QStringLiteral("Vendor <name>"));
    gui::SetHelp(edit, "%%");
    EXPECT_EQ(ToStd(edit.toolTip()), "<b>\xE2\x80\x9CVendor &lt;name&gt;\xE2\x80\x9D</b>");
}

TEST_F(GuiStyle, does_not_format_the_label_within_the_help)
{
    QCheckBox box(QStringLiteral("100%% ``sure''"));
    gui::SetHelp(box, "%%");
    EXPECT_TRUE(box.toolTip().contains(QStringLiteral("100%% ``sure"))) << ToStd(box.toolTip());
}

TEST_F(GuiStyle, leaves_a_tool_tip_alone_when_there_is_no_help)
{
    QCheckBox box;
    box.setToolTip(QStringLiteral("kept"));
    gui::SetHelp(box, "");
    EXPECT_EQ(ToStd(box.toolTip()), "kept");
}

} // namespace
