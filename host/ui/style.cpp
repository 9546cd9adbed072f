// The application's look.
// SPDX-License-Identifier: MIT

#include "dzstyle.h"

#include "style_pictures.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFontMetrics>
#include <QIcon>
#include <QMetaEnum>
#include <QPainter>
#include <QPalette>

namespace {

/// The picture's shape in one colour.
QPixmap Tinted(const QPixmap& shape, const QColor& color)
{
    QPixmap tinted(shape.size());
    tinted.fill(Qt::transparent);
    QPainter painter(&tinted);
    painter.drawPixmap(0, 0, shape);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(tinted.rect(), color);
    return tinted;
}

} // namespace

DzStyle::DzStyle() = default;
DzStyle::~DzStyle() = default;

bool DzStyle::setStyledIcon(QAbstractButton* button, const QString& pixmapName) const
{
    const QPixmap shape = standardPixmap(pixmapName);
    if (!button || shape.isNull())
        return false;
    const QPalette colors = button->palette();
    QIcon icon;
    icon.addPixmap(Tinted(shape, colors.color(QPalette::Active, QPalette::ButtonText)), QIcon::Normal);
    icon.addPixmap(Tinted(shape, colors.color(QPalette::Disabled, QPalette::ButtonText)), QIcon::Disabled);
    button->setIcon(icon);
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
