// What is in an OBJ file.
// SPDX-License-Identifier: MIT

#include "facts/file_facts.h"
#include "geometry/incidence.h"
#include "mesh_files.h"
#include "standard_streams.h"

#include <map>

#include <nlohmann/json.hpp>

namespace cli {

namespace {

Json FacesByCorners(const geometry::Topology& topology)
{
    std::map<std::size_t, std::size_t> counts;
    for (std::size_t f = 0; f < topology.faceCount(); ++f)
        ++counts[topology.face(f).size()];
    Json faces = Json::object();
    faces["total"] = topology.faceCount();
    for (const auto& [corners, count] : counts)
        faces[corners == 3   ? "triangles"
              : corners == 4 ? "quads"
                             : std::to_string(corners) + "_corners"] = count;
    return faces;
}

/// How many faces each name has, in the file's order.
Json FaceSets(const std::vector<std::string>& names, const std::vector<std::uint32_t>& setOfFace)
{
    std::vector<std::size_t> counts(names.size(), 0);
    for (const std::uint32_t set : setOfFace)
        ++counts[set];
    Json sets = Json::array();
    for (std::size_t i = 0; i < names.size(); ++i)
        sets.push_back({{"name", names[i]}, {"faces", counts[i]}});
    return sets;
}

Json Coordinates(geometry::Vec3f v)
{
    return {Rounded(v.x, 4), Rounded(v.y, 4), Rounded(v.z, 4)};
}

Json Edges(const geometry::Topology& topology)
{
    const geometry::EdgeCounts counts = geometry::CountEdges(topology);
    return {{"total", counts.total},
            {"boundary", counts.boundary},
            {"non_manifold", counts.nonManifold},
            {"closed", counts.isClosed()}};
}

} // namespace

Json ObjFacts(const std::filesystem::path& file, base::Diagnostics& met)
{
    const geometry::ObjContent content = ReadMeshFile(file, met);
    const geometry::Topology& topology = *content.mesh.topology;
    const geometry::Box3f box = geometry::BoundingBox(content.mesh.positions);
    Json facts;
    facts["file"] = InputText(file);
    facts["vertices"] = content.mesh.vertexCount();
    facts["faces"] = FacesByCorners(topology);
    facts["texture_coordinates"] = content.texCoords.coordinates.size();
    facts["groups"] = FaceSets(topology.groupNames, topology.faceGroups);
    facts["surfaces"] = FaceSets(topology.surfaceNames, topology.faceSurfaces);
    facts["bounding_box_cm"] = {
        {"min", Coordinates(box.min)}, {"max", Coordinates(box.max)}, {"size", Coordinates(box.size())}};
    facts["edges"] = Edges(topology);
    return facts;
}

} // namespace cli
