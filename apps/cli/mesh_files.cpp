// OBJ files as the subcommands need them.
// SPDX-License-Identifier: MIT

#include "mesh_files.h"

#include "base/ascii.h"
#include "base/errors.h"
#include "geometry/limits.h"
#include "standard_streams.h"

#include <algorithm>
#include <cmath>

namespace cli {

namespace {

bool IsFarOut(geometry::Vec3f p)
{
    return std::max({std::abs(p.x), std::abs(p.y), std::abs(p.z)}) > geometry::farthestPosition;
}

/// Nothing has a name there that could tell of another format.
geometry::ObjContent ParseInput()
{
    constexpr std::size_t longestMesh = std::size_t{1} << 32;
    const std::string text = ReadStandardInput(longestMesh), name = InputText(standardStream);
    const std::size_t start = text.find_first_not_of(" \t\r\n");
    if (start != text.npos && text[start] == '{')
        throw base::FormatError("{}: is no text of an OBJ file, the one kind that is read there", name);
    return geometry::ParseObj(text, {}, name);
}

} // namespace

geometry::ObjContent ReadMeshFile(const std::filesystem::path& file, base::Diagnostics& met)
{
    geometry::ObjContent content = IsStandardStream(file) ? ParseInput() : geometry::ReadObj(file);
    met.insert(met.end(), content.diagnostics.begin(), content.diagnostics.end());
    const std::vector<geometry::Vec3f>& positions = content.mesh.positions;
    if (positions.empty())
        throw base::FormatError("{}: has no vertices", InputText(file));
    const auto bad = std::find_if_not(positions.begin(), positions.end(), geometry::IsFinite);
    if (bad != positions.end())
        throw base::FormatError("{}: vertex {} has a position that is not finite", InputText(file),
                                bad - positions.begin() + 1);
    const auto far = std::find_if(positions.begin(), positions.end(), IsFarOut);
    if (far != positions.end())
        throw base::FormatError("{}: vertex {} lies farther than {:g} cm from the origin", InputText(file),
                                far - positions.begin() + 1, geometry::farthestPosition);
    return content;
}

geometry::ObjContent ReadSurfaceFile(const std::filesystem::path& file, base::Diagnostics& met)
{
    geometry::ObjContent content = ReadMeshFile(file, met);
    if (content.mesh.faceCount() == 0)
        throw base::FormatError("{}: has no faces", InputText(file));
    return content;
}

bool HasExtension(const std::filesystem::path& file, const char* lowerCaseExtension)
{
    std::string extension = file.extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(), base::ToLowerAscii);
    return extension == lowerCaseExtension;
}

} // namespace cli
