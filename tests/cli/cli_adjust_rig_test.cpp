// Joints that follow a conversion from the command line.
// SPDX-License-Identifier: MIT

#include "cli_conversion.h"

#include "dson/uri.h"

#include <cmath>
#include <cstdlib>
#include <map>

namespace {

using nlohmann::json;

class AdjustRig : public ConversionTest {
protected:
    /// By output, what the saved morph's formulas add at a dial of 1; cm.
    std::map<std::string, double> shifts(const std::string& name) const
    {
        std::map<std::string, double> all;
        const json file =
            json::parse(workspace.read(std::string("lib/") + savedFolder + "/" + name + ".dsf"));
        const json& modifier = file.at("modifier_library").at(0);
        for (const json& formula : modifier.value("formulas", json::array())) {
            const json& operations = formula.at("operations");
            EXPECT_EQ(operations.size(), 3u);
            EXPECT_NE(operations.at(0).at("url").get<std::string>().find("#" + dson::EncodeFragment(name) +
                                                                         "?value"),
                      std::string::npos);
            EXPECT_EQ(operations.at(2).at("op"), "mult");
            all[formula.at("output")] = operations.at(1).at("val");
        }
        return all;
    }
};

double At(const std::map<std::string, double>& shifts, const std::string& output)
{
    const auto found = shifts.find(output);
    return found == shifts.end() ? 0.0 : found->second;
}

} // namespace

TEST_F(AdjustRig, tells_how_many_joints_each_morph_moves_and_how_far)
{
    const json created = report({"--jobs", "full,head,body", "--adjust-rig"}).at("created_morphs");
    ASSERT_EQ(created.size(), 3u);
    EXPECT_GT(created[0].at("joints_moved").get<int>(), 0);
    EXPECT_GT(created[0].at("largest_joint_shift_mm").get<double>(), 1.0);
    for (const json& morph : created)
        EXPECT_LE(morph.at("largest_joint_shift_mm"), created[0].at("largest_displacement_mm"));
}

TEST_F(AdjustRig, leaves_joints_alone_unless_asked)
{
    const json plain = report(saving(library(), {"--jobs", "full"})).at("created_morphs").at(0);
    EXPECT_FALSE(plain.contains("joints_moved"));
    EXPECT_FALSE(plain.contains("largest_joint_shift_mm"));
    EXPECT_TRUE(shifts("Vera").empty());
}

TEST_F(AdjustRig, saves_shares_of_head_and_body_that_make_up_the_whole)
{
    report(saving(library(), {"--jobs", "full,head,body", "--adjust-rig"}));
    const auto whole = shifts("Vera"), head = shifts("Vera Head"), body = shifts("Vera Body");
    ASSERT_FALSE(whole.empty());
    for (const auto& [output, shift] : whole) {
        const bool isOfJoint = output.find("?center_point/") != std::string::npos ||
                               output.find("?end_point/") != std::string::npos;
        EXPECT_TRUE(isOfJoint) << output;
        // Shares of up to a hundredth of a millimetre are not worth a formula.
        EXPECT_NEAR(At(head, output) + At(body, output), shift, 0.0021) << output;
    }
}

TEST_F(AdjustRig, changes_no_shape)
{
    const std::string figure = library("/data/DAZ 3D/Genesis 9/Base/Genesis9.dsf"),
                      morph = library(std::string("/") + savedFolder + "/Vera.dsf");
    report(saving(library(), {"--jobs", "full"}));
    const auto without = MorphDeltas(figure, morph);
    report(saving(library(), {"--jobs", "full", "--adjust-rig", "--overwrite"}));
    EXPECT_EQ(LargestDifference(MorphDeltas(figure, morph), without), 0.0f);
    EXPECT_FALSE(shifts("Vera").empty());
}

TEST_F(AdjustRig, does_not_change_how_far_the_shape_is_off)
{
    // The legs are spread for the comparison, and the joints that they turn about follow.
    for (const char* const jobs : {"full", "head,body"}) {
        const json plain = report({"--jobs", jobs}), adjusted = report({"--jobs", jobs, "--adjust-rig"});
        ASSERT_TRUE(plain.at("surface_distance_mm").is_object()) << jobs;
        EXPECT_EQ(adjusted.at("surface_distance_mm"), plain.at("surface_distance_mm")) << jobs;
    }
}

TEST_F(AdjustRig, works_with_each_job_alone)
{
    for (const char* const job : {"full", "head", "body"})
        EXPECT_TRUE(
            report({"--jobs", job, "--adjust-rig"}).at("created_morphs").at(0).contains("joints_moved"))
            << job;
}

TEST_F(AdjustRig, makes_up_for_a_clone_shape_that_moves_no_joints)
{
    const auto furthest = [this](const char* clone) {
        return report({"--jobs", "full", "--adjust-rig", "--base", clone})
            .at("created_morphs")
            .at(0)
            .at("largest_joint_shift_mm")
            .get<double>();
    };
    // The morph holds more of the shape the less the clone does; where the joints belong is the same.
    EXPECT_NEAR(furthest("clone=1"), furthest("clone=0.5"), 2.0);
}
