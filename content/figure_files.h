// Writing one figure's files into a library: the figure, its morphs, the files that load it.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/file_set.h"
#include "dson/asset.h"
#include "dson/writer.h"
#include "geometry/skinning.h"
#include "sample_content/figure_kinds.h"

#include <filesystem>
#include <string>
#include <vector>

namespace content {

/// A bone of a figure to write, parents before children.
struct FigureBone {
    std::string id, label;
    int parent = -1; ///< index; -1 hangs on the figure itself
    geometry::Vec3f center, end, orientation;
    geometry::RotationOrder order = geometry::RotationOrder::YZX;
    bool inLegs = false, inArms = false, inHead = false; ///< for the surfaces; the trunk otherwise
};

/// Everything that a figure's own file is made of.
struct FigureParts {
    geometry::PolygonMesh neutral;
    std::vector<FigureBone> bones;
    std::vector<geometry::JointWeights> weights; ///< one a bone; may be empty lists
    std::vector<std::string> partNames;          ///< of the surfaces of eyes, teeth, nails, ...
    std::vector<std::uint32_t>
        facePart; ///< one per face: 0 skin, n the (n - 1)th of those; empty for all skin
};

/// Builds the asset: face groups by the bone with most weight, four surfaces, skin bound to the bones.
dson::FigureAsset MakeFigureAsset(const FigureKindInfo& kind, const FigureParts& parts);

/// How far a bone's centre and end move with a morph.
struct JointShift {
    geometry::Vec3f center, end;
};

/// One dial to write below a figure's Morphs folder.
struct MorphParts {
    std::string name, label, group;
    double lowest = 0.0;
    std::vector<geometry::Vec3f> deltas;                ///< cm, one per vertex; empty for a plain control
    std::vector<JointShift> joints;                     ///< one a bone, or empty
    std::vector<std::pair<std::string, double>> drives; ///< other dials, by name, and by what factor
};

/// Of a library: those that files of a figure of the kind lie in, the head-split preset included.
std::vector<std::filesystem::path> FigureFolders(const FigureKindInfo& kind,
                                                 const std::filesystem::path& library);

/// Writes one figure's files.
class FigureFiles {
public:
    /// Writes the figure itself and the files that load it plain.
    /// @param set  has the figure's folders, and puts all of its files in place
    /// @throws base::IoError, base::FormatError
    FigureFiles(const FigureKindInfo& kind, const FigureParts& parts, std::filesystem::path library,
                base::FileSet& set);

    /// May be called by several threads.
    void writeMorph(const MorphParts& morph) const;
    /// @param path   decoded, below the library, with leading '/'
    /// @param dials  names and values of morphs of this figure
    void writeCharacter(const std::string& path, const std::string& label,
                        const std::vector<std::pair<std::string, double>>& dials) const;
    const dson::FigureAsset& figure() const { return _figure; }

private:
    void addJointFormulas(const MorphParts& morph, dson::Modifier& modifier) const;

    const FigureKindInfo& _kind;
    dson::FigureAsset _figure;
    std::filesystem::path _library;
    dson::WriteOptions _options;
};

/// The head-split preset of the newest figure, from one weight per vertex.
void WriteHeadSplit(base::Span<const float> weights, const std::filesystem::path& library,
                    base::FileSet& set);

} // namespace content
