// The two sample topologies, meshed once for all tests of the program.
// SPDX-License-Identifier: MIT

#pragma once

#include "content/sample_figures.h"

#include <string>
#include <vector>

inline const content::SampleTopology& OldTopology()
{
    static const content::SampleTopology topology =
        content::MakeSampleTopology(content::FigureKind::Genesis8Female);
    return topology;
}

inline const content::SampleTopology& NewTopology()
{
    static const content::SampleTopology topology =
        content::MakeSampleTopology(content::FigureKind::Genesis9);
    return topology;
}

/// Of the faces of one surface, once for each of them.
inline std::vector<std::uint32_t> VerticesOf(const geometry::PolygonMesh& mesh, const std::string& surface)
{
    const geometry::Topology& topology = *mesh.topology;
    std::vector<std::uint32_t> vertices;
    for (std::size_t f = 0; f < mesh.faceCount(); ++f)
        if (topology.surfaceNames[topology.faceSurfaces[f]] == surface)
            vertices.insert(vertices.end(), topology.face(f).begin(), topology.face(f).end());
    return vertices;
}
