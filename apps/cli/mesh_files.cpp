// OBJ files as the subcommands need them, and facts about meshes.
// SPDX-License-Identifier: MIT

#include "mesh_files.h"

#include "base/errors.h"
#include "command.h"

#include <algorithm>
#include <cctype>

#include <tbb/parallel_sort.h>

namespace cli {

geometry::ObjContent ReadMeshFile(const std::filesystem::path& file)
{
    geometry::ObjContent content = geometry::ReadObj(file);
    const std::vector<geometry::Vec3f>& positions = content.mesh.positions;
    if (positions.empty())
        throw base::FormatError("{}: has no vertices", FileText(file));
    const auto bad = std::find_if_not(positions.begin(), positions.end(), geometry::IsFinite);
    if (bad != positions.end())
        throw base::FormatError("{}: vertex {} has a position that is not finite", FileText(file),
                                bad - positions.begin() + 1);
    return content;
}

geometry::ObjContent ReadSurfaceFile(const std::filesystem::path& file)
{
    geometry::ObjContent content = ReadMeshFile(file);
    if (content.mesh.faceCount() == 0)
        throw base::FormatError("{}: has no faces", FileText(file));
    return content;
}

bool HasExtension(const std::filesystem::path& file, const char* lowerCaseExtension)
{
    std::string extension = file.extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return extension == lowerCaseExtension;
}

EdgeCounts CountEdges(const geometry::Topology& topology)
{
    std::vector<std::uint64_t> edges;
    edges.reserve(topology.cornerCount());
    for (std::size_t f = 0; f < topology.faceCount(); ++f) {
        const base::Span<const std::uint32_t> face = topology.face(f);
        for (std::size_t c = 0; c < face.size(); ++c) {
            const auto [low, high] = std::minmax(face[c], face[(c + 1) % face.size()]);
            edges.push_back(std::uint64_t{low} << 32 | high);
        }
    }
    tbb::parallel_sort(edges.begin(), edges.end());

    EdgeCounts counts;
    for (auto first = edges.begin(); first != edges.end();) {
        const auto next =
            std::find_if(first, edges.end(), [&](std::uint64_t edge) { return edge != *first; });
        ++counts.total;
        counts.boundary += next - first == 1;
        counts.nonManifold += next - first > 2;
        first = next;
    }
    return counts;
}

} // namespace cli
