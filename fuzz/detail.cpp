// Files of morph detail for subdivided meshes.
// SPDX-License-Identifier: MIT

#include "base/errors.h"
#include "dson/dhdm.h"
#include "fuzz/target.h"
#include "tests/host/content_fixture.h"

namespace {

const geometry::Topology& Cage()
{
    static const dson::FigureAsset figure = mini::Figure();
    return *figure.geometry.mesh.topology;
}

/// Every third corner of each level is moved.
std::string Encoded(int levels)
{
    geometry::MultiresDetail detail;
    for (int level = 1; level <= levels; ++level) {
        geometry::DetailLevel current;
        for (std::uint32_t corner = 1; corner < 16u << 2 * level; corner += 3) {
            current.corners.push_back(corner);
            current.offsets.push_back({0.5f, -0.25f, static_cast<float>(corner)});
        }
        detail.levels.push_back(std::move(current));
    }
    std::size_t leftOut = 0;
    return dson::EncodeDhdm(detail, Cage(), &leftOut);
}

std::vector<std::string> Seeds()
{
    return {Encoded(0), Encoded(1), Encoded(2)};
}

void Feed(std::string_view bytes)
{
    try {
        dson::DescribeDhdm(bytes, "input");
    } catch (const base::Error&) {
    }
    geometry::MultiresDetail detail;
    try {
        detail = dson::DecodeDhdm(bytes, Cage(), "input");
    } catch (const base::Error&) {
        return;
    }
    std::size_t leftOut = 0;
    const std::string written = dson::EncodeDhdm(detail, Cage(), &leftOut);
    fuzz::Demand(leftOut == 0, "what was read can be written");
    const geometry::MultiresDetail again = dson::DecodeDhdm(written, Cage(), "written");
    fuzz::Demand(again.levels.size() <= detail.levels.size(), "no level is added");
    for (std::size_t i = 0; i < again.levels.size(); ++i)
        fuzz::Demand(again.levels[i].corners == detail.levels[i].corners, "written detail is read again");
}

const fuzz::Registration registration({"detail", Seeds, Feed});

} // namespace
