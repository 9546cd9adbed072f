// Where a slider's parts are, and how they are painted.
// SPDX-License-Identifier: MIT

#include "slider_picture.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPalette>
#include <QWidget>

#include <algorithm>

namespace openhost {

namespace {

constexpr int frameWidth = 2; ///< pixels around everything, for the focus frame
constexpr double round = 3.0; ///< radius of corners, in pixels

/// Room between parts and around texts.
int Gap(const QWidget& slider)
{
    return std::max(4, slider.fontMetrics().height() / 3);
}

int HandleWidth(const QWidget& slider)
{
    return std::max(6, slider.fontMetrics().height() / 2);
}

int LabelWidth(const QWidget& slider, const SliderLook& look)
{
    return look.label.isEmpty() ? 0 : slider.fontMetrics().horizontalAdvance(look.label);
}

int TextWidth(const QWidget& slider, const SliderLook& look)
{
    if (look.widestText.isEmpty())
        return 0;
    return slider.fontMetrics().horizontalAdvance(look.widestText) + 2 * Gap(slider);
}

/// Of a narrow slider the number has no more than it needs, and leaves the bar enough to be moved.
int TextWidthIn(int room, const QWidget& slider, const SliderLook& look)
{
    const int least = 2 * slider.fontMetrics().height();
    const int left = std::max(0, room - least - Gap(slider));
    const int wanted = TextWidth(slider, look);
    if (wanted <= left)
        return wanted;
    const int own = slider.fontMetrics().horizontalAdvance(look.text) + 2 * Gap(slider);
    return std::min(wanted, std::max(left, std::min(own, room)));
}

QSize SizeWithBar(const QWidget& slider, const SliderLook& look, int barWidth)
{
    int width = 2 * frameWidth + barWidth;
    for (const int part : {LabelWidth(slider, look), TextWidth(slider, look)})
        width += part > 0 ? part + Gap(slider) : 0;
    return QSize(width, slider.fontMetrics().height() + 2 * Gap(slider) + 2 * frameWidth);
}

QColor Mixed(const QColor& a, const QColor& b, qreal partOfB)
{
    const qreal partOfA = 1.0 - partOfB;
    return QColor::fromRgbF(a.redF() * partOfA + b.redF() * partOfB,
                            a.greenF() * partOfA + b.greenF() * partOfB,
                            a.blueF() * partOfA + b.blueF() * partOfB);
}

void PaintBox(QPainter& painter, const QRectF& box, const QColor& fill, const QColor& frame)
{
    painter.setPen(frame);
    painter.setBrush(fill);
    painter.drawRoundedRect(box.adjusted(0.5, 0.5, -0.5, -0.5), round, round);
}

/// The slider's own colours are mixed from the palette's, so that they suit any of them.
struct Colours {
    explicit Colours(const QWidget& slider)
        : palette(slider.palette()), group(slider.isEnabled() ? QPalette::Active : QPalette::Disabled),
          text(palette.color(group, QPalette::WindowText)),
          groove(Mixed(palette.color(group, QPalette::Window), text, 0.12)),
          frame(Mixed(palette.color(group, QPalette::Window), text, 0.35)),
          filling(slider.isEnabled() ? palette.color(group, QPalette::Highlight) : frame)
    {
    }
    QPalette palette;
    QPalette::ColorGroup group;
    QColor text, groove, frame, filling;
};

void PaintBar(QPainter& painter, const QWidget& slider, const SliderLook& look, const SliderParts& parts,
              const Colours& colours)
{
    const int handle = HandleWidth(slider);
    const int inset = parts.bar.height() / 4;
    const QRectF groove = QRectF(parts.bar).adjusted(0, inset, 0, -inset);
    PaintBox(painter, groove, colours.groove, colours.frame);
    if (look.isIndeterminate)
        return;
    const double travel = HandleTravel(parts, slider);
    const double from = parts.bar.left() + handle / 2.0 + look.origin * travel;
    const double to = parts.bar.left() + handle / 2.0 + look.fraction * travel;
    // From the very edge there shall be no gap before the filling.
    const double left = look.origin <= 0.0 ? groove.left() : look.origin >= 1.0 ? groove.right() : from;
    PaintBox(painter,
             QRectF(QPointF(std::min(left, to), groove.top()), QPointF(std::max(left, to), groove.bottom())),
             colours.filling, colours.filling);
    QColor face = Mixed(colours.palette.color(colours.group, QPalette::Button), colours.text,
                        look.isPressed || look.isHovered ? 0.9 : 0.75);
    if (!slider.isEnabled())
        face = colours.frame;
    PaintBox(painter, QRectF(to - handle / 2.0, parts.bar.top(), handle, parts.bar.height()), face,
             Mixed(face, colours.palette.color(colours.group, QPalette::Window), 0.5));
}

void PaintText(QPainter& painter, const QWidget& slider, const SliderLook& look, const SliderParts& parts,
               const Colours& colours)
{
    const int gap = Gap(slider);
    QColor ink = colours.text;
    if (look.isTextEditable) {
        PaintBox(painter, parts.text, colours.palette.color(colours.group, QPalette::Base), colours.frame);
        ink = colours.palette.color(colours.group, QPalette::Text);
    }
    painter.setPen(ink);
    // Numbers and their units read from left to right in every language.
    painter.setLayoutDirection(Qt::LeftToRight);
    const QRect room = parts.text.adjusted(gap, 0, -gap, 0);
    painter.drawText(room, Qt::AlignVCenter | Qt::AlignRight,
                     slider.fontMetrics().elidedText(look.text, Qt::ElideLeft, room.width()));
}

} // namespace

SliderParts LayOutSlider(const QWidget& slider, const SliderLook& look)
{
    const int gap = Gap(slider);
    QRect room = slider.rect().adjusted(frameWidth, frameWidth, -frameWidth, -frameWidth);
    SliderParts parts;
    if (const int width = LabelWidth(slider, look)) {
        parts.label = QRect(room.left(), room.top(), width, room.height());
        room.setLeft(room.left() + width + gap);
    }
    if (const int width = TextWidthIn(room.width(), slider, look)) {
        parts.text = QRect(room.right() - width + 1, room.top(), width, room.height());
        room.setRight(room.right() - width - gap);
    }
    parts.bar = room;
    return parts;
}

int HandleTravel(const SliderParts& parts, const QWidget& slider)
{
    return std::max(1, parts.bar.width() - HandleWidth(slider));
}

double FractionAt(int x, const SliderParts& parts, const QWidget& slider)
{
    const double left = parts.bar.left() + HandleWidth(slider) / 2.0;
    return (x - left) / HandleTravel(parts, slider);
}

QSize SliderSizeHint(const QWidget& slider, const SliderLook& look)
{
    return SizeWithBar(slider, look, 12 * slider.fontMetrics().height());
}

QSize SliderMinimumSize(const QWidget& slider, const SliderLook& look)
{
    return SizeWithBar(slider, look, 5 * slider.fontMetrics().height());
}

void PaintSlider(QPainter& painter, const QWidget& slider, const SliderLook& look)
{
    painter.setRenderHint(QPainter::Antialiasing);
    const Colours colours(slider);
    const SliderParts parts = LayOutSlider(slider, look);
    if (!parts.label.isNull()) {
        painter.setPen(colours.text);
        painter.drawText(parts.label, Qt::AlignVCenter | Qt::AlignLeft, look.label);
    }
    if (parts.bar.width() > HandleWidth(slider))
        PaintBar(painter, slider, look, parts, colours);
    if (!parts.text.isNull())
        PaintText(painter, slider, look, parts, colours);
    if (slider.hasFocus()) {
        painter.setPen(colours.palette.color(colours.group, QPalette::Highlight));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(slider.rect()).adjusted(0.5, 0.5, -0.5, -0.5), round, round);
    }
}

} // namespace openhost
