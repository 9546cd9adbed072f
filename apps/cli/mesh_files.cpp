// OBJ files as the subcommands need them.
// SPDX-License-Identifier: MIT

#include "mesh_files.h"

#include "base/ascii.h"
#include "base/errors.h"
#include "command.h"
#include "geometry/limits.h"

#include <algorithm>
#include <cmath>

namespace cli {

namespace {

bool IsFarOut(geometry::Vec3f p)
{
    return std::max({std::abs(p.x), std::abs(p.y), std::abs(p.z)}) > geometry::farthestPosition;
}

} // namespace

geometry::ObjContent ReadMeshFile(const std::filesystem::path& file, base::Diagnostics& met)
{
    geometry::ObjContent content = geometry::ReadObj(file);
    met.insert(met.end(), content.diagnostics.begin(), content.diagnostics.end());
    const std::vector<geometry::Vec3f>& positions = content.mesh.positions;
    if (positions.empty())
        throw base::FormatError("{}: has no vertices", FileText(file));
    const auto bad = std::find_if_not(positions.begin(), positions.end(), geometry::IsFinite);
    if (bad != positions.end())
        throw base::FormatError("{}: vertex {} has a position that is not finite", FileText(file),
                                bad - positions.begin() + 1);
    const auto far = std::find_if(positions.begin(), positions.end(), IsFarOut);
    if (far != positions.end())
        throw base::FormatError("{}: vertex {} lies farther than {:g} cm from the origin", FileText(file),
                                far - positions.begin() + 1, geometry::farthestPosition);
    return content;
}

geometry::ObjContent ReadSurfaceFile(const std::filesystem::path& file, base::Diagnostics& met)
{
    geometry::ObjContent content = ReadMeshFile(file, met);
    if (content.mesh.faceCount() == 0)
        throw base::FormatError("{}: has no faces", FileText(file));
    return content;
}

bool HasExtension(const std::filesystem::path& file, const char* lowerCaseExtension)
{
    std::string extension = file.extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(), base::ToLowerAscii);
    return extension == lowerCaseExtension;
}

} // namespace cli
