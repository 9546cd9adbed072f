// A list of properties of any length.
// SPDX-License-Identifier: MIT

#include "pane_property_rows.h"

#include "dzproperty.h"
#include "pane_property_editor.h"
#include "pane_property_row.h"

#include <QEvent>
#include <QScrollBar>
#include <QSet>

#include <algorithm>
#include <utility>

namespace openhost {

namespace {

bool Contains(const std::vector<QPointer<DzProperty>>& list, const DzProperty* property)
{
    return std::find(list.begin(), list.end(), property) != list.end();
}

QSet<const DzProperty*> SetOf(const std::vector<QPointer<DzProperty>>& list)
{
    QSet<const DzProperty*> set;
    for (const QPointer<DzProperty>& property : list)
        set.insert(property);
    return set;
}

} // namespace

PropertyRows::PropertyRows(QWidget* parent)
    : QAbstractScrollArea(parent), _rowHeight(PropertyRow::HeightFor(*this, false))
{
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    viewport()->setAutoFillBackground(false);
}

PropertyRows::~PropertyRows() = default;

void PropertyRows::setProperties(std::vector<QPointer<DzProperty>> properties)
{
    _properties = std::move(properties);
    _anchor = -1;
    const QSet<const DzProperty*> present = SetOf(_properties);
    _picked.erase(
        std::remove_if(_picked.begin(), _picked.end(),
                       [&](const auto& property) { return !property || !present.contains(property); }),
        _picked.end());
    updateScrollBar();
    layOut();
}

QObjectList PropertyRows::picked() const
{
    QObjectList list;
    const QSet<const DzProperty*> picked = SetOf(_picked);
    for (const QPointer<DzProperty>& property : _properties)
        if (property && picked.contains(property))
            list.append(property);
    return list;
}

bool PropertyRows::reveal(const DzProperty& property)
{
    const int index = indexOf(&property);
    if (index < 0)
        return false;
    pick(index, Qt::NoModifier);
    const int top = index * _rowHeight;
    const int middle = (viewport()->height() - _rowHeight) / 2;
    QScrollBar& bar = *verticalScrollBar();
    if (top < bar.value() || top + _rowHeight > bar.value() + viewport()->height())
        bar.setValue(top - middle);
    layOut();
    return true;
}

PropertyRow* PropertyRows::rowOf(const DzProperty& property) const
{
    for (PropertyRow* row : _rows)
        if (row->property() == &property)
            return row;
    return nullptr;
}

void PropertyRows::changeEvent(QEvent* event)
{
    QAbstractScrollArea::changeEvent(event);
    if (event->type() != QEvent::FontChange && event->type() != QEvent::StyleChange)
        return;
    _rowHeight = PropertyRow::HeightFor(*this, _isStacked);
    dropRowsBut({});
    _rows.clear();
    arrangeForWidth();
    updateScrollBar();
    layOut();
}

/// The star, the number and a bar that can be moved.
QSize PropertyRows::minimumSizeHint() const
{
    const int number = fontMetrics().horizontalAdvance(QLatin1String("-10000.0 cm"));
    return QSize(number + 6 * fontMetrics().height(), 3 * _rowHeight);
}

void PropertyRows::resizeEvent(QResizeEvent* event)
{
    QAbstractScrollArea::resizeEvent(event);
    arrangeForWidth();
    updateScrollBar();
    layOut();
}

/// With the scroll bar or without it, which may come and go with the rows' height. What is at the top stays
/// there.
void PropertyRows::arrangeForWidth()
{
    constexpr int label = 12, star = 5; // characters
    const int least = PropertyEditor::LeastWidth(*this) + (label + star) * fontMetrics().averageCharWidth();
    const bool isStacked = width() < least;
    if (isStacked == _isStacked)
        return;
    _isStacked = isStacked;
    const int top = verticalScrollBar()->value() / _rowHeight;
    _rowHeight = PropertyRow::HeightFor(*this, _isStacked);
    updateScrollBar();
    verticalScrollBar()->setValue(top * _rowHeight);
}

void PropertyRows::scrollContentsBy(int, int)
{
    layOut();
}

void PropertyRows::updateScrollBar()
{
    verticalScrollBar()->setRange(0, std::max(0, count() * _rowHeight - viewport()->height()));
    verticalScrollBar()->setPageStep(viewport()->height());
    verticalScrollBar()->setSingleStep(_rowHeight);
}

void PropertyRows::layOut()
{
    const int top = verticalScrollBar()->value();
    const int first = std::min(count(), top / _rowHeight);
    const int last = std::min(count(), (top + viewport()->height()) / _rowHeight + 1);
    std::vector<PropertyRow*> inSight;
    for (int i = first; i < last; ++i) {
        DzProperty* const property = _properties[std::size_t(i)];
        if (!property)
            continue;
        PropertyRow& row = rowFor(*property);
        row.setGeometry(0, i * _rowHeight - top, viewport()->width(), _rowHeight);
        row.setStacked(_isStacked);
        row.setPicked(isPicked(property));
        row.show();
        inSight.push_back(&row);
    }
    dropRowsBut(inSight);
    _rows = std::move(inSight);
}

PropertyRow& PropertyRows::rowFor(DzProperty& property)
{
    if (PropertyRow* const row = rowOf(property))
        return *row;
    auto* const row = new PropertyRow(property, viewport());
    connect(row, SIGNAL(told(QString)), SIGNAL(told(QString)));
    connect(row, SIGNAL(picked(Qt::KeyboardModifiers)), SLOT(handlePicked(Qt::KeyboardModifiers)));
    return *row;
}

void PropertyRows::dropRowsBut(const std::vector<PropertyRow*>& kept)
{
    for (PropertyRow* row : _rows) {
        if (std::find(kept.begin(), kept.end(), row) != kept.end())
            continue;
        // Later, since the row may be the one whose event this is.
        row->hide();
        row->deleteLater();
    }
}

void PropertyRows::handlePicked(Qt::KeyboardModifiers modifiers)
{
    const int index = indexOf(static_cast<const PropertyRow*>(sender())->property());
    if (index >= 0)
        pick(index, modifiers);
}

void PropertyRows::pick(int index, Qt::KeyboardModifiers modifiers)
{
    const QPointer<DzProperty>& property = _properties[std::size_t(index)];
    if (modifiers & Qt::ControlModifier && Contains(_picked, property)) {
        _picked.erase(std::find(_picked.begin(), _picked.end(), property));
    } else if (modifiers & Qt::ShiftModifier && _anchor >= 0) {
        const auto range = std::minmax(_anchor, index);
        _picked.assign(_properties.begin() + range.first, _properties.begin() + range.second + 1);
    } else {
        if (!(modifiers & Qt::ControlModifier))
            _picked.clear();
        _picked.push_back(property);
    }
    if (!(modifiers & Qt::ShiftModifier) || _anchor < 0)
        _anchor = index;
    for (PropertyRow* row : _rows)
        row->setPicked(isPicked(row->property()));
    emit pickedChanged();
}

int PropertyRows::indexOf(const DzProperty* property) const
{
    const auto found = std::find(_properties.begin(), _properties.end(), property);
    return property && found != _properties.end() ? int(found - _properties.begin()) : -1;
}

bool PropertyRows::isPicked(const DzProperty* property) const
{
    return property && Contains(_picked, property);
}

} // namespace openhost
