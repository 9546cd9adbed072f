// Source and target side by side, as a conversion compares them.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/polygon_mesh.h"
#include "gnt_outcome.h"
#include "ks_daz-helpers.h"

#include <string>
#include <utility>
#include <vector>

class DzFigure;
class DzFloatProperty;
class DzNode;

namespace cli {

/// Values of properties that are set for a while.
class TemporaryValues {
public:
    TemporaryValues() = default;
    ~TemporaryValues();
    TemporaryValues(const TemporaryValues&) = delete;
    TemporaryValues& operator=(const TemporaryValues&) = delete;

    void set(DzFloatProperty& property, float value);

private:
    std::vector<std::pair<DzFloatProperty*, float>> _saved;
};

/// Switches a figure to the resolution of the conversion for a while.
class AtResolution {
public:
    AtResolution(const DzNode& node, GntResolution resolution);
    ~AtResolution();
    AtResolution(const AtResolution&) = delete;
    AtResolution& operator=(const AtResolution&) = delete;

private:
    const DzNode& _node;
    kst::daz::NodeResolution _before;
};

/// Both figures in the place and pose of the conversion, as long as it lives.
struct Comparison {
    Comparison(const GntOutcome& outcome, GntResolution resolution);

    AtResolution source, target;
    TemporaryValues values;
};

/// A figure's mesh and those of eyes, mouth, lashes and the like that are seen on it. They belong to the
/// scene and change with it.
struct Body {
    std::vector<geometry::PolygonMeshView> meshes;
    std::vector<std::string> parts; ///< labels of all but the first
};
Body BodyOf(DzFigure& figure);

} // namespace cli
