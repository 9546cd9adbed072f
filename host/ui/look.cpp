// Colours of the application's windows.
// SPDX-License-Identifier: MIT

#include "look.h"

#include "openhost/look.h"

#include <QApplication>
#include <QFontMetrics>
#include <QLabel>
#include <QPainter>
#include <QPalette>
#include <QProxyStyle>
#include <QStyleOption>

namespace openhost {

namespace {

QPalette DarkPalette()
{
    const QColor window(54, 56, 60);
    const QColor base(36, 38, 41);
    const QColor text(224, 226, 229);
    const QColor dimmed(128, 131, 136);
    const QColor highlight(226, 152, 60);
    QPalette palette(text, QColor(64, 67, 72), QColor(104, 108, 114), QColor(26, 27, 29), QColor(88, 91, 97),
                     text, Qt::white, base, window);
    palette.setColor(QPalette::AlternateBase, QColor(43, 45, 49));
    palette.setColor(QPalette::Highlight, highlight);
    palette.setColor(QPalette::HighlightedText, QColor(24, 24, 24));
    palette.setColor(QPalette::Link, QColor(120, 178, 240));
    palette.setColor(QPalette::ToolTipBase, QColor(66, 69, 74));
    palette.setColor(QPalette::ToolTipText, text);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, dimmed);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(96, 99, 104));
    return palette;
}

QPalette LightPalette()
{
    const QColor window(238, 239, 241);
    const QColor base(255, 255, 255);
    const QColor text(24, 26, 29);
    const QColor dimmed(140, 143, 148);
    QPalette palette(text, QColor(226, 228, 231), QColor(255, 255, 255), QColor(150, 153, 158),
                     QColor(84, 87, 92), text, Qt::black, base, window);
    palette.setColor(QPalette::Midlight, QColor(132, 136, 142)); // of boxes that are checked
    palette.setColor(QPalette::AlternateBase, QColor(244, 245, 247));
    palette.setColor(QPalette::Highlight, QColor(30, 94, 168));
    palette.setColor(QPalette::HighlightedText, QColor(255, 255, 255));
    palette.setColor(QPalette::Link, QColor(0, 84, 166));
    palette.setColor(QPalette::ToolTipBase, QColor(255, 255, 230));
    palette.setColor(QPalette::ToolTipText, text);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, dimmed);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(196, 199, 204));
    palette.setColor(QPalette::Disabled, QPalette::HighlightedText, QColor(90, 93, 98));
    return palette;
}

Look current = Look::Dark, ofSystem = Look::Light;

/// Some widgets bring a colour of their own, chosen for dark windows: it is read on dark ones alone.
bool BringsColor(const QWidget& widget)
{
    return widget.styleSheet().contains(QLatin1String("color:"));
}

/// Also takes the dark ground back once the colour has gone.
void SetGround(QWidget& widget)
{
    constexpr const char* mark = "openhostDarkAmongLight";
    const bool isDarkAmongLight = current == Look::Light && BringsColor(widget);
    if (isDarkAmongLight == widget.property(mark).toBool())
        return;
    widget.setProperty(mark, isDarkAmongLight);
    widget.setPalette(isDarkAmongLight ? DarkPalette() : QPalette());
    if (qobject_cast<QLabel*>(&widget))
        widget.setAutoFillBackground(isDarkAmongLight);
}

/// The style draws the frames of boxes darker than the window, where dark windows swallow them; it marks the
/// default button and the one with the focus alike; it clips the titles of groups at the ink of their
/// letters, which is less than what drawing them takes; its boxes to check stay small beside large letters;
/// and on some desktops it puts pictures made for light windows on the buttons of dialogs.
class OutlinedStyle : public QProxyStyle {
public:
    OutlinedStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

    using QProxyStyle::polish;

    void polish(QWidget* widget) override
    {
        QProxyStyle::polish(widget);
        SetGround(*widget);
    }

    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override
    {
        const int length = QProxyStyle::pixelMetric(metric, option, widget);
        switch (metric) {
        case PM_IndicatorWidth:
        case PM_IndicatorHeight:
        case PM_ExclusiveIndicatorWidth:
        case PM_ExclusiveIndicatorHeight:
            return qMax(length, QFontMetrics(widget ? widget->font() : QApplication::font()).ascent());
        default:
            return length;
        }
    }

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* more) const override
    {
        if (hint == SH_DialogButtonBox_ButtonsHaveIcons)
            return 0;
        return QProxyStyle::styleHint(hint, option, widget, more);
    }

    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                         const QWidget* widget) const override
    {
        const QRect rect = QProxyStyle::subControlRect(control, option, part, widget);
        const auto* const group = qstyleoption_cast<const QStyleOptionGroupBox*>(option);
        if (control != CC_GroupBox || part != SC_GroupBoxLabel || !group)
            return rect;
        const int missing = group->fontMetrics.size(Qt::TextShowMnemonic, group->text).width() - rect.width();
        if (missing <= 0)
            return rect;
        const Qt::Alignment side = visualAlignment(group->direction, group->textAlignment);
        if (side & Qt::AlignRight)
            return rect.adjusted(-missing, 0, 0, 0);
        return side & Qt::AlignHCenter ? rect.adjusted(-missing, 0, missing, 0)
                                       : rect.adjusted(0, 0, missing, 0);
    }

    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override
    {
        QProxyStyle::drawControl(element, option, painter, widget);
        constexpr State focusByKey = State_HasFocus | State_KeyboardFocusChange;
        if (element != CE_PushButton || (option->state & focusByKey) != focusByKey)
            return;
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(option->palette.color(QPalette::ButtonText));
        painter->setBrush(Qt::NoBrush);
        painter->drawRoundedRect(QRectF(option->rect).adjusted(3.5, 3.5, -3.5, -3.5), 1, 1);
        painter->restore();
    }

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override
    {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        if (element != PE_IndicatorCheckBox && element != PE_IndicatorRadioButton)
            return;
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(option->palette.color(QPalette::Midlight));
        painter->setBrush(Qt::NoBrush);
        const QRectF frame = QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5);
        if (element == PE_IndicatorCheckBox)
            painter->drawRect(frame);
        else
            painter->drawEllipse(frame);
        painter->restore();
    }
};

} // namespace

void DressWindows(QApplication& application)
{
    // Before the program has colours of its own.
    constexpr int middle = 128;
    ofSystem =
        QApplication::palette().color(QPalette::Window).lightness() < middle ? Look::Dark : Look::Light;
    application.setStyle(new OutlinedStyle);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps); // icons are sharp on dense screens
    SetLook(Look::Dark);
}

void SetLook(Look look)
{
    current = look;
    QApplication::setPalette(look == Look::Dark ? DarkPalette() : LightPalette());
    for (QWidget* const widget : QApplication::allWidgets())
        SetGround(*widget);
}

Look CurrentLook()
{
    return current;
}

Look SystemLook()
{
    return ofSystem;
}

} // namespace openhost
