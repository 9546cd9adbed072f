// Shapes that a figure wears without having them.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/diagnostic.h"

#include <optional>

class DzNode;
class QString;

namespace openhost {

/// One diagnostic each, with the shape's file, the shape as its asset, and why.
struct MissingShapes {
    base::Diagnostics shapes;  ///< displacements could not be had, not one of them
    base::Diagnostics details; ///< what a shape adds to the subdivided mesh could not be had
};

/// Of the shapes that the figure wears, whatever turns their dials: those with files that are missing, cannot
/// be read or are for another mesh. What the figure wears is read from its files for that.
MissingShapes FindMissingShapes(const DzNode& figure);

/// Sets the dial of a shape that the figure would have if its file could be had; nobody sees that dial.
/// @param name  the shape's name or id
/// @return false if there is no such shape
bool DialMissingShape(const DzNode& figure, const QString& name, double value);

/// Why the figure has no dial for a shape that its files speak of; nothing where they speak of none.
/// @param name  the shape's name or id
std::optional<base::Diagnostic> WhyShapeIsMissing(const DzNode& figure, const QString& name);

} // namespace openhost
