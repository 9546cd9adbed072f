// Check boxes, radio buttons and checkable group boxes whose toggles run a callback.
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>
#include <map>
#include <string_view>
#include <utility>
#include <vector>

#include <QObject>
#include <QRadioButton>

class QAbstractButton;
class QCheckBox;
class QGroupBox;

/// What answers the toggles of check boxes or radio buttons. What the answer throws is shown in the critical
/// box.
class KsCheckOrRadioBase : public QObject {
    Q_OBJECT

public:
    ~KsCheckOrRadioBase() override;

protected:
    /// @param heading  of that box; must outlive the object
    explicit KsCheckOrRadioBase(const char* heading);

    void connectToggled(const QAbstractButton& button);
    virtual void onCheckBoxOrRadioToggled(bool checked) = 0;

    static const char* const CHECK_BOX_HEADING;
    static const char* const RADIO_BUTTON_HEADING;

private slots:
    void slotCheckBoxOrRadioToggled(bool checked);

private:
    const char* _heading;
};

namespace kst {

/// One check box with a callback. Must live as long as the box can be toggled.
class CheckBox : public KsCheckOrRadioBase {
public:
    CheckBox();
    ~CheckBox() override;

    /// Sets the box to `initial` first, which does not call back.
    /// @param help  the box's tool tip, as for gui::SetHelp
    void connect(QCheckBox& box, bool initial, std::function<void(bool)> callback,
                 std::string_view help = std::string_view());

protected:
    void onCheckBoxOrRadioToggled(bool checked) override;

private:
    std::function<void(bool)> _callback;
};

/// One checkable group box with a callback. Must live as long as the box can be toggled.
class CheckableGroupBox : public QObject {
    Q_OBJECT

public:
    CheckableGroupBox();
    ~CheckableGroupBox() override;

    void connect(QGroupBox& box, std::function<void(bool)> callback);

private slots:
    void slotToggled(bool checked);

private:
    std::function<void(bool)> _callback;
};

/// The part of a radio group that does not depend on its enumeration.
class RadioGroupBase : public KsCheckOrRadioBase {
protected:
    RadioGroupBase();
    ~RadioGroupBase() override;

    void connectButton(QRadioButton& button, std::string_view help);
};

/// A choice among enumerators, one radio button each. It keeps its value itself; no setting is bound. The
/// buttons are borrowed.
template <class E>
class RadioGroup : public RadioGroupBase {
public:
    /// Checks the button of `initial`, which does not call back.
    /// @param onChange  called with the new value, once a change; may be empty
    /// @param help      every button's tool tip, as for gui::SetHelp
    void init(const std::vector<std::pair<E, QRadioButton*>>& buttons, E initial,
              std::function<void(const E&)> onChange, std::string_view help = std::string_view())
    {
        _buttons = std::map<E, QRadioButton*>(buttons.begin(), buttons.end());
        _value = initial;
        const auto found = _buttons.find(initial);
        if (found != _buttons.end())
            found->second->setChecked(true);
        _onChange = std::move(onChange);
        for (const auto& entry : _buttons)
            connectButton(*entry.second, help);
    }

    E getValue() const { return _value; }

protected:
    void onCheckBoxOrRadioToggled(bool) override
    {
        for (const auto& entry : _buttons) {
            if (!entry.second->isChecked())
                continue;
            // The old button's toggle comes beside the new one's; only one of them finds another value.
            if (entry.first != _value) {
                _value = entry.first;
                if (_onChange)
                    _onChange(_value);
            }
            return;
        }
    }

private:
    std::map<E, QRadioButton*> _buttons;
    E _value = E();
    std::function<void(const E&)> _onChange;
};

} // namespace kst
