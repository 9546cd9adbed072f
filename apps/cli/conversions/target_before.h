// A conversion's target as it was before.
// SPDX-License-Identifier: MIT

#pragma once

#include "ks_daz-helpers.h"

#include <set>
#include <utility>
#include <vector>

class DzModifier;
class DzNumericProperty;

namespace cli {

/// A conversion that fails on its way leaves its target posed, labelled anew or with some of the morphs,
/// which matters where the figure stays in use.
class TargetBefore {
public:
    explicit TargetBefore(DzFigure& target);

    /// Values, label and resolution are set back, and modifiers that have come since are taken off.
    void putBack() const;

private:
    DzFigure& _target;
    QString _label;
    kst::daz::NodeResolution _resolution;
    std::vector<std::pair<DzNumericProperty*, double>> _values;
    std::set<const DzModifier*> _modifiers;
};

} // namespace cli
