// Reading plain skeletons, weights and tables.
// SPDX-License-Identifier: MIT

#include "content/plain_formats.h"

#include "base/errors.h"
#include "dson/gzip.h"
#include "tests/content/throws.h"
#include "tests/content/tiny_figure.h"

using namespace content;
using base::FormatError;
using base::IoError;

namespace {

std::string Replaced(std::string text, const std::string& from, const std::string& to)
{
    return text.replace(text.find(from), from.size(), to);
}

TEST(DeltaTable, is_read_from_gzip_as_from_plain_text)
{
    const TempFolder folder;
    const std::string bytes = dson::Compress("vertex,dx,dy,dz\n1,1,2,3\n");
    EXPECT_EQ(ReadDeltaTable(folder.write("d.csv.gz", bytes), 2)[1], (geometry::Vec3f{1, 2, 3}));
    const auto cut = folder.write("cut.csv.gz", bytes.substr(0, bytes.size() - 9));
    EXPECT_THROW_MSG(ReadDeltaTable(cut, 2), base::FormatError,
                     cut.string() + ": the compressed data is cut off");
}

TEST(DeltaTable, names_a_missing_file)
{
    EXPECT_THROW_MSG(ReadDeltaTable("/nowhere/at-all.csv", 1), base::IoError,
                     "cannot read /nowhere/at-all.csv: No such file or directory");
}

TEST(DeltaTable, reads_rows_in_any_order_and_leaves_the_rest_at_zero)
{
    const TempFolder folder;
    const auto deltas =
        ReadDeltaTable(folder.write("d.csv", "vertex,dx,dy,dz\r\n3,1,2,-3e-2\r\n0,0.5,0,0\n"), 4);
    EXPECT_EQ(deltas[0], (geometry::Vec3f{0.5f, 0, 0}));
    EXPECT_EQ(deltas[1], (geometry::Vec3f{}));
    EXPECT_EQ(deltas[3], (geometry::Vec3f{1, 2, -0.03f}));
}

TEST(DeltaTable, names_the_line_that_it_cannot_read)
{
    const TempFolder folder;
    for (const char* row :
         {"1,2,3", "1,2,3,x", "1,2,3,4,5", "-1,0,0,0", "1,nan,0,0", "1,1e99,0,0", "a,b,c,d"}) {
        const auto file = folder.write("d.csv", std::string("vertex,dx,dy,dz\n0,0,0,0\n") + row + "\n");
        EXPECT_THROW_MSG(ReadDeltaTable(file, 4), base::FormatError,
                         file.string() + ":3: expected vertex,dx,dy,dz");
    }
}

TEST(DeltaTable, refuses_a_vertex_beyond_the_mesh)
{
    const TempFolder folder;
    const auto file = folder.write("d.csv", "vertex,dx,dy,dz\n4,0,0,1\n");
    EXPECT_THROW_MSG(ReadDeltaTable(file, 4), base::FormatError,
                     file.string() + ":2: vertex 4 is out of range, the mesh has 4");
}

TEST(DeltaTable, refuses_a_vertex_listed_twice)
{
    const TempFolder folder;
    const auto file = folder.write("d.csv", "vertex,dx,dy,dz\n2,0,0,1\n2,0,0,1\n");
    EXPECT_THROW_MSG(ReadDeltaTable(file, 4), base::FormatError,
                     file.string() + ":3: vertex 2 is listed twice");
}

TEST(WeightTable, refuses_weights_outside_0_and_1)
{
    const TempFolder folder;
    const auto file = folder.write("w.csv", "vertex,weight\n2,1.5\n");
    EXPECT_THROW_MSG(ReadWeightTable(file, 4), base::FormatError,
                     file.string() + ":2: weight is not within 0 and 1");
}

TEST(PlainSkeleton, takes_the_only_set_of_joints)
{
    const TinyFigure tiny;
    const PlainSkeleton skeleton = ReadPlainSkeleton(tiny.options.skeleton, "", "source_neutral");
    EXPECT_EQ(skeleton.joints, "only");
    ASSERT_EQ(skeleton.bones.size(), 3u);
    EXPECT_EQ(skeleton.bones[1].parent, 0);
    EXPECT_EQ(skeleton.bones[1].head, (geometry::Vec3f{1, 0, 0}));
}

TEST(PlainSkeleton, names_the_sets_when_the_one_asked_for_is_missing)
{
    const TinyFigure tiny;
    EXPECT_THROW_MSG(ReadPlainSkeleton(tiny.options.skeleton, "other", ""), base::FormatError,
                     tiny.options.skeleton.string() + ": has no joint set 'other'; there are only");
}

TEST(PlainSkeleton, refuses_what_is_no_json)
{
    const TempFolder folder;
    const auto file = folder.write("s.json", "{\"bones\": [");
    EXPECT_THROW_MSG(ReadPlainSkeleton(file, "", ""), base::FormatError, file.string() + ": not valid JSON");
}

TEST(PlainSkeleton, refuses_endless_nesting)
{
    const TempFolder folder;
    const auto file = folder.write("s.json", std::string(100000, '['));
    EXPECT_THROW_MSG(ReadPlainSkeleton(file, "", ""), base::FormatError,
                     file.string() + ": nested too deeply");
}

TEST(PlainSkeleton, refuses_a_parent_that_does_not_come_first)
{
    const TempFolder folder;
    const auto file =
        folder.write("s.json", Replaced(TinyFigure::skeletonText(), "\"upperleg.L\", \"parent\": \"hip\"",
                                        "\"upperleg.L\", \"parent\": \"RightThigh\""));
    EXPECT_THROW_MSG(ReadPlainSkeleton(file, "", ""), base::FormatError,
                     file.string() + ": bone 1: parent 'RightThigh' is not listed before it");
}

TEST(PlainSkeleton, refuses_a_place_that_is_not_three_numbers)
{
    const TempFolder folder;
    const auto file =
        folder.write("s.json", Replaced(TinyFigure::skeletonText(), "[1, -1, 0]", "[1, \"x\", 0]"));
    EXPECT_THROW_MSG(ReadPlainSkeleton(file, "", ""), base::FormatError,
                     file.string() + ": only/upperleg.L/tail: expected a number");
}

class PlainWeights : public testing::Test {
protected:
    TinyFigure tiny;
    PlainSkeleton skeleton = ReadPlainSkeleton(tiny.options.skeleton, "", "");

    void expectRefused(const std::string& from, const std::string& to, const std::string& text)
    {
        const auto file = tiny.folder.write("weights.json", Replaced(TinyFigure::weightsText(), from, to));
        EXPECT_THROW_MSG(ReadPlainWeights(file, skeleton, 8), base::FormatError, file.string() + text);
    }
};

TEST_F(PlainWeights, come_one_list_a_bone)
{
    const auto weights = ReadPlainWeights(tiny.options.weights, skeleton, 8);
    ASSERT_EQ(weights.size(), 3u);
    EXPECT_EQ(weights[0].vertices.size(), 7u);
    EXPECT_EQ(weights[1].weights, std::vector<float>{0.5f});
    EXPECT_TRUE(weights[2].vertices.empty());
}

TEST_F(PlainWeights, refuse_a_bone_that_the_skeleton_lacks)
{
    expectRefused("\"upperleg.L\": {", "\"wing\": {", ": bone 'wing' is not in " + skeleton.file);
}

TEST_F(PlainWeights, refuse_another_vertex_count)
{
    expectRefused("\"vertex_count\": 8", "\"vertex_count\": 9", ": is for 9 vertices but the mesh has 8");
}

TEST_F(PlainWeights, refuse_an_index_out_of_range)
{
    expectRefused("\"i\": [5]", "\"i\": [8]", ": upperleg.L: entry 0 names vertex 8 but the mesh has 8");
    expectRefused("\"i\": [5]", "\"i\": [-1]", ": upperleg.L: entry 0 names vertex -1 but the mesh has 8");
    expectRefused("\"i\": [5]", "\"i\": [0.5]", ": upperleg.L: entry 0 names vertex 0.5 but the mesh has 8");
}

TEST_F(PlainWeights, refuse_lists_of_different_lengths)
{
    expectRefused("\"i\": [5]", "\"i\": [5, 6]",
                  ": upperleg.L: 'i' and 'w' are not two lists of the same length");
}

TEST_F(PlainWeights, refuse_a_weight_above_one)
{
    expectRefused("\"w\": [0.5]", "\"w\": [2]",
                  ": upperleg.L: entry 0 has a weight that is not within 0 and 1");
}

} // namespace
