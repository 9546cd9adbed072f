// One property in a list of them.
// SPDX-License-Identifier: MIT

#include "pane_property_row.h"

#include "dial_values.h"
#include "dzboolproperty.h"
#include "dzenumproperty.h"
#include "dzfloatslider.h"
#include "dznumericproperty.h"
#include "dzproperty.h"
#include "limits_dialog.h"
#include "openhost/palette_icon.h"
#include "pane_property_editor.h"

#include <QComboBox>
#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QEvent>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QToolButton>

#include <algorithm>
#include <cmath>

namespace openhost {

namespace {

constexpr int margin = 3;

/// Not for switches and choices, which are numbers too.
bool HasLimits(const DzProperty& property)
{
    return qobject_cast<const DzNumericProperty*>(&property) &&
           !qobject_cast<const DzBoolProperty*>(&property) && !qobject_cast<const DzEnumProperty*>(&property);
}

QPolygonF StarShape(double size)
{
    constexpr double pi = 3.14159265358979323846;
    QPolygonF star;
    for (int i = 0; i < 10; ++i) {
        const double radius = (i % 2 ? 0.2 : 0.46) * size;
        const double angle = i * pi / 5.0;
        star << QPointF(size / 2.0 + radius * std::sin(angle), size / 2.0 - radius * std::cos(angle));
    }
    return star;
}

void DrawStar(QPainter& painter, const QRect& rect, const QPalette& palette, bool isFilled)
{
    const QColor& highlight = palette.color(QPalette::Highlight);
    painter.setPen(isFilled ? highlight : palette.color(QPalette::Mid).lighter(130));
    painter.setBrush(isFilled ? QBrush(highlight) : QBrush(Qt::NoBrush));
    painter.drawPolygon(StarShape(std::min(rect.width(), rect.height())).translated(rect.topLeft()));
}

} // namespace

QIcon Star(bool isFilled)
{
    return MakePaletteIcon([isFilled](QPainter& painter, const QRect& rect, const QPalette& palette,
                                      QPalette::ColorGroup,
                                      QIcon::State) { DrawStar(painter, rect, palette, isFilled); });
}

QIcon OnOffStar()
{
    return MakePaletteIcon([](QPainter& painter, const QRect& rect, const QPalette& palette,
                              QPalette::ColorGroup,
                              QIcon::State state) { DrawStar(painter, rect, palette, state == QIcon::On); });
}

PropertyRow::PropertyRow(DzProperty& property, QWidget* parent)
    : QWidget(parent), _property(&property), _editor(PropertyEditor::Make(property, this))
{
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(2 * margin, 0, margin, 0);
    layout->addWidget(_editor, 1);
    addStar(*layout);
    for (QWidget* widget : findChildren<QWidget*>()) {
        widget->installEventFilter(this);
        if (widget->focusPolicy() == Qt::WheelFocus)
            widget->setFocusPolicy(Qt::StrongFocus);
    }
    connect(&property, SIGNAL(removed()), SLOT(letGo()));
    connect(&property, SIGNAL(propertyDeleted(DzProperty*)), SLOT(letGo()));
}

PropertyRow::~PropertyRow() = default;

void PropertyRow::addStar(QHBoxLayout& layout)
{
    _star = new QToolButton(this);
    _star->setObjectName(tr("Favorite"));
    _star->setAutoRaise(true);
    _star->setCheckable(true);
    _star->setToolTip(tr("Favorite"));
    _star->setAccessibleName(tr("Favorite: %1").arg(_property->getLabel()));
    _star->setFocusPolicy(Qt::TabFocus);
    const int size = fontMetrics().height();
    _star->setIconSize(QSize(size, size));
    _star->setChecked(_property->isFavorite());
    _star->setIcon(Star(_property->isFavorite()));
    connect(_star, SIGNAL(toggled(bool)), SLOT(setFavorite(bool)));
    layout.addWidget(_star);
}

void PropertyRow::setStacked(bool onOff)
{
    _editor->setStacked(onOff);
}

int PropertyRow::HeightFor(const QWidget& widget, bool isStacked)
{
    const DzFloatSlider slider(nullptr, QStringLiteral("X"));
    const QComboBox box;
    const QLineEdit line;
    const int editor = std::max({slider.sizeHint().height(), box.sizeHint().height(),
                                 line.sizeHint().height(), widget.fontMetrics().height() + 2 * margin});
    return editor + 2 * margin + (isStacked ? widget.fontMetrics().height() : 0);
}

void PropertyRow::letGo()
{
    _property = nullptr;
    setEnabled(false);
}

void PropertyRow::setFavorite(bool onOff)
{
    if (!_property)
        return;
    _property->setIsFavorite(onOff);
    _star->setIcon(Star(onOff));
}

void PropertyRow::setPicked(bool onOff)
{
    if (onOff == _isPicked)
        return;
    _isPicked = onOff;
    update();
}

bool PropertyRow::eventFilter(QObject* object, QEvent* event)
{
    if (event->type() == QEvent::ContextMenu && !qobject_cast<QLineEdit*>(object)) {
        showMenu(static_cast<QContextMenuEvent*>(event)->globalPos());
        return true;
    }
    if (event->type() == QEvent::MouseButtonPress)
        emit picked(static_cast<QMouseEvent*>(event)->modifiers());
    // The wheel scrolls the list, not the value that happens to be under it.
    if (event->type() == QEvent::Wheel && !static_cast<QWidget*>(object)->hasFocus()) {
        QCoreApplication::sendEvent(parentWidget(), event);
        return true;
    }
    return QWidget::eventFilter(object, event);
}

void PropertyRow::contextMenuEvent(QContextMenuEvent* event)
{
    showMenu(event->globalPos());
}

void PropertyRow::showMenu(const QPoint& place)
{
    if (!_property)
        return;
    auto* const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    if (qobject_cast<DzNumericProperty*>(_property.data())) {
        menu->addAction(tr("&Reset"), this, SLOT(resetDial()))->setEnabled(IsChanged(*_property));
        menu->addAction(tr("&Memorize"), this, SLOT(memorizeDial()));
        menu->addAction(tr("Restore Memor&ized"), this, SLOT(restoreDial()))
            ->setEnabled(IsMemorized(*_property));
        menu->addSeparator();
    }
    if (HasLimits(*_property))
        menu->addAction(tr("&Limits..."), this, SLOT(editLimits()));
    QAction* const lock = menu->addAction(tr("Loc&ked"), this, SLOT(toggleLock()));
    lock->setCheckable(true);
    lock->setChecked(_property->isLocked());
    menu->popup(place);
}

void PropertyRow::resetDial()
{
    if (_property)
        emit told(ResetDials({_property}).text());
}

void PropertyRow::memorizeDial()
{
    MemorizeDials({_property});
}

void PropertyRow::restoreDial()
{
    emit told(RestoreDials({_property}).text());
}

void PropertyRow::editLimits()
{
    if (auto* const dial = qobject_cast<DzNumericProperty*>(_property.data()))
        LimitsDialog(*dial, window()).exec();
}

void PropertyRow::toggleLock()
{
    if (_property)
        _property->lock(!_property->isLocked());
}

void PropertyRow::mousePressEvent(QMouseEvent* event)
{
    emit picked(event->modifiers());
}

void PropertyRow::paintEvent(QPaintEvent*)
{
    if (!_isPicked)
        return;
    QPainter painter(this);
    QColor fill = palette().color(QPalette::Highlight);
    painter.fillRect(QRect(0, 1, margin, height() - 2), fill);
    fill.setAlpha(60);
    painter.fillRect(rect().adjusted(0, 1, 0, -1), fill);
}

} // namespace openhost
