// The application's look.
// SPDX-License-Identifier: MIT

#include "dzstyle.h"

#include "openhost/palette_icon.h"
#include "style_pictures.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFontMetrics>
#include <QIcon>
#include <QMetaEnum>
#include <QPainter>
#include <QPalette>

namespace {

/// The picture's shape in one colour, in the middle and as large as there is room.
void DrawTinted(QPainter& painter, const QRect& rect, const QPixmap& shape, const QColor& color)
{
    QPixmap tinted(shape);
    {
        QPainter tint(&tinted);
        tint.setCompositionMode(QPainter::CompositionMode_SourceIn);
        tint.fillRect(tinted.rect(), color);
    }
    const QSize size = tinted.size().scaled(rect.size(), Qt::KeepAspectRatio);
    const QRect place(rect.x() + (rect.width() - size.width()) / 2,
                      rect.y() + (rect.height() - size.height()) / 2, size.width(), size.height());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(place, tinted);
}

/// One of the style's own pictures with all the pixels of a place; none for other names.
QPixmap OwnPicture(const QString& name, const QRect& rect, const QPainter& painter)
{
    const double pixels = painter.device()->devicePixelRatioF() * qMin(rect.width(), rect.height());
    return openhost::DrawStylePicture(name, qMax(1, qRound(pixels)));
}

} // namespace

DzStyle::DzStyle() = default;
DzStyle::~DzStyle() = default;

bool DzStyle::setStyledIcon(QAbstractButton* button, const QString& pixmapName) const
{
    const QPixmap shape = standardPixmap(pixmapName);
    if (!button || shape.isNull())
        return false;
    button->setIcon(openhost::MakePaletteIcon([shape, pixmapName](QPainter& painter, const QRect& rect,
                                                                  const QPalette& palette,
                                                                  QPalette::ColorGroup group, QIcon::State) {
        const QPixmap own = OwnPicture(pixmapName, rect, painter);
        DrawTinted(painter, rect, own.isNull() ? shape : own, palette.color(group, QPalette::ButtonText));
    }));
    return true;
}

QPixmap DzStyle::standardPixmap(const QString& name) const
{
    constexpr int smallest = 16; // pixels
    const int size = qMax(smallest, QFontMetrics(QApplication::font()).height());
    const QPixmap own = openhost::DrawStylePicture(name, size);
    return own.isNull() ? QPixmap(name) : own;
}

QColor DzStyle::getInterfaceColor(const QString& name) const
{
    const QMetaEnum roles = QMetaEnum::fromType<QPalette::ColorRole>();
    bool isKnown = false;
    const int role = roles.keyToValue(name.toLatin1().constData(), &isKnown);
    if (!isKnown || role >= QPalette::NColorRoles)
        return QColor();
    return QApplication::palette().color(static_cast<QPalette::ColorRole>(role));
}

int DzStyle::pixelMetric(int metric) const
{
    const QFontMetrics font(QApplication::font());
    switch (metric) {
    case DZ_PM_GeneralMargin:
        return font.height() / 2;
    case DZ_PM_ButtonHeight:
        return font.height() * 3 / 2;
    case DZ_PM_ButtonMinWidth:
        return font.averageCharWidth() * 12;
    default:
        return 0;
    }
}
