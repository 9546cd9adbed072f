// Real human meshes with known answers, where they are at hand: a folder of OBJ and compressed CSV files.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/polygon_mesh.h"
#include "geometry/skinning.h"

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace humans {

/// The folder that GANTREL_HUMANS names, or "shared/humans" beside the checkout; nothing where neither
/// exists.
std::optional<std::filesystem::path> Folder();

/// A displacement per vertex from a file of rows "vertex,dx,dy,dz", plain or gzip; zero where no row stands.
std::vector<geometry::Vec3f> ReadDisplacements(const std::filesystem::path& file, std::size_t vertexCount);

/// A morph on the source mesh and what it is on the target mesh.
struct KnownMorph {
    std::string name;
    std::vector<geometry::Vec3f> onSource, onTarget; ///< cm, one per vertex
};

struct Pair {
    geometry::PolygonMesh source; ///< neutral
    geometry::PolygonMesh target; ///< in the clone shape that lies close to the source's neutral
    std::vector<KnownMorph> morphs;
};
Pair Load(const std::filesystem::path& folder);

/// Where the joints begin and end in one shape; cm.
struct JointPlaces {
    std::vector<geometry::Vec3f> heads, tails;
};
struct Skeleton {
    std::vector<std::string> names;
    std::vector<int> parents;                  ///< -1 for the root
    JointPlaces source;                        ///< in the source's neutral shape
    JointPlaces target;                        ///< in the target's own shape
    std::map<std::string, JointPlaces> morphs; ///< of the source
};
Skeleton ReadSkeleton(const std::filesystem::path& folder);
/// Joints in the skeleton's order.
geometry::SkinWeights ReadWeights(const std::filesystem::path& file, const Skeleton& skeleton);

/// The error of each vertex whose true displacement is longer than 0.1 mm; cm.
std::vector<float> Errors(const std::vector<geometry::Vec3f>& found,
                          const std::vector<geometry::Vec3f>& truth);

} // namespace humans
