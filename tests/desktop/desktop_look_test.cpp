// The dark and the light look: what is written can be read in both.
// SPDX-License-Identifier: MIT

#include "apps/desktop/desktop_settings.h"
#include "apps/desktop/drawn_icons.h"
#include "apps/desktop/preferences_dialog.h"
#include "openhost/look.h"
#include "tests/desktop/desktop_fixture.h"
#include "tests/plugin/mini_scene.h"
#include "tests/windows/modal_answer.h"
#include "tests/windows/picture.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QStyleOptionButton>
#include <QToolBar>
#include <QToolButton>
#include <QtTest/QTest>

#include <cmath>
#include <map>

#include <dzapp.h>
#include <dzfigure.h>
#include <dzfloatproperty.h>
#include <dzmainwindow.h>
#include <dzmorph.h>
#include <dzobject.h>
#include <dzpane.h>
#include <dzstyle.h>

namespace {

/// Relative luminance as the guidelines for accessible content have it.
double Luminance(QRgb color)
{
    const auto linear = [](int part) {
        const double c = part / 255.0;
        return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(qRed(color)) + 0.7152 * linear(qGreen(color)) + 0.0722 * linear(qBlue(color));
}

double Contrast(QRgb a, QRgb b)
{
    const double first = Luminance(a) + 0.05, second = Luminance(b) + 0.05;
    return std::max(first, second) / std::min(first, second);
}

/// Of the ink that differs most, against what most of the picture shows.
double ContrastIn(const QImage& picture)
{
    std::map<QRgb, int> counts;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            ++counts[picture.pixel(x, y)];
    const auto ground = std::max_element(counts.begin(), counts.end(),
                                         [](const auto& a, const auto& b) { return a.second < b.second; });
    double best = 1.0;
    for (const auto& color : counts)
        best = std::max(best, Contrast(color.first, ground->first));
    return best;
}

/// The name of a button with a picture is not written on it.
QString TextOn(const QWidget& widget)
{
    const auto* const tool = qobject_cast<const QToolButton*>(&widget);
    if (tool && tool->toolButtonStyle() == Qt::ToolButtonIconOnly && !tool->icon().isNull())
        return QString();
    if (const auto* const label = qobject_cast<const QLabel*>(&widget))
        return label->text();
    if (const auto* const button = qobject_cast<const QAbstractButton*>(&widget))
        return button->text();
    if (const auto* const line = qobject_cast<const QLineEdit*>(&widget))
        return line->text();
    return QString();
}

/// Without the frame around it, which may differ from the ground as letters do not.
QRect PlaceOfText(const QWidget& widget)
{
    constexpr int frame = 6;
    QStyleOptionButton option;
    option.initFrom(&widget);
    if (qobject_cast<const QCheckBox*>(&widget))
        return widget.style()->subElementRect(QStyle::SE_CheckBoxContents, &option, &widget);
    if (qobject_cast<const QRadioButton*>(&widget))
        return widget.style()->subElementRect(QStyle::SE_RadioButtonContents, &option, &widget);
    const auto* const label = qobject_cast<const QLabel*>(&widget);
    if (label)
        return label->contentsRect();
    const int above = std::max(0, (widget.height() - widget.fontMetrics().height()) / 2);
    return widget.rect().adjusted(std::min(frame, widget.width() / 4), above,
                                  -std::min(frame, widget.width() / 4), -above);
}

/// @param least  so many texts at least are to be met
void ExpectReadable(QWidget& window, int least, const char* where)
{
    if (QWidget* const focus = window.focusWidget())
        focus->clearFocus(); // its caret is no letter
    QCoreApplication::processEvents();
    const QImage picture = window.grab().toImage();
    int texts = 0;
    for (const QWidget* const widget : window.findChildren<QWidget*>()) {
        const QRect place = PlaceOfText(*widget).translated(widget->mapTo(&window, QPoint()));
        if (!widget->isVisible() || !widget->isEnabled() || TextOn(*widget).trimmed().isEmpty() ||
            widget->visibleRegion().boundingRect().size() != widget->size())
            continue;
        ++texts;
        EXPECT_GE(ContrastIn(picture.copy(place)), 4.5)
            << where << ": " << widget->metaObject()->className() << " " << TextOn(*widget).toStdString();
    }
    EXPECT_GE(texts, least) << where;
}

class DesktopLook : public DesktopTest {
protected:
    void TearDown() override
    {
        openhost::SetLook(openhost::Look::Dark);
        DesktopTest::TearDown();
    }
    static QAction& lookEntry(const char* text)
    {
        for (QAction* const action : entry("Look")->menu()->actions())
            if (action->text().remove(QLatin1Char('&')) == QLatin1String(text))
                return *action;
        throw std::out_of_range(text);
    }
    static void take(openhost::Look look)
    {
        lookEntry(look == openhost::Look::Dark ? "Dark" : "Light").trigger();
        QCoreApplication::processEvents();
    }
    /// In both looks, from one to the other while the window is open.
    template <class Check>
    static void inBoth(const Check& check)
    {
        for (const openhost::Look look : {openhost::Look::Light, openhost::Look::Dark}) {
            take(look);
            check(look == openhost::Look::Dark ? "dark" : "light");
        }
    }
    static QRgb cornerOf(QWidget& window) { return window.grab().toImage().pixel(3, window.height() - 3); }
};

} // namespace

TEST(Contrast, is_that_of_ink_and_ground)
{
    EXPECT_NEAR(Contrast(qRgb(0, 0, 0), qRgb(255, 255, 255)), 21.0, 1e-9);
    EXPECT_NEAR(Contrast(qRgb(119, 119, 119), qRgb(255, 255, 255)), 4.48, 0.01);
    QImage picture(10, 10, QImage::Format_RGB32);
    picture.fill(qRgb(255, 255, 255));
    EXPECT_EQ(ContrastIn(picture), 1.0);
    picture.setPixel(2, 2, qRgb(119, 119, 119));
    EXPECT_LT(ContrastIn(picture), 4.5);
}

TEST_F(DesktopLook, is_not_judged_by_frames)
{
    start();
    QWidget box;
    QLineEdit pale(QStringLiteral("Pale"), &box);
    pale.setFocusPolicy(Qt::NoFocus); // or the caret differs too
    QPalette palette = pale.palette();
    palette.setColor(QPalette::Base, qRgb(60, 60, 60));
    palette.setColor(QPalette::Text, qRgb(70, 70, 70));
    pale.setPalette(palette);
    pale.setStyleSheet(QStringLiteral("QLineEdit { border: 2px solid white; }"));
    box.show();
    QCoreApplication::processEvents();
    const QImage picture = pale.grab().toImage();
    EXPECT_GT(ContrastIn(picture), 4.5);
    EXPECT_LT(ContrastIn(picture.copy(PlaceOfText(pale))), 4.5);
}

TEST_F(DesktopLook, changes_at_once_and_is_remembered)
{
    start();
    const QRgb dark = cornerOf(window());
    EXPECT_LT(Luminance(dark), 0.1);
    take(openhost::Look::Light);
    EXPECT_GT(Luminance(cornerOf(window())), 0.7);
    desktop.reset(new desktop::DesktopWindow(attendant));
    EXPECT_EQ(openhost::CurrentLook(), openhost::Look::Light);
    EXPECT_TRUE(lookEntry("Light").isChecked());
    take(openhost::Look::Dark);
    EXPECT_EQ(cornerOf(window()), dark);
}

TEST_F(DesktopLook, can_be_read_in_the_window_and_its_panes)
{
    start();
    click(openFigure(sourceFile));
    window().resize(1280, 800);
    for (const char* const pane : {"DzContentLibraryPane", "DzSmartContentPane", "DzScriptPane"}) {
        window().getPaneMgr()->showPane(QLatin1String(pane));
        inBoth([&](const char* look) {
            ExpectReadable(window(), 8, look);
            SavePicture(window(), qPrintable(QStringLiteral("desktop-%1-%2").arg(pane, look)));
        });
    }
}

TEST_F(DesktopLook, can_be_read_on_the_start_page)
{
    start();
    inBoth([](const char* look) {
        ExpectReadable(window(), 8, look);
        SavePicture(window(), qPrintable(QStringLiteral("desktop-start-%1").arg(look)));
    });
}

TEST_F(DesktopLook, can_be_read_on_each_page_of_the_preferences)
{
    start();
    inBoth([](const char* look) {
        desktop::PreferencesDialog dialog(nullptr, {});
        dialog.show();
        auto& pages = *dialog.findChild<QListWidget*>(QStringLiteral("Pages"));
        for (int page = 0; page < pages.count(); ++page) {
            pages.setCurrentRow(page);
            ExpectReadable(dialog, 3, look);
        }
    });
}

TEST_F(DesktopLook, can_be_read_where_figures_are_compared)
{
    start();
    openFigure(sourceFile);
    openFigure(targetFile);
    window().resize(1280, 800);
    QCoreApplication::processEvents();
    entry("Difference")->trigger();
    auto* const panel = window().findChild<QWidget*>(QStringLiteral("ComparisonPanel"));
    auto* const views = window().findChild<QWidget*>(QStringLiteral("ViewButtons"));
    inBoth([&](const char* look) {
        ExpectReadable(*panel, 4, look);
        ExpectReadable(*views, 7, look);
        SavePicture(window(), qPrintable(QStringLiteral("desktop-compared-%1").arg(look)));
    });
    entry("Mouse and Keys")->trigger();
    inBoth([](const char* look) {
        auto* const help = window().findChild<QWidget*>(QStringLiteral("MouseHelp"));
        ExpectReadable(*help, 1, look);
        EXPECT_GE(ContrastIn(help->grab().toImage()), 4.5) << look;
    });
    entry("Mouse and Keys")->trigger();
}

/// Those dialogs bring colours of their own, which were chosen for dark windows.
TEST_F(DesktopLook, can_be_read_in_the_plug_ins_dialogs)
{
    start();
    DzFigure& source = openFigure(sourceFile);
    auto* const wide = qobject_cast<DzMorph*>(source.getObject()->findModifier(QStringLiteral("Wide")));
    ASSERT_NE(wide, nullptr);
    wide->getValueChannel()->setValue(1.0f);
    DzFigure& target = openFigure(targetFile);
    dzScene->selectAllNodes(false);
    source.select();
    target.select();
    for (const openhost::Look look : {openhost::Look::Light, openhost::Look::Dark}) {
        take(look);
        ModalAnswer dialog([&](QWidget& shown) {
            const char* const where = look == openhost::Look::Dark ? "dark" : "light";
            ExpectReadable(shown, 8, where);
            SavePicture(shown, qPrintable(QStringLiteral("convert-dialog-%1").arg(where)));
            QTest::keyClick(&shown, Qt::Key_Escape);
        });
        entry("Convert selected Genesis 3 / 8 / 8.1 figure...")->trigger();
        EXPECT_TRUE(dialog.seen);
    }
}

TEST_F(DesktopLook, gives_widgets_with_a_colour_of_their_own_the_ground_for_it)
{
    start();
    QWidget box;
    QLabel warning(QStringLiteral("Warning"), &box);
    warning.setStyleSheet(QStringLiteral("QLabel { font-weight:600; color:#FF9933; }"));
    QPushButton button(QStringLiteral("Convert"), &box);
    button.setStyleSheet(
        QStringLiteral("QPushButton { font-size: 12pt; font-weight: bold; color: #ffffff; }"));
    QLineEdit wrong(QStringLiteral("Wrong"), &box);
    wrong.setStyleSheet(
        QStringLiteral("QLineEdit {font-weight:600; background-color:#aa0000; border: none; }"));
    button.move(0, 40);
    wrong.move(0, 90);
    box.resize(200, 140);
    box.show();
    inBoth([&](const char* look) {
        ExpectReadable(box, 3, look);
        SavePicture(box, qPrintable(QStringLiteral("own-colours-%1").arg(look)));
    });
}

TEST_F(DesktopLook, takes_the_ground_back_with_the_colour)
{
    start();
    take(openhost::Look::Light);
    QWidget box;
    QLabel label(QStringLiteral("Vendor Name"), &box);
    label.setStyleSheet(QStringLiteral("QLabel { color:#FF9933; }"));
    box.show();
    QCoreApplication::processEvents();
    const auto groundOf = [&label] { return Luminance(label.grab().toImage().pixel(0, 0)); };
    ASSERT_LT(groundOf(), 0.1);
    label.setStyleSheet(QString());
    QCoreApplication::processEvents();
    EXPECT_GT(groundOf(), 0.7);
    EXPECT_FALSE(label.autoFillBackground());
    EXPECT_LT(Luminance(label.palette().color(QPalette::WindowText).rgb()), 0.1);
}

TEST_F(DesktopLook, changes_icons_that_were_made_before)
{
    start();
    take(openhost::Look::Dark);
    QToolButton button;
    dzApp->getStyle()->setStyledIcon(&button, QStringLiteral("add"));
    button.show();
    inBoth([&](const char* look) {
        QCoreApplication::processEvents();
        EXPECT_GE(ContrastIn(button.grab().toImage()), 4.5) << look;
    });
}

TEST_F(DesktopLook, draws_the_tool_bars_icons_in_the_colour_of_text)
{
    start();
    for (const desktop::DrawnIcon icon :
         {desktop::DrawnIcon::Open, desktop::DrawnIcon::Save, desktop::DrawnIcon::Convert,
          desktop::DrawnIcon::Undo, desktop::DrawnIcon::Redo, desktop::DrawnIcon::FrameAll,
          desktop::DrawnIcon::FrameSelection, desktop::DrawnIcon::Views, desktop::DrawnIcon::Styles})
        inBoth([icon](const char* look) {
            QPixmap picture(32, 32);
            picture.fill(QApplication::palette().color(QPalette::Window));
            QPainter painter(&picture);
            desktop::MakeIcon(icon).paint(&painter, QRect(0, 0, 32, 32));
            painter.end();
            EXPECT_GE(ContrastIn(picture.toImage()), 4.5) << look;
        });
}

TEST_F(DesktopLook, has_a_tool_bar_with_names_and_keys_that_fits)
{
    start();
    window().resize(1280, 800);
    QCoreApplication::processEvents();
    auto* const bar = window().findChild<QToolBar*>(QStringLiteral("ToolBar"));
    ASSERT_NE(bar, nullptr);
    QStringList tips;
    for (const QToolButton* const button : bar->findChildren<QToolButton*>()) {
        if (button->objectName() == QLatin1String("qt_toolbar_ext_button")) {
            EXPECT_FALSE(button->isVisible()) << "all fit";
            continue;
        }
        EXPECT_FALSE(button->icon().isNull()) << button->toolTip().toStdString();
        EXPECT_NE(button->focusPolicy(), Qt::NoFocus) << button->toolTip().toStdString();
        tips << button->toolTip();
    }
    EXPECT_EQ(tips.join(QStringLiteral(", ")).toStdString(),
              "Open (Ctrl+O), Save Scene (Ctrl+S), Convert a Figure, Undo (Ctrl+Z), Redo (Ctrl+Shift+Z), "
              "Frame All (Ctrl+Shift+F), Frame Selection (Ctrl+F), View From, Draw Style");
    entry("Tool Bar")->trigger();
    EXPECT_FALSE(bar->isVisible());
    desktop::RememberLayout(window());
    entry("Tool Bar")->trigger();
    EXPECT_TRUE(bar->isVisible());
    EXPECT_TRUE(desktop::RestoreLayout(window()));
    EXPECT_FALSE(bar->isVisible()) << "it is remembered";
    entry("Tool Bar")->trigger();
}
