// What single dials do to a figure's mesh.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/diagnostic.h"
#include "geometry/vec3.h"
#include "morphs/morph_choice.h"

#include <string>
#include <vector>

class DzFigure;

namespace cli {

/// Measures a figure whose own shape and pose are set aside for good: every dial and joint stands where its
/// files have it at first.
class SourceShapes {
public:
    /// @param diagnostics  hears of it when something was set aside
    SourceShapes(DzFigure& figure, const std::string& file, base::Diagnostics& diagnostics);
    SourceShapes(const SourceShapes&) = delete;
    SourceShapes& operator=(const SourceShapes&) = delete;

    struct Shape {
        std::vector<geometry::Vec3f> displacements; ///< cm, in the world, at the level in effect
        std::string problem;                        ///< why there are none; empty otherwise
        bool isHeld = false;                        ///< limits of the dial kept it from the value
        double value = 0.0;                         ///< that it had
    };
    /// Of the dial at the value, alone but for what it drives itself.
    /// Of a shape of which files have lost something there is none.
    /// @param hasOwnRest  the figure at rest is not as it was when this was made
    Shape measure(const ShapeDial& dial, double value, bool hasOwnRest);

    /// Gives back the memory of displacements that were read.
    void unload();

private:
    DzFigure& _figure;
    std::vector<geometry::Vec3f> _rest;
};

} // namespace cli
