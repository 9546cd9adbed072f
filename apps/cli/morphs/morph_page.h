// Converted morphs as a page to look at.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/deltas.h"
#include "geometry/polygon_mesh.h"
#include "morphs/morph_conversion.h"
#include "report.h"

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

class DzFigure;

namespace cli {

class Progress;

/// Collects what the page shows while morphs are converted: of the largest, both shapes for pictures; of as
/// many as a page can carry, the new one to turn. Takes little memory, however many come.
class MorphGallery {
public:
    /// @param source  whose every dial stands where its files have it at first
    MorphGallery(DzFigure& source, DzFigure& target);

    /// @param displacements  cm, of the source at the level in effect; the cage's vertices stand first
    void add(const ConvertedMorph& told, const std::vector<geometry::Vec3f>& displacements,
             const geometry::SparseDeltas& made);

    /// As "morphs.js" has it.
    /// @param tableBytes  of what the page tells besides
    Json show(std::size_t tableBytes) const;

private:
    struct Shown {
        std::string name, label;
        double largestMm = 0.0;
        std::vector<geometry::Vec3f> displacements; ///< cm, of the source's cage; of the largest alone
        geometry::SparseDeltas made;
        std::size_t bytes() const { return made.size() * bytesPerDelta; }
    };
    static constexpr std::size_t bytesPerDelta = 11; ///< an index and three parts, in base 64

    void dropSmallest();
    Json draw(const Shown& shown) const;

    geometry::PolygonMesh _source, _target; ///< cages at rest
    std::vector<Shown> _shown;              ///< the largest first
    std::size_t _bytes = 0, _count = 0;
};

/// What the page shows besides what it tells.
/// @param gallery  null where nothing was converted
Json ShowMorphs(const MorphGallery* gallery, const MorphConversionReport& report, const Progress& progress);

/// @param shown  of ShowMorphs()
/// @throws base::IoError  the file cannot be written
void WriteMorphPage(const MorphConversionRequest& request, const MorphConversionReport& report, Json shown,
                    const Progress& progress);

} // namespace cli
