// A property's label and value, to be seen and changed.
// SPDX-License-Identifier: MIT

#include "pane_property_editor.h"

#include "dial_quantity.h"
#include "dzboolproperty.h"
#include "dzenumproperty.h"
#include "dzfloatproperty.h"
#include "dzfloatslider.h"
#include "dzintslider.h"
#include "dzstringproperty.h"
#include "openhost/plain_tip.h"
#include "slider_access.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPainter>
#include <QStyle>

#include <algorithm>

namespace openhost {

/// One line of text with dots in its middle where it does not fit: names often differ at their end.
class PropertyEditor::ShortLabel : public QWidget {
public:
    explicit ShortLabel(QWidget* parent) : QWidget(parent)
    {
        setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    }
    void setText(const QString& text)
    {
        _text = text;
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        const QString shown = fontMetrics().elidedText(_text, Qt::ElideMiddle, width());
        style()->drawItemText(&painter, rect(), Qt::AlignLeft | Qt::AlignVCenter, palette(), isEnabled(),
                              shown, foregroundRole());
    }

private:
    QString _text;
};

PropertyEditor::PropertyEditor(DzProperty& property, QWidget* parent)
    : QWidget(parent), _property(&property), _label(new ShortLabel(this))
{
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(_label, 2);
    connect(&property, SIGNAL(currentValueChanged()), SLOT(read()));
    connect(&property, SIGNAL(labelChanged(QString)), SLOT(readLook()));
    connect(&property, SIGNAL(lockStateChanged()), SLOT(readLook()));
    connect(&property, SIGNAL(removed()), SLOT(letGo()));
    connect(&property, SIGNAL(propertyDeleted(DzProperty*)), SLOT(letGo()));
    if (qobject_cast<DzNumericProperty*>(&property))
        connect(&property, SIGNAL(minMaxChanged()), SLOT(readLook()));
}

PropertyEditor::~PropertyEditor() = default;

/// Widgets of all rows stand in a column.
void PropertyEditor::setWidget(QWidget* widget)
{
    _widget = widget;
    widget->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    static_cast<QHBoxLayout*>(layout())->addWidget(widget, 3);
}

int PropertyEditor::LeastWidth(const QWidget& widget)
{
    const QFontMetrics metrics = widget.fontMetrics();
    return metrics.horizontalAdvance(QLatin1String("-10000.0 cm")) + 5 * metrics.height();
}

void PropertyEditor::setStacked(bool onOff)
{
    const bool isStacked = onOff && !qobject_cast<QCheckBox*>(_widget);
    if (_widget)
        _widget->setMinimumWidth(isStacked ? 0 : LeastWidth(*this));
    static_cast<QHBoxLayout*>(layout())->setDirection(isStacked ? QBoxLayout::TopToBottom
                                                                : QBoxLayout::LeftToRight);
}

void PropertyEditor::write(const std::function<void()>& write)
{
    if (_isReading || !_property)
        return;
    const QPointer<PropertyEditor> guard(this); // a listener may take the row away
    write();
    // The property may be locked or clamped, or have been refused the change.
    if (guard)
        read();
}

void PropertyEditor::read()
{
    if (!_property)
        return;
    const bool wasReading = _isReading;
    _isReading = true;
    readValue();
    _isReading = wasReading;
}

void PropertyEditor::readLook()
{
    if (!_property)
        return;
    const QString label = _property->getLabel();
    _label->setText(label);
    setToolTip(openhost::PlainTip(_property->isLocked() ? tr("%1 (locked)").arg(label) : label));
    setEnabled(!_property->isLocked());
    if (_widget)
        _widget->setAccessibleName(label);
    _isReading = true;
    readLimits();
    readValue();
    _isReading = false;
}

void PropertyEditor::letGo()
{
    if (_property)
        disconnect(_property, nullptr, this, nullptr);
    _property = nullptr;
    setEnabled(false);
}

namespace {

/// What editors of numbers have in common.
template <class Property, class Slider, class Number>
class SliderEditor : public PropertyEditor {
public:
    SliderEditor(Property& property, QWidget* parent)
        : PropertyEditor(property, parent), _number(property), _slider(new Slider(nullptr))
    {
        _slider->setTextEditable(true);
        _slider->setShowLabel(false);
        DzSliderAccess::setQuantity(*_slider, QuantityOf(property));
        setWidget(_slider);
        connect(_slider, &Slider::valueChanged, this,
                [this](Number value) { write([&] { _number.setValue(value); }); });
        tell(&DzSlider::editStart, &DzProperty::beginEdit);
        tell(&DzSlider::editEnd, &DzProperty::finishEdit);
        tell(&DzSlider::editCancelled, &DzProperty::cancelEdit);
    }

protected:
    void readValue() override { _slider->setValue(_number.getValue()); }
    void readLimits() override
    {
        _slider->setClamped(false); // while the limits move
        _slider->setMinMax(onBar(_number.getDoubleMin()), onBar(_number.getDoubleMax()));
        _slider->setDefaultValue(_number.getDefaultValue());
        _slider->setSensitivity(_number.getSensitivity());
        _slider->setLabel(_number.getLabel());
        _slider->setClamped(_number.isClamped());
        _slider->setDisplayAsPercent(_number.getDisplayAsPercent());
    }

private:
    /// Where numbers have no limits the bar still needs some.
    static Number onBar(double limit) { return static_cast<Number>(std::clamp(limit, -1e6, 1e6)); }

    void tell(void (DzSlider::*signal)(), void (DzProperty::*method)())
    {
        connect(_slider, signal, this, [this, method] {
            if (_property)
                (_property->*method)();
        });
    }

    Property& _number;
    Slider* _slider;
};

class BoolEditor : public PropertyEditor {
public:
    BoolEditor(DzBoolProperty& property, QWidget* parent)
        : PropertyEditor(property, parent), _flag(property), _box(new QCheckBox)
    {
        setWidget(_box);
        connect(_box, &QCheckBox::toggled, this,
                [this](bool value) { write([&] { _flag.setBoolValue(value); }); });
    }

protected:
    void readValue() override { _box->setChecked(_flag.getBoolValue()); }

private:
    DzBoolProperty& _flag;
    QCheckBox* _box;
};

class EnumEditor : public PropertyEditor {
public:
    EnumEditor(DzEnumProperty& property, QWidget* parent)
        : PropertyEditor(property, parent), _choice(property), _box(new QComboBox)
    {
        setWidget(_box);
        connect(_box, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
                [this](int index) { write([&] { _choice.setValue(index); }); });
    }

protected:
    void readValue() override
    {
        if (_box->count() != _choice.getNumItems())
            readLimits();
        _box->setCurrentIndex(_choice.getValue());
    }
    void readLimits() override
    {
        _box->clear();
        for (int i = 0; i < _choice.getNumItems(); ++i)
            _box->addItem(_choice.getItem(i));
    }

private:
    DzEnumProperty& _choice;
    QComboBox* _box;
};

class TextEditor : public PropertyEditor {
public:
    TextEditor(DzStringProperty& property, QWidget* parent)
        : PropertyEditor(property, parent), _text(property), _line(new QLineEdit)
    {
        setWidget(_line);
        connect(_line, &QLineEdit::editingFinished, this, [this] {
            write([&] {
                if (_line->text() != _text.getValue())
                    _text.setValue(_line->text());
            });
        });
    }

protected:
    void readValue() override
    {
        if (_line->text() != _text.getValue())
            _line->setText(_text.getValue());
    }

private:
    DzStringProperty& _text;
    QLineEdit* _line;
};

/// For kinds whose value cannot be shown in a row.
class NoEditor : public PropertyEditor {
public:
    NoEditor(DzProperty& property, QWidget* parent) : PropertyEditor(property, parent) {}

protected:
    void readValue() override {}
};

PropertyEditor* MakeFor(DzProperty& property, QWidget* parent)
{
    if (auto* const text = qobject_cast<DzStringProperty*>(&property))
        return new TextEditor(*text, parent);
    // Switches and choices are numbers too.
    if (auto* const flag = qobject_cast<DzBoolProperty*>(&property))
        return new BoolEditor(*flag, parent);
    if (auto* const choice = qobject_cast<DzEnumProperty*>(&property))
        return new EnumEditor(*choice, parent);
    if (auto* const whole = qobject_cast<DzIntProperty*>(&property))
        return new SliderEditor<DzIntProperty, DzIntSlider, int>(*whole, parent);
    if (auto* const number = qobject_cast<DzFloatProperty*>(&property))
        return new SliderEditor<DzFloatProperty, DzFloatSlider, float>(*number, parent);
    return new NoEditor(property, parent);
}

} // namespace

PropertyEditor* PropertyEditor::Make(DzProperty& property, QWidget* parent)
{
    PropertyEditor* const editor = MakeFor(property, parent);
    editor->readLook();
    return editor;
}

} // namespace openhost
