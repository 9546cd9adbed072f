// The application's look.
// SPDX-License-Identifier: MIT

#include "dzapp.h"
#include "dzstyle.h"
#include "tests/host/host_fixture.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QPainter>
#include <QSignalSpy>
#include <QStyle>
#include <QToolButton>

namespace {

class StyleTest : public HostTest {
protected:
    static QRect inkOf(const QPixmap& picture)
    {
        const QImage image = picture.toImage();
        QRegion ink;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                if (qAlpha(image.pixel(x, y)) > 64)
                    ink += QRect(x, y, 1, 1);
        return ink.boundingRect();
    }
    const DzStyle& style = *dzApp->getStyle();
};

TEST_F(StyleTest, tints_a_pictures_shape_with_the_buttons_text_colours)
{
    QToolButton button;
    ASSERT_TRUE(style.setStyledIcon(&button, QStringLiteral(":/bootstrap/24/magic.png")));
    const QColor wanted[] = {button.palette().color(QPalette::Active, QPalette::ButtonText),
                             button.palette().color(QPalette::Disabled, QPalette::ButtonText)};
    EXPECT_NE(wanted[0], wanted[1]);
    const QImage shape(QStringLiteral(":/bootstrap/24/magic.png"));
    const QIcon::Mode modes[] = {QIcon::Normal, QIcon::Disabled};
    for (int m = 0; m < 2; ++m) {
        const QImage icon = button.icon().pixmap(24, 24, modes[m]).toImage();
        ASSERT_EQ(icon.size(), shape.size());
        int opaque = 0;
        for (int y = 0; y < 24; ++y) {
            for (int x = 0; x < 24; ++x) {
                EXPECT_EQ(qAlpha(icon.pixel(x, y)), qAlpha(shape.pixel(x, y)));
                if (qAlpha(icon.pixel(x, y)) == 255) {
                    EXPECT_EQ(icon.pixelColor(x, y), wanted[m]);
                    ++opaque;
                }
            }
        }
        EXPECT_GT(opaque, 0);
    }
}

/// Which asks for the picture of a place with twice its pixels.
TEST_F(StyleTest, fills_the_place_of_an_icon_on_a_dense_screen_too)
{
    for (const char* const name : {":/bootstrap/24/magic.png", "add", "restore"}) {
        QToolButton button;
        ASSERT_TRUE(style.setStyledIcon(&button, QLatin1String(name)));
        const QRect once = inkOf(button.icon().pixmap(24, 24)), twice = inkOf(button.icon().pixmap(48, 48));
        EXPECT_NEAR(twice.width(), 2 * once.width(), 3) << name;
        EXPECT_NEAR(twice.height(), 2 * once.height(), 3) << name;
        EXPECT_GT(twice.width(), 24) << name;
        QPixmap dense(48, 48);
        dense.setDevicePixelRatio(2.0);
        dense.fill(Qt::transparent);
        QPainter painter(&dense);
        button.icon().paint(&painter, QRect(0, 0, 24, 24));
        painter.end();
        EXPECT_NEAR(inkOf(dense).width(), twice.width(), 2) << name;
    }
}

TEST_F(StyleTest, leaves_a_button_alone_when_there_is_no_such_picture)
{
    QToolButton button;
    EXPECT_FALSE(style.setStyledIcon(&button, QStringLiteral(":/nothing.png")));
    EXPECT_TRUE(button.icon().isNull());
    EXPECT_TRUE(style.standardPixmap(QStringLiteral(":/nothing.png")).isNull());
    EXPECT_FALSE(style.standardPixmap(QStringLiteral(":/bootstrap/24/magic.png")).isNull());
}

TEST_F(StyleTest, has_pictures_of_its_own)
{
    std::vector<QImage> pictures;
    for (const char* const name : {"add", "remove", "close", "left", "right", "up", "down", "restore"}) {
        const QImage picture = style.standardPixmap(QLatin1String(name)).toImage();
        ASSERT_FALSE(picture.isNull()) << name;
        for (const QImage& other : pictures)
            EXPECT_NE(picture, other) << name;
        pictures.push_back(picture);
        QToolButton button;
        EXPECT_TRUE(style.setStyledIcon(&button, QLatin1String(name)));
        EXPECT_FALSE(button.icon().isNull());
    }
    EXPECT_FALSE(style.setStyledIcon(nullptr, QStringLiteral("add")));
}

TEST_F(StyleTest, tells_when_colours_or_font_change)
{
    qRegisterMetaType<DzStyle*>();
    const QSignalSpy spy(dzApp, SIGNAL(styleChanged(DzStyle*)));
    const QPalette palette = QApplication::palette();
    QPalette lighter = palette;
    lighter.setColor(QPalette::Window, palette.color(QPalette::Window).lighter());
    QApplication::setPalette(lighter);
    EXPECT_EQ(style.getInterfaceColor(QStringLiteral("Window")), lighter.color(QPalette::Window));
    QApplication::setPalette(palette);
    EXPECT_EQ(spy.size(), 2);
}

TEST_F(StyleTest, names_colours_of_the_palette)
{
    EXPECT_EQ(style.getInterfaceColor(QStringLiteral("ButtonText")),
              QApplication::palette().color(QPalette::ButtonText));
    EXPECT_FALSE(style.getInterfaceColor(QStringLiteral("NoSuchColour")).isValid());
}

TEST_F(StyleTest, has_measures_that_grow_with_the_font)
{
    const QFont before = QApplication::font();
    int measures[3];
    for (const int metric : {DZ_PM_GeneralMargin, DZ_PM_ButtonHeight, DZ_PM_ButtonMinWidth})
        measures[metric] = style.pixelMetric(metric);
    QFont large = before;
    large.setPointSize(2 * before.pointSize());
    QApplication::setFont(large);
    for (const int metric : {DZ_PM_GeneralMargin, DZ_PM_ButtonHeight, DZ_PM_ButtonMinWidth})
        EXPECT_GT(style.pixelMetric(metric), measures[metric]);
    QApplication::setFont(before);
    EXPECT_EQ(style.pixelMetric(99), 0);
}

TEST_F(StyleTest, sets_light_text_on_dark_windows)
{
    const QPalette palette = QApplication::palette();
    for (const auto& [ink, ground] :
         {std::pair(QPalette::WindowText, QPalette::Window), std::pair(QPalette::Text, QPalette::Base),
          std::pair(QPalette::ButtonText, QPalette::Button)})
        EXPECT_GT(palette.color(ink).lightness(), palette.color(ground).lightness() + 100);
}

TEST_F(StyleTest, draws_boxes_to_check_as_large_as_the_letters_beside_them)
{
    QCheckBox box;
    for (const int points : {9, 12, 18, 30}) {
        QFont font = QApplication::font();
        font.setPointSize(points);
        box.setFont(font);
        for (const QStyle::PixelMetric metric :
             {QStyle::PM_IndicatorWidth, QStyle::PM_IndicatorHeight, QStyle::PM_ExclusiveIndicatorWidth,
              QStyle::PM_ExclusiveIndicatorHeight})
            EXPECT_GE(box.style()->pixelMetric(metric, nullptr, &box), box.fontMetrics().ascent()) << points;
    }
}

TEST_F(StyleTest, leaves_the_buttons_of_dialogs_without_pictures)
{
    const QDialogButtonBox buttons(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    ASSERT_EQ(buttons.buttons().size(), 2);
    EXPECT_FALSE(QApplication::style()->styleHint(QStyle::SH_DialogButtonBox_ButtonsHaveIcons));
    for (const QAbstractButton* const button : buttons.buttons())
        EXPECT_TRUE(button->icon().isNull()) << button->text().toStdString();
}

} // namespace
