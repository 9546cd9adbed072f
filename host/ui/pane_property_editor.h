// A property's label and value, to be seen and changed.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzproperty.h"
#include <QPointer>
#include <QWidget>

#include <functional>

namespace openhost {

/// A slider, check box, combo box or line, by the property's kind, with the label before it. Sets what the
/// user enters; what the property makes of it is shown at once. Without its property it does nothing.
class PropertyEditor : public QWidget {
    Q_OBJECT
public:
    /// @param parent  owns the editor
    static PropertyEditor* Make(DzProperty& property, QWidget* parent);
    ~PropertyEditor() override;

    /// What a slider needs beside its label to be moved and read, in pixels; labels are cut before it is.
    static int LeastWidth(const QWidget& widget);
    /// The label above the widget instead of before it; a check box stays beside its label.
    void setStacked(bool onOff);

public slots:
    /// Shows the property's value.
    void read();
    /// Shows its label, limits and lock, and its value.
    void readLook();
    /// Ends all dealings with the property.
    void letGo();

protected:
    PropertyEditor(DzProperty& property, QWidget* parent);

    /// Puts the widget beside the label; takes ownership.
    void setWidget(QWidget* widget);
    /// Calls the function for the user's doing, if the property is still there.
    void write(const std::function<void()>& write);

    virtual void readValue() = 0;
    virtual void readLimits() {}

    QPointer<DzProperty> _property;

private:
    class ShortLabel;
    ShortLabel* _label;
    QWidget* _widget = nullptr;
    bool _isReading = false;
};

} // namespace openhost
