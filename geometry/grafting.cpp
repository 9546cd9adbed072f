// Checking grafts and joining topologies.
// SPDX-License-Identifier: MIT

#include "geometry/grafting.h"

#include "base/counted.h"
#include "geometry/errors.h"

#include <algorithm>

namespace geometry {

namespace {

void CheckCount(const char* one, const char* many, std::uint32_t wanted, std::size_t count)
{
    if (wanted != 0 && wanted != count)
        throw TopologyError("the graft is for {} but the mesh has {}", base::Counted(wanted, one, many),
                            count);
}

void CheckPairs(const Graft& graft, int side, const char* whose, std::uint32_t vertexCount)
{
    std::vector<bool> isPaired(vertexCount);
    for (const std::array<std::uint32_t, 2>& pair : graft.vertexPairs) {
        const std::uint32_t vertex = pair[static_cast<std::size_t>(side)];
        if (vertex >= vertexCount)
            throw TopologyError("the graft joins vertex {} of {} but there are {}", vertex, whose,
                                vertexCount);
        if (isPaired[vertex])
            throw TopologyError("the graft joins vertex {} of {} twice", vertex, whose);
        isPaired[vertex] = true;
    }
}

/// Faces that a graft upon the part hides.
std::vector<bool> HiddenFaces(const std::vector<GraftPart>& parts, std::size_t part)
{
    std::vector<bool> isHidden(parts[part].topology->faceCount());
    for (const GraftPart& other : parts)
        if (other.graft && other.onto == part)
            for (const std::uint32_t face : other.graft->hiddenFaces)
                isHidden[face] = true;
    return isHidden;
}

/// Appends what faces are labelled with, each label once.
std::vector<std::uint32_t> AddNames(const std::vector<std::string>& names, std::vector<std::string>& all)
{
    std::vector<std::uint32_t> places;
    for (const std::string& name : names) {
        const auto found = std::find(all.begin(), all.end(), name);
        places.push_back(static_cast<std::uint32_t>(found - all.begin()));
        if (found == all.end())
            all.push_back(name);
    }
    return places;
}

void AddFaces(const GraftPart& part, const std::vector<std::uint32_t>& vertices,
              const std::vector<bool>& isHidden, Topology& joined)
{
    const Topology& own = *part.topology;
    const std::vector<std::uint32_t> groups = AddNames(own.groupNames, joined.groupNames);
    const std::vector<std::uint32_t> surfaces = AddNames(own.surfaceNames, joined.surfaceNames);
    std::vector<std::uint32_t> corners;
    for (std::size_t f = 0; f < own.faceCount(); ++f) {
        if (isHidden[f])
            continue;
        corners.clear();
        for (const std::uint32_t vertex : own.face(f))
            corners.push_back(vertices[vertex]);
        joined.addFace(corners);
        joined.faceGroups.push_back(own.faceGroups.empty() ? 0 : groups[own.faceGroups[f]]);
        joined.faceSurfaces.push_back(own.faceSurfaces.empty() ? 0 : surfaces[own.faceSurfaces[f]]);
    }
}

} // namespace

void CheckGraft(const Graft& graft, const Topology& own, const Topology& other)
{
    CheckCount("vertex", "vertices", graft.vertexCount, other.vertexCount);
    CheckCount("face", "faces", graft.faceCount, other.faceCount());
    CheckPairs(graft, 0, "its own", own.vertexCount);
    CheckPairs(graft, 1, "the other mesh", other.vertexCount);
    for (const std::uint32_t face : graft.hiddenFaces)
        if (face >= other.faceCount())
            throw TopologyError("the graft hides face {} but there are {}", face, other.faceCount());
}

Graft UsableGraft(const Graft& graft, const Topology& own, const Topology& other,
                  const LeftOutFaces& otherLacks, GraftLosses& losses)
{
    CheckCount("vertex", "vertices", graft.vertexCount, other.vertexCount);
    CheckCount("face", "faces", graft.faceCount, other.faceCount() + otherLacks.count());
    Graft usable;
    std::vector<bool> isPaired[2] = {std::vector<bool>(own.vertexCount),
                                     std::vector<bool>(other.vertexCount)};
    for (const std::array<std::uint32_t, 2>& pair : graft.vertexPairs) {
        const bool isFree = pair[0] < own.vertexCount && pair[1] < other.vertexCount &&
                            !isPaired[0][pair[0]] && !isPaired[1][pair[1]];
        if (!isFree) {
            ++losses.pairs;
            continue;
        }
        isPaired[0][pair[0]] = isPaired[1][pair[1]] = true;
        usable.vertexPairs.push_back(pair);
    }
    for (const std::uint32_t face : graft.hiddenFaces) {
        const std::optional<std::uint32_t> inMesh = otherLacks.inMesh(face);
        if (inMesh && *inMesh < other.faceCount())
            usable.hiddenFaces.push_back(*inMesh);
        else if (inMesh)
            ++losses.hiddenFaces; // what the mesh lacks is not to be seen anyway
    }
    if (usable.empty())
        throw TopologyError("the graft has {} of vertices, none of which can be joined",
                            base::Counted(graft.vertexPairs.size(), "pair", "pairs"));
    return usable;
}

GraftedTopology JoinGrafts(const std::vector<GraftPart>& parts)
{
    GraftedTopology grafted;
    for (std::size_t p = 0; p < parts.size(); ++p) {
        const GraftPart& part = parts[p];
        std::vector<std::uint32_t> vertices(part.topology->vertexCount, UINT32_MAX);
        if (part.graft) {
            CheckGraft(*part.graft, *part.topology, *parts[part.onto].topology);
            for (const std::array<std::uint32_t, 2>& pair : part.graft->vertexPairs)
                vertices[pair[0]] = grafted.vertices[part.onto][pair[1]];
        }
        for (std::uint32_t v = 0; v < vertices.size(); ++v)
            if (vertices[v] == UINT32_MAX) {
                vertices[v] = static_cast<std::uint32_t>(grafted.origins.size());
                grafted.origins.push_back({static_cast<std::uint32_t>(p), v});
            }
        grafted.vertices.push_back(std::move(vertices));
    }
    auto joined = std::make_shared<Topology>();
    joined->vertexCount = static_cast<std::uint32_t>(grafted.origins.size());
    for (std::size_t p = 0; p < parts.size(); ++p) {
        const std::vector<bool> isHidden = HiddenFaces(parts, p);
        AddFaces(parts[p], grafted.vertices[p], isHidden, *joined);
        for (std::uint32_t f = 0; p == 0 && f < isHidden.size(); ++f)
            if (!isHidden[f])
                grafted.facesOfFirst.push_back(f);
    }
    // Faces of a part without names go with the first of the names that there are.
    if (joined->groupNames.empty())
        joined->faceGroups.clear();
    if (joined->surfaceNames.empty())
        joined->faceSurfaces.clear();
    grafted.topology = std::move(joined);
    return grafted;
}

} // namespace geometry
