// Sliders as assistive technology sees them.
// SPDX-License-Identifier: MIT

#include "slider_access.h"

#include <QAccessible>
#include <QAccessibleWidget>

namespace openhost {

namespace {

class AccessibleSlider : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit AccessibleSlider(DzSlider& slider)
        : QAccessibleWidget(&slider, QAccessible::Slider), _slider(slider)
    {
    }

    void* interface_cast(QAccessible::InterfaceType type) override
    {
        if (type == QAccessible::ValueInterface)
            return static_cast<QAccessibleValueInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    QString text(QAccessible::Text kind) const override
    {
        if (kind == QAccessible::Value)
            return _slider.getText();
        const QString text = QAccessibleWidget::text(kind);
        return kind == QAccessible::Name && text.isEmpty() ? _slider.getLabel() : text;
    }

    QVariant currentValue() const override { return DzSliderAccess::number(_slider); }
    QVariant minimumValue() const override { return DzSliderAccess::minimum(_slider); }
    QVariant maximumValue() const override { return DzSliderAccess::maximum(_slider); }
    QVariant minimumStepSize() const override { return DzSliderAccess::step(_slider); }
    void setCurrentValue(const QVariant& value) override
    {
        DzSliderAccess::setNumber(_slider, value.toDouble());
    }

private:
    DzSlider& _slider;
};

QAccessibleInterface* MakeInterface(const QString&, QObject* object)
{
    auto* const slider = qobject_cast<DzSlider*>(object);
    return slider ? new AccessibleSlider(*slider) : nullptr;
}

} // namespace

void MakeSlidersAccessible()
{
    QAccessible::installFactory(MakeInterface);
}

} // namespace openhost
