// Files that claim more than they hold.
// SPDX-License-Identifier: MIT

#include "base/errors.h"
#include "dson/dhdm.h"
#include "dson/gzip.h"
#include "dson/limits.h"
#include "dson/reader.h"
#include "tests/content/temp_folder.h"
#include "tests/content/throws.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <fstream>

#include <sys/resource.h>
#include <unistd.h>

namespace {

/// The process may take so much more memory, as long as it lives.
class LittleMemory {
public:
    explicit LittleMemory(std::uint64_t bytes)
    {
        std::uint64_t pages = 0;
        std::ifstream("/proc/self/statm") >> pages;
        getrlimit(RLIMIT_AS, &_former);
        rlimit limit = _former;
        limit.rlim_cur = pages * static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE)) + bytes;
        setrlimit(RLIMIT_AS, &limit);
    }
    ~LittleMemory() { setrlimit(RLIMIT_AS, &_former); }
    LittleMemory(const LittleMemory&) = delete;
    LittleMemory& operator=(const LittleMemory&) = delete;

private:
    rlimit _former{};
};

constexpr std::uint64_t little = std::uint64_t{100} << 20;

std::string Words(std::initializer_list<std::uint32_t> words)
{
    std::string bytes;
    for (const std::uint32_t word : words)
        bytes.append(reinterpret_cast<const char*>(&word), sizeof word);
    return bytes;
}

constexpr std::uint32_t dhdmMagic = 0xD0D0D0D0, one = 0x3F800000;

} // namespace

TEST(Counts, that_a_document_only_claims_take_no_memory)
{
    const TempFolder folder;
    const auto file = folder.write("claims.dsf", R"({"file_version": "0.6.0.0",
        "geometry_library": [{"id": "Mesh", "name": "Mesh", "type": "polygon_mesh",
            "vertices": {"count": 4294967295, "values": [[0, 0, 0], [1, 0, 0], [0, 1, 0]]},
            "polygon_groups": {"count": 4294967295, "values": ["All"]},
            "polygon_material_groups": {"count": 4294967295, "values": ["Skin"]},
            "polylist": {"count": 4294967295, "values": [[0, 0, 0, 1, 2]]}}],
        "modifier_library": [
            {"id": "Up", "name": "Up", "parent": "#Mesh", "morph": {"vertex_count": 4294967294,
                "deltas": {"count": 4294967295, "values": [[4294967293, 0, 1, 0]]}}},
            {"id": "Skin", "name": "Skin", "parent": "#Mesh", "skin": {"node": "#Fig", "geometry": "#Mesh",
                "vertex_count": 4294967295, "joints": [{"id": "j", "node": "#Fig",
                    "node_weights": {"count": 4294967295, "values": [[0, 1]]}}]}}]})");
    const LittleMemory memory(little);
    const dson::Document document = dson::ReadDocument(file);
    ASSERT_EQ(document.geometries.size(), 1u);
    EXPECT_EQ(document.modifiers.size(), 1u);
    EXPECT_EQ(document.skins.size(), 1u);
}

TEST(Counts, that_a_file_of_detail_only_claims_take_no_memory)
{
    const std::string header = Words({dhdmMagic, 1, one, 1});
    const LittleMemory memory(little);
    const dson::DhdmFacts facts =
        dson::DescribeDhdm(header + Words({dson::mostDetailFaces, 1, 0, 0}), "file");
    EXPECT_EQ(facts.faceCount, dson::mostDetailFaces);
    EXPECT_EQ(facts.levels.size(), 1u);
    EXPECT_THROW_MSG(dson::DescribeDhdm(header + Words({dson::mostDetailFaces + 1, 1, 0, 0}), "file"),
                     base::FormatError, "file: is for 10000001 faces, more than any figure has");
    EXPECT_THROW_MSG(dson::DescribeDhdm(header + Words({8, 1, UINT32_MAX, 0}), "file"), base::FormatError,
                     "file: level 1 is larger than the file");
    EXPECT_THROW_MSG(dson::DescribeDhdm(Words({dhdmMagic, UINT32_MAX, one, UINT32_MAX}), "file"),
                     base::FormatError, "file: ends at byte 16 in the middle of a level");
}

TEST(Dhdm, is_not_written_with_a_displacement_that_is_not_finite)
{
    geometry::Topology cage;
    cage.vertexCount = 4;
    cage.addFace(std::vector<std::uint32_t>{0, 1, 2, 3});
    geometry::MultiresDetail detail;
    detail.levels.emplace_back();
    detail.levels[0].corners = {0};
    detail.levels[0].offsets = {{0, 1, 0}};
    std::size_t leftOut = 0;
    EXPECT_EQ(dson::DescribeDhdm(dson::EncodeDhdm(detail, cage, &leftOut), "file").levels.at(0).edits, 1u);
    detail.levels[0].offsets[0].y = INFINITY;
    EXPECT_THROW_MSG(dson::EncodeDhdm(detail, cage, &leftOut), base::FormatError,
                     "a displacement of level 1 is not finite");
}

TEST(Counts, of_what_a_gzip_expands_to_are_held_to_a_likely_multiple)
{
    // As much as is always taken, and once as much again.
    const std::string fair = dson::Compress(std::string(dson::freelyExpanded, ' '));
    const std::string bomb = dson::Compress(std::string(2 * dson::freelyExpanded, ' '));
    EXPECT_LT(dson::mostExpansion * bomb.size(), 2 * dson::freelyExpanded);
    EXPECT_EQ(dson::Decompress(fair, "file", dson::maxTextSize).size(), dson::freelyExpanded);
    EXPECT_THROW_MSG(dson::Decompress(bomb, "file", dson::maxTextSize), base::FormatError,
                     "file: expands to more than 200 times its size");
}
