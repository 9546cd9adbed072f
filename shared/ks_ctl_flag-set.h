// Check boxes bound to the flags of one setting.
// SPDX-License-Identifier: MIT

#pragma once

#include "ks_flag-set.h"
#include "ks_setting.h"

#include <functional>
#include <string_view>
#include <utility>
#include <vector>

#include <QObject>

class QCheckBox;

namespace kst {

/// The part of a flag controller that does not depend on its enumeration. The boxes are borrowed.
class FlagSetControllerBase : public QObject {
    Q_OBJECT

public:
    ~FlagSetControllerBase() override;

    /// Lets a box show a flag. Mappings keep the order of the calls.
    /// @param flagBits  the flag's bits
    /// @param tooltip   as for gui::SetHelp; may be empty
    void addMapping(int flagBits, QCheckBox* pBox, std::string_view tooltip);

protected:
    FlagSetControllerBase();

    /// From now on every toggle calls back; an empty callback is left alone.
    void connectBoxes(std::function<void(bool)> onChange);
    /// Checks each box exactly when its bits meet the given ones.
    void checkBoxes(int flagBits);
    /// The bits of all checked boxes.
    int checkedBits() const;

private slots:
    void slotToggled(bool checked);

private:
    struct InternalMapping {
        int flagBits;
        QCheckBox* pBox;
    };
    std::vector<InternalMapping> _mappings;
    std::function<void(bool)> _onChange;
};

/// Binds one check box a flag to a setting. The setting is borrowed and changes only when the dialog accepts.
template <class E>
class FlagSetController : public FlagSetControllerBase {
public:
    struct Mapping {
        E flag;
        QCheckBox* pBox;
        std::string_view tooltip; ///< as for gui::SetHelp; may be empty
    };

    explicit FlagSetController(SettingBase<FlagSet<E>>& setting) : _setting(setting) {}

    /// Shows the setting in the boxes, which does not call back.
    /// @param onChange  called with a toggled box's new state; may be empty
    void init(const std::vector<Mapping>& mappings, std::function<void(bool)> onChange)
    {
        for (const Mapping& mapping : mappings)
            addMapping(static_cast<int>(mapping.flag), mapping.pBox, mapping.tooltip);
        checkBoxes(_setting.get().toInt());
        connectBoxes(std::move(onChange));
    }

    /// Stores the flags of the checked boxes and tells the setting's listeners, unless they are the present
    /// ones.
    void acceptValue() { _setting.setAndNotify(FlagSet<E>::fromInt(checkedBits())); }
    /// Shows the setting's default; the setting itself stays.
    void restoreDefault() { checkBoxes(_setting.getDefault().toInt()); }

private:
    SettingBase<FlagSet<E>>& _setting;
};

} // namespace kst
