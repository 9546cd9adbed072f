// Conversions of real human meshes, from plain files to saved morphs, against their exact answers.
// SPDX-License-Identifier: MIT

#include "cli_conversion.h"

#include "geometry/surface_distance.h"
#include "tests/geometry/humans.h"

#include <cstdio>

namespace {

namespace fs = std::filesystem;
using geometry::Vec3f;
using Arguments = std::vector<std::string>;

void Append(Arguments& all, const Arguments& more)
{
    all.insert(all.end(), more.begin(), more.end());
}

/// A library with a source and a target of real people. The other stock figures, which only have to be there,
/// are those of the small library behind it.
class ConversionAccuracy : public ConversionTest {
protected:
    void makePeople(const fs::path& meshes, const std::vector<humans::KnownMorph>& morphs) const
    {
        Arguments source = makeFigure("genesis8female", meshes / "source", "neutral.obj");
        for (const humans::KnownMorph& morph : morphs)
            Append(source, {"--morph", morph.name + "=" +
                                           (meshes / "source/morphs" / (morph.name + ".csv.gz")).string()});
        ExpectSuccess(RunProgram(source));
        Arguments target = makeFigure("genesis9", meshes / "target", "default.obj");
        Append(target, {"--morph", "CloneGenesis8Female=" + (meshes / "target/clone.csv.gz").string()});
        ExpectSuccess(RunProgram(target));
    }

    /// What a morph of the source becomes on the target; cm.
    std::vector<Vec3f> converted(const std::string& morph) const
    {
        Arguments all = argumentsFor(
            people + sourcePath, people + targetPath,
            saving(people, {"--dial", morph + "=1", "--base", "clone=1", "--jobs", "full", "--name", morph}));
        all.insert(all.begin() + 1, {"--content", people});
        ExpectSuccess(RunProgram(all));
        return MorphDeltas(people + "/data/DAZ 3D/Genesis 9/Base/Genesis9.dsf",
                           people + "/" + savedFolder + "/" + morph + ".dsf");
    }

private:
    Arguments makeFigure(const std::string& kind, const fs::path& side, const std::string& mesh) const
    {
        return {"make-figure",
                "--kind",
                kind,
                "--mesh",
                side / mesh,
                "--skeleton",
                side.parent_path() / "skeleton.json",
                "--weights",
                side / "weights.json.gz",
                "--library",
                people};
    }

    const std::string people = workspace.path("people");
};

/// Whether a bone is a thigh or hangs on one.
std::vector<bool> LegBones(const humans::Skeleton& skeleton)
{
    std::vector<bool> isLeg;
    for (std::size_t bone = 0; bone < skeleton.names.size(); ++bone) {
        const int parent = skeleton.parents[bone];
        isLeg.push_back(skeleton.names[bone].find("thigh") != std::string::npos ||
                        (parent >= 0 && isLeg[static_cast<std::size_t>(parent)]));
    }
    return isLeg;
}

/// Leaves vertices that follow a leg, however little, as if they did not move.
/// @return how many moving ones these are
std::size_t LeaveOutLegs(std::vector<Vec3f>& truth, const humans::Skeleton& skeleton,
                         const geometry::SkinWeights& weights)
{
    const std::vector<bool> isLeg = LegBones(skeleton);
    std::size_t leftOut = 0;
    for (std::size_t v = 0; v < truth.size(); ++v) {
        const auto joints = weights.joints.begin();
        if (std::none_of(joints + weights.offsets[v], joints + weights.offsets[v + 1],
                         [&](std::uint32_t joint) { return isLeg[joint]; }))
            continue;
        leftOut += truth[v] != Vec3f{};
        truth[v] = {};
    }
    return leftOut;
}

void Print(const std::string& what, const geometry::DistanceSummary& summary)
{
    std::printf("%-22s mean %.3f  p95 %.3f  max %.2f mm\n", what.c_str(), summary.mean * 10, summary.p95 * 10,
                summary.max * 10);
}

} // namespace

// The transfer alone has to reach 0.20 and 0.70 mm; the way through figures, poses and files may add 0.02 mm.
// The conversion spreads the target's legs for a source that stands so. These sources stand like the target,
// hence on their legs there is nothing to compare, and belly and chest have the less to hold on to.
TEST_F(ConversionAccuracy, above_the_legs_is_that_of_the_transfer)
{
    const auto meshes = humans::Folder();
    if (!meshes)
        GTEST_SKIP()
            << "the real human meshes are no part of the project; set GANTREL_HUMANS to their folder";
    std::vector<humans::KnownMorph> morphs = humans::Load(*meshes).morphs;
    ASSERT_FALSE(morphs.empty());
    makePeople(*meshes, morphs);
    const humans::Skeleton skeleton = humans::ReadSkeleton(*meshes);
    const geometry::SkinWeights weights =
        humans::ReadWeights(*meshes / "target" / "weights.json.gz", skeleton);
    std::vector<float> pooled;
    std::size_t leftOut = 0;
    double mean = 0.0, p95 = 0.0;
    for (humans::KnownMorph& morph : morphs) {
        leftOut += LeaveOutLegs(morph.onTarget, skeleton, weights);
        const std::vector<float> errors = humans::Errors(converted(morph.name), morph.onTarget);
        ASSERT_GT(errors.size(), 500u) << morph.name;
        const geometry::DistanceSummary summary = geometry::Summarize(errors);
        Print(morph.name, summary);
        mean += summary.mean / double(morphs.size());
        p95 += summary.p95 / double(morphs.size());
        pooled.insert(pooled.end(), errors.begin(), errors.end());
    }
    const geometry::DistanceSummary all = geometry::Summarize(pooled);
    Print("all vertices", all);
    std::printf("%-22s mean %.3f  p95 %.3f mm\n", "mean of the morphs", mean * 10, p95 * 10);
    std::printf("left out: %zu moving vertices that follow a thigh or what hangs on it, which the conversion "
                "turns\n"
                "a maximum of 5 mm is the goal, and %s\n",
                leftOut, all.max <= 0.5 ? "reached" : "not reached");
    EXPECT_LE(all.mean, 0.0220);
    EXPECT_LE(all.p95, 0.0720);
    EXPECT_LE(mean, 0.0220);
    EXPECT_LE(p95, 0.0720);
}
