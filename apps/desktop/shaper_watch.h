// Smoothed and pushed meshes that get into converted morphs.
// SPDX-License-Identifier: MIT

#pragma once

#include <base/diagnostic.h>

#include <QObject>
#include <QPointer>

#include <set>
#include <utility>
#include <vector>

class DzAction;
class DzMorph;
class DzMorphDeltas;
class DzNode;

namespace desktop {

/// Of the morphs of a figure.
using Displacements = std::set<std::pair<const DzMorph*, const DzMorphDeltas*>>;

/// Tells the log, as the command line tells on its own, when a figure got converted morphs that hold what is
/// no shape.
class ShaperWatch : public QObject {
    Q_OBJECT

public:
    /// @param action  borrowed; others than the conversion are left alone
    void watch(const DzAction& action);

private slots:
    void look();
    void tell();

private:
    /// Selected when the action begins, with what it would be told as.
    struct Figure {
        QPointer<DzNode> node;
        Displacements displacements;
        base::Diagnostics asSource, asTarget;
    };
    std::vector<Figure> _figures;
};

} // namespace desktop
