// What a conversion is asked for, and what comes of what is left open.
// SPDX-License-Identifier: MIT

#include "tests/plugin/conversion_fixture.h"

#include "dzintproperty.h"
#include "ks_daz-helpers.h"
#include "tests/shared/throws.h"

#include <QDir>

#include <cmath>

#include <fmt/format.h>

namespace {

using kst::daz::NodeResolution;

class Request : public ConversionFixture {
protected:
    GntOutcome run(const GntRequest& request) { return GntConverter::Convert_X(*source, *target, request); }

    int level() const { return kst::daz::FindSubdivisionLevelIntProperty(*source, true)->getValue(); }
};

using RequestDeathTest = Request;

/// The degrees to which the left thighs of a figure and of its temporary twin are turned, one after the
/// other.
std::vector<std::string> ThighTurns(const std::vector<std::string>& lines)
{
    std::vector<std::string> turns;
    for (const std::string& line : lines)
        if (line.find("l_thigh.ZRotate=") != line.npos)
            turns.push_back(line.substr(line.find('=') + 1));
    return turns;
}

TEST_F(Request, needs_no_more_than_two_figures)
{
    loadPair(genesis8Female);
    dzScene->selectAllNodes(false);
    const GntOutcome outcome = run(GntRequest());
    ASSERT_EQ(outcome.created.size(), 2u);
    EXPECT_EQ(outcome.created[0].kind, GntHead);
    EXPECT_EQ(outcome.created[0].name, "Vera converted to G9 Head");
    EXPECT_EQ(outcome.created[0].path, "/Gantrel");
    EXPECT_EQ(outcome.created[0].property->getPath(), QLatin1String("/Gantrel"));
    EXPECT_EQ(outcome.created[1].kind, GntBody);
    EXPECT_EQ(outcome.created[1].name, "Vera converted to G9 Body");
    EXPECT_EQ(target->getLabel(), QLatin1String("Vera converted to G9"));
    EXPECT_TRUE(outcome.missing.empty());
    EXPECT_TRUE(outcome.isHeightMatched);
    EXPECT_EQ(outcome.activeMorphCount, 2u);
    EXPECT_EQ(&outcome.params->figTarget, target);
}

TEST_F(Request, tells_with_what_it_was_carried_out)
{
    loadPair(genesis8Female);
    GntRequest request;
    request.targetLabel = "Nova";
    const GntRequest done = run(request).request;
    EXPECT_EQ(done.names, (std::vector<std::string>{"Nova", "Nova Head", "Nova Body"}));
    EXPECT_EQ(done.paths, (std::vector<std::string>{"/Gantrel", "/Gantrel", "/Gantrel"}));
    EXPECT_EQ(done.targetLabel, "Nova");
    EXPECT_EQ(done.thighDegrees, 6.5f);
    EXPECT_EQ(done.subdLevel, level());
    loadPair(genesis3Female);
    EXPECT_EQ(run(request).request.thighDegrees, 0.0f);
}

TEST_F(Request, makes_what_the_same_choices_one_by_one_make)
{
    loadPair(genesis8Female);
    convert(allJobs());
    const MadeMorphs oneByOne = madeMorphs();
    loadPair(genesis8Female);
    GntRequest request;
    request.jobs = allJobs();
    request.names = {"Full", "Head", "Body"};
    request.paths = {"/G/Full", "/G/Head", "/G/Body"};
    const GntOutcome outcome = run(request);
    EXPECT_EQ(madeMorphs(), oneByOne);
    ASSERT_EQ(outcome.created.size(), 3u);
    for (const GntCreatedMorph& morph : outcome.created) {
        EXPECT_EQ(morph.path, request.paths[static_cast<std::size_t>(morph.kind)]);
        EXPECT_EQ(morph.property->getPath().toStdString(), morph.path);
    }
}

TEST_F(Request, of_a_level_brings_the_source_to_it)
{
    loadPairInOnePlace(genesis3Female);
    kst::daz::SetNodeResolution(*source, NodeResolution::BaseResolution, true);
    GntRequest request;
    request.jobs = GntJobFlag::Full;
    request.resolution = GntResolution::Subd;
    request.subdLevel = level() + 1;
    const GntOutcome outcome = run(request);
    EXPECT_EQ(level(), *request.subdLevel);
    EXPECT_EQ(outcome.params->iSubdLevelSource, *request.subdLevel);
    EXPECT_EQ(kst::daz::GetNodeResolution(*source), NodeResolution::HighResolution);
}

TEST_F(Request, without_a_level_takes_the_source_s_own)
{
    loadPairInOnePlace(genesis3Female);
    kst::daz::SetNodeResolution(*source, NodeResolution::BaseResolution, true);
    const int before = level();
    GntRequest request;
    request.jobs = GntJobFlag::Full;
    request.resolution = GntResolution::Subd;
    EXPECT_EQ(run(request).request.subdLevel, before);
    EXPECT_EQ(level(), before);
    EXPECT_EQ(kst::daz::GetNodeResolution(*source), NodeResolution::HighResolution);
}

TEST_F(RequestDeathTest, of_a_level_that_a_selected_source_does_not_have_is_a_mistake)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    loadPair(genesis8Female);
    GntRequest request;
    request.subdLevel = level() + 1;
    GntConverter converter(GntConverter::FindSourceAndTargetInSceneSelected_X());
    EXPECT_DEATH(converter.run_X(request), "request.subdLevel == params.iSubdLevelSource");
}

TEST_F(Request, sets_the_bases_that_it_names)
{
    loadPair(genesis8Female);
    dial(*target, "BaseMasculine_figure_ctrl_Character").setValue(0.125f);
    GntRequest request;
    request.jobs = GntJobFlag::Full;
    request.bases = {{GntBase::Clone, 1.0}, {GntBase::Feminine, 0.5}, {GntBase::Height, -0.25}};
    run(request);
    EXPECT_EQ(dial(*target, "CloneGenesis8Female").getValue(), 1.0f);
    EXPECT_EQ(dial(*target, "BaseFeminine_figure_ctrl_Character").getValue(), 0.5f);
    EXPECT_EQ(dial(*target, "BaseMasculine_figure_ctrl_Character").getValue(), 0.125f) << "left alone";
    EXPECT_EQ(dial(*target, "body_bs_ProportionHeight").getValue(), -0.25f);
}

TEST_F(Request, of_a_base_outside_of_its_dial_changes_nothing)
{
    for (const double wanted : {1.5, -1.5, static_cast<double>(std::nanf(""))}) {
        loadPair(genesis8Female);
        const auto before = stateOfBoth();
        GntRequest request;
        request.bases = {{GntBase::Clone, 1.0}, {GntBase::Masculine, wanted}};
        try {
            run(request);
            ADD_FAILURE() << wanted;
        } catch (const GntBaseRangeError& error) {
            EXPECT_EQ(error.base, GntBase::Masculine);
            EXPECT_EQ(&error.dial, &dial(*target, "BaseMasculine_figure_ctrl_Character"));
            EXPECT_EQ(std::string(error.what()),
                      "base " + Quoted("BaseMasculine_figure_ctrl_Character") +
                          fmt::format(" cannot be {}; it goes from -1 to 1", wanted));
        }
        EXPECT_EQ(dial(*target, "CloneGenesis8Female").getValue(), 0.0f);
        EXPECT_EQ(stateOfBoth(), before);
    }
}

TEST_F(Request, of_a_base_may_pass_limits_that_its_dial_does_not_hold)
{
    loadPair(genesis8Female);
    dial(*target, "CloneGenesis8Female").setIsClamped(false);
    GntRequest request;
    request.jobs = GntJobFlag::Full;
    request.bases = {{GntBase::Clone, 1.5}};
    run(request);
    EXPECT_EQ(dial(*target, "CloneGenesis8Female").getValue(), 1.5f);
}

TEST_F(Request, makes_the_target_as_tall_as_the_source_when_it_can)
{
    loadPairInOnePlace(genesis8Female);
    GntRequest request;
    request.jobs = GntJobFlag::Full;
    request.bases = {{GntBase::Height, 0.25}};
    request.matchHeight = true;
    EXPECT_TRUE(run(request).isHeightMatched);
    EXPECT_LT(dial(*target, "body_bs_ProportionHeight").getValue(), 0.25f) << "which made it taller";

    loadPairInOnePlace(genesis8Female);
    transform(*source, "YTranslate").setValue(1000.0f); // no dial reaches up there
    EXPECT_FALSE(run(request).isHeightMatched);
}

TEST_F(Request, turns_the_thighs_as_the_source_s_generation_stands)
{
    for (const char* const file : {genesis3Female, genesis8Female}) {
        loadPair(file);
        const Recorder recorder;
        run(GntRequest());
        EXPECT_EQ(ThighTurns(recorder.lines), file == genesis3Female
                                                  ? std::vector<std::string>()
                                                  : (std::vector<std::string>{"6.5", "6.5", "0"}))
            << file;
    }
}

TEST_F(Request, turns_the_thighs_as_it_says)
{
    loadPair(genesis8Female);
    GntRequest request;
    for (const float degrees : {0.0f, 4.0f}) {
        request.thighDegrees = degrees;
        const Recorder recorder;
        run(request);
        EXPECT_EQ(ThighTurns(recorder.lines),
                  degrees == 0.0f ? std::vector<std::string>() : (std::vector<std::string>{"4", "4", "0"}));
    }
}

TEST_F(Request, names_the_folder_for_the_temporary_files)
{
    loadPair(genesis8Female);
    const QDir folder(TestFolder() + QStringLiteral("/of the request"));
    ASSERT_TRUE(QDir().mkpath(folder.path()));
    GntRequest request;
    request.jobs = GntJobFlag::Full;
    request.tempFolder = folder.path().toStdString();
    const int before = QDir(TestFolder()).entryList({QStringLiteral("*.obj")}).size();
    run(request);
    EXPECT_EQ(folder.entryList({QStringLiteral("*.obj")}).size(), 5);
    EXPECT_EQ(QDir(TestFolder()).entryList({QStringLiteral("*.obj")}).size(), before);
}

TEST(WholeFigure, is_made_by_the_full_morph_or_by_both_of_its_parts)
{
    for (int bits = 0; bits < 8; ++bits)
        EXPECT_EQ(GntMakesWholeFigure(GntJobs::fromInt(bits)), (bits & 1) != 0 || bits == 6) << bits;
}

TEST_F(Request, has_morphs_of_which_no_part_is_worn_twice)
{
    loadPair(genesis8Female);
    GntRequest request;
    for (const GntJobs jobs : {allJobs(), GntDefaultJobs()}) {
        request.jobs = jobs;
        const GntOutcome outcome = run(request);
        GntWearMorphs(outcome.created);
        const bool hasFull = jobs.test(GntJobFlag::Full);
        for (const GntCreatedMorph& morph : outcome.created)
            EXPECT_EQ(morph.property->getValue(), hasFull && morph.kind != GntFull ? 0.0f : 1.0f);
    }
}

} // namespace
