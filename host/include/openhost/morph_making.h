// Morphs that programs make of shapes which they have computed.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/span.h"
#include "geometry/morph_split.h"

#include <memory>
#include <string>

class DzMorph;
class DzNode;
class QString;

namespace openhost {

/// Takes pose and dials of a figure out of shapes of its mesh, any number of them: each becomes what Morph
/// Loader Pro makes of it with reversed deformations. What the figure is like is looked at once, when the
/// object is made; until it goes the figure is to stay as it is. Any thread may ask for a morph.
class MorphMaker {
public:
    /// @param level  of subdivision that the shapes are of; 0 for the cage
    /// @throws base::Error  the figure has no mesh, or is scaled to nothing
    MorphMaker(const DzNode& figure, int level);
    ~MorphMaker();
    MorphMaker(const MorphMaker&) = delete;
    MorphMaker& operator=(const MorphMaker&) = delete;

    /// The morph that at a dial of 1 gives the figure as it is now the shape.
    /// @param world      cm, one per vertex of the level
    /// @param tolerance  cm; what moves less is left out
    /// @throws base::FormatError  the number of vertices is another one
    geometry::SubdividedMorph make(base::Span<const geometry::Vec3f> world, float tolerance) const;

private:
    struct Impl;
    std::unique_ptr<const Impl> _impl;
};

/// A new morph of the figure, named and labelled so, its dial at 0.
/// @param name  that no other modifier of the figure has
/// @throws base::Error  the figure has no mesh or does not take it
DzMorph& AddMorph(DzNode& figure, const QString& name, geometry::SubdividedMorph made);
/// How libraries show a new morph, for its file.
/// @param type  such as "Modifier/Shape"
/// @param json  the whole object, with the same type
void SetPresentation(DzMorph& morph, const QString& type, std::string json);

} // namespace openhost
