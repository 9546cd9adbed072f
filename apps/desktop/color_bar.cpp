// The legend of colours that stand for distances.
// SPDX-License-Identifier: MIT

#include "color_bar.h"

#include "distance_colors.h"

#include <QPainter>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>

namespace desktop {

namespace {

/// As the view encodes light for the screen.
QColor OnScreen(const app::LinearRgb& color)
{
    const auto encoded = [](float light) { return int(255.0f * std::sqrt(std::clamp(light, 0.0f, 1.0f))); };
    return QColor(encoded(color[0]), encoded(color[1]), encoded(color[2]));
}

/// With as many places as half of an end has that is given in thousandths.
QString NumberText(double millimetres)
{
    static const QRegularExpression needless(QStringLiteral("\\.?0+$"));
    return QString::number(millimetres, 'f', 4).remove(needless);
}

} // namespace

ColorBar::ColorBar(QWidget* parent) : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setTop(_top);
}

void ColorBar::setTop(double millimetres)
{
    _top = millimetres;
    setAccessibleName(tr("Colours from 0 to %1 mm, from light to dark, and blue-green beyond")
                          .arg(NumberText(millimetres)));
    update();
}

QSize ColorBar::sizeHint() const
{
    return QSize(30 * fontMetrics().averageCharWidth(), 2 * fontMetrics().lineSpacing() + 4);
}

void ColorBar::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const int line = fontMetrics().lineSpacing();
    const QString more = QStringLiteral("> %1").arg(NumberText(_top));
    const int side = fontMetrics().horizontalAdvance(more) + 4;
    const QRect beyond(width() - side, 0, side, line);
    const QRect bar(0, 0, beyond.left() - line / 3, line);
    for (int x = 0; x < bar.width(); ++x)
        painter.fillRect(x, 0, 1, bar.height(), OnScreen(app::ColorAt(double(x) / (bar.width() - 1))));
    painter.fillRect(beyond, OnScreen(app::ColorBeyond()));
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawRect(bar.adjusted(0, 0, -1, -1));
    painter.drawRect(beyond.adjusted(0, 0, -1, -1));
    const QRect below(0, line + 2, bar.width(), line);
    painter.drawText(below, Qt::AlignLeft, QStringLiteral("0"));
    painter.drawText(below, Qt::AlignHCenter, NumberText(_top / 2.0));
    painter.drawText(below, Qt::AlignRight, tr("%1 mm").arg(NumberText(_top)));
    painter.drawText(QRect(beyond.left(), line + 2, beyond.width(), line), Qt::AlignHCenter, more);
}

} // namespace desktop
