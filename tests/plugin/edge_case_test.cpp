// The single operations of a conversion at their edges.
// SPDX-License-Identifier: MIT

#include "tests/plugin/conversion_fixture.h"

#include "dzbox3.h"
#include "dzintproperty.h"
#include "dzmorph.h"
#include "gnt_convert-impl.h"
#include "gnt_outcome-texts.h"
#include "host/tools/morph_load.h"
#include "ks_figure-height.h"
#include "tests/plugin/mini_scene.h"
#include "tests/shared/throws.h"

#include <QFileInfo>

#include <cmath>
#include <functional>
#include <limits>

namespace {

using Impl = GntConverter::Impl;
using Lines = std::vector<std::string>;

class EdgeCase : public ConversionFixture {
protected:
    std::unique_ptr<Impl> makeImpl()
    {
        selectBoth();
        return std::make_unique<Impl>(GntConverter::FindSourceAndTargetInSceneSelected_X());
    }

    static float savedOf(const Impl& impl, DzFloatProperty& property)
    {
        const auto saved = impl.savedValues.find(&property);
        return saved == impl.savedValues.end() ? std::nanf("") : saved->second;
    }
};

TEST(MissingNote, is_empty_when_nothing_is_missing)
{
    EXPECT_EQ(GntMissingNote({}), "");
}

TEST(MissingNote, lists_the_values_in_percent_in_order_of_the_names)
{
    const GntMissingMorphs missing{{"F more", 1.5f},    {"A half", 0.5f},       {"B little", 0.05f},
                                   {"C less", 0.0123f}, {"D negative", -0.25f}, {"E nothing", 0.0f}};
    EXPECT_EQ(GntMissingNote(missing),
              "<p><b>Note:</b> The following morphs had non-zero values in the source figure but could not "
              "be found in the target figure created by the Transfer Utility:</p><ul><li>"
              "<li>A half (50.0%)</li></li><li><li>B little (5.0%)</li></li><li><li>C less (1.2%)</li></li>"
              "<li><li>D negative (-25.0%)</li></li><li><li>E nothing (0.0%)</li></li><li>"
              "<li>F more (150.0%)</li></li></ul>");
}

TEST(ElapsedText, leaves_out_the_second_that_has_begun)
{
    EXPECT_EQ(GntElapsedText(59999), "59 seconds");
    EXPECT_EQ(GntElapsedText(59000), "59 seconds");
    EXPECT_EQ(GntElapsedText(2000), "2 seconds");
}

TEST_F(EdgeCase, progress_lists_the_same_steps_and_one_a_job)
{
    loadPair(genesis3Female);
    const auto impl = makeImpl();
    const Lines common{"Adjusting target G9 before creating morphs",
                       "Exporting source as OBJ",
                       "Loading stock figure for morph conversion",
                       "Exporting stock figure as OBJ for morph conversion",
                       "Removing stock figure",
                       "Loading stock figure OBJ again",
                       "Creating converted morph",
                       "Dialing up converted morph",
                       "Loading temporary G9 for fit suit",
                       "Exporting temporary G9 as OBJ for fit suit",
                       "Removing temporary G9",
                       "Loading fit suit OBJ again",
                       "Running Transfer Utility to create morphs in fit suit OBJ",
                       "Dialing up morphs in fit suit with transfers",
                       "Exporting fit suit with transfers as OBJ again",
                       "Adjusting target G9 before creating morphs"};
    for (int bits = 0; bits < 8; ++bits) {
        Lines expected = common;
        if (bits & 1)
            expected.push_back("Creating full figure morph");
        if (bits & 2)
            expected.push_back("Creating head morph");
        if (bits & 4)
            expected.push_back("Creating body morph");
        const GntJobs jobs = GntJobs::fromInt(bits);
        EXPECT_EQ(impl->prepareSteps(GntResolution::Base, jobs), expected) << bits;
        EXPECT_EQ(impl->prepareSteps(GntResolution::Subd, jobs), expected) << bits;
    }
}

TEST_F(EdgeCase, active_morphs_are_those_not_at_zero_in_the_order_of_the_figure)
{
    loadPair(genesis3Female);
    dial(*source, "Unused").setValue(-0.25f);
    EXPECT_EQ(makeImpl()->activeMorphs,
              (Impl::MorphValues{{"Bulge", 0.5f}, {"Unused", -0.25f}, {"Wide", 1.0f}}));
    dial(*source, "Bulge").setValue(0.0f);
    EXPECT_EQ(makeImpl()->activeMorphs, (Impl::MorphValues{{"Unused", -0.25f}, {"Wide", 1.0f}}));
}

TEST_F(EdgeCase, figures_in_one_place_lose_nothing_but_height_and_label)
{
    loadPairInOnePlace(genesis3Female);
    const auto impl = makeImpl();
    const auto before = stateOfBoth();
    const Recorder recorder;
    impl->S1_MoveTargetG9ToWorldOrigin();
    ASSERT_EQ(recorder.lines.size(), 2u);
    EXPECT_EQ(recorder.lines[0], "property Genesis9.YTranslate=0");
    EXPECT_EQ(WithoutChance(QString::fromStdString(recorder.lines[1])), "rename Vera -> Vera-*");
    EXPECT_EQ(impl->savedValues.size(), 1u);
    EXPECT_EQ(savedOf(*impl, transform(*target, "YTranslate")), 0.0f);
    impl->restoreSourceAndTargetParams();
    EXPECT_EQ(stateOfBoth(), before);
}

TEST_F(EdgeCase, a_lifted_target_stands_at_height_zero_meanwhile)
{
    loadPair(genesis3Female);
    const auto impl = makeImpl();
    impl->S1_MoveTargetG9ToWorldOrigin();
    EXPECT_EQ(transform(*target, "YTranslate").getValue(), 0.0f);
    EXPECT_EQ(savedOf(*impl, transform(*target, "YTranslate")), 25.0f);
    for (const char* const name : {"XTranslate", "ZTranslate", "XRotate", "YRotate", "ZRotate"})
        EXPECT_EQ(transform(*target, name).getValue(), transform(*source, name).getValue()) << name;
    impl->restoreSourceAndTargetParams();
    EXPECT_EQ(transform(*target, "YTranslate").getValue(), 25.0f);
}

TEST_F(EdgeCase, a_difference_counts_from_above_the_machine_epsilon_on)
{
    loadPairInOnePlace(genesis3Female);
    transform(*source, "XTranslate").setValue(0.0f);
    DzFloatProperty& place = transform(*target, "XTranslate");
    const float epsilon = std::numeric_limits<float>::epsilon();
    place.setValue(epsilon);
    const auto impl = makeImpl();
    impl->S1_MoveTargetG9ToWorldOrigin();
    EXPECT_EQ(place.getValue(), epsilon) << "left alone";
    const float above = std::nextafter(epsilon, 1.0f);
    place.setValue(above);
    impl->S1_MoveTargetG9ToWorldOrigin();
    EXPECT_EQ(place.getValue(), 0.0f);
    EXPECT_EQ(savedOf(*impl, place), above);
}

TEST_F(EdgeCase, a_place_that_is_saved_again_is_overwritten)
{
    loadPair(genesis3Female);
    const auto impl = makeImpl();
    impl->S1_MoveTargetG9ToWorldOrigin();
    DzFloatProperty& place = transform(*target, "XTranslate");
    DzFloatProperty& turn = transform(*target, "YRotate");
    const float savedTurn = savedOf(*impl, turn);
    place.setValue(77.0f);
    impl->S1_MoveTargetG9ToWorldOrigin();
    EXPECT_EQ(savedOf(*impl, place), 77.0f);
    EXPECT_EQ(savedOf(*impl, turn), savedTurn) << "was where it should be";
    EXPECT_EQ(savedOf(*impl, transform(*target, "YTranslate")), 0.0f) << "always saved";
}

TEST_F(EdgeCase, restoring_again_sets_nothing_but_the_resolution)
{
    loadPair(genesis3Female);
    {
        selectBoth();
        GntConverter converter(GntConverter::FindSourceAndTargetInSceneSelected_X());
        converter.run_X(GntResolution::Base, converter.makeConvertedLabel(), Lines(3, "/G"),
                        {"Full", "Head", "Body"}, GntJobFlag::Full, missing);
        transform(*target, "YTranslate").setValue(33.0f);
        source->setLabel(QLatin1String("Other"));
        kst::daz::SetNodeResolution(*source, kst::daz::NodeResolution::BaseResolution, true);
    }
    EXPECT_EQ(transform(*target, "YTranslate").getValue(), 33.0f);
    EXPECT_EQ(source->getLabel(), QLatin1String("Other"));
    EXPECT_EQ(kst::daz::GetNodeResolution(*source), kst::daz::NodeResolution::HighResolution);
}

TEST_F(EdgeCase, a_converter_that_did_not_run_restores_nothing)
{
    loadPair(genesis3Female);
    auto impl = makeImpl();
    const Recorder recorder;
    impl.reset();
    EXPECT_TRUE(recorder.lines.empty());
}

TEST_F(EdgeCase, thighs_that_were_posed_before_are_at_zero_after_a_genesis_8_source_only)
{
    for (const char* const file : {genesis3Female, genesis8Female}) {
        loadPair(file);
        DzFloatProperty& thigh = *kst::daz::FindBoneProperty(*target, "l_thigh", "ZRotate", true);
        thigh.setValue(10.0f);
        convert(GntJobFlag::Full);
        EXPECT_EQ(thigh.getValue(), file == genesis3Female ? 10.0f : 0.0f) << file;
    }
}

TEST_F(EdgeCase, names_and_paths_of_other_jobs_do_not_matter)
{
    loadPair(genesis3Female);
    GntConverter converter(GntConverter::FindSourceAndTargetInSceneSelected_X());
    const std::vector<GntCreatedMorph> created = converter.run_X(
        GntResolution::Base, "any", {"", "/G/Head", ""}, {"", "Kopf", ""}, GntJobFlag::Head, missing);
    ASSERT_EQ(created.size(), 1u);
    EXPECT_EQ(created[0].kind, 1);
    EXPECT_EQ(created[0].name, "Kopf");
    EXPECT_EQ(target->getLabel(), QLatin1String("any"));
}

TEST_F(EdgeCase, no_job_makes_no_morph)
{
    loadPair(genesis3Female);
    EXPECT_TRUE(convert(GntJobs()).empty());
    EXPECT_TRUE(madeMorphs().empty());
}

TEST_F(EdgeCase, the_transfer_is_in_the_log_from_its_beginning_to_its_end)
{
    for (const bool succeeds : {true, false}) {
        loadPair(genesis3Female);
        const QString before = LogText();
        Recorder recorder;
        if (!succeeds)
            recorder.refused = openhost::Operation::Transfer;
        EXPECT_EQ(MessageOf([&] { convert(GntJobFlag::Full); }),
                  succeeds ? "(nothing was thrown)" : "Transfer Utility failed");
        const QString log = LogText().mid(before.size());
        EXPECT_EQ(log.count(QLatin1String("KeGNT: Entering Running Transfer Utility\n")), 1);
        EXPECT_EQ(log.count(QLatin1String("KeGNT: Leaving Running Transfer Utility\n")), 1);
    }
}

TEST_F(EdgeCase, an_invalid_figure_is_not_loaded)
{
    loadPair(genesis3Female);
    const auto impl = makeImpl();
    const int nodes = dzScene->getNumNodes();
    for (const int which : {0, 7, -1})
        EXPECT_EQ(MessageOf([&] {
                      impl->loadGenesis_X(static_cast<GntLoadFigure>(which), GntResolution::Base, 1);
                  }),
                  "invalid load figure value")
            << which;
    EXPECT_EQ(dzScene->getNumNodes(), nodes);
    EXPECT_EQ(dzScene->getNumSelectedNodes(), 0);
}

TEST_F(EdgeCase, a_figure_is_loaded_at_the_level_that_is_wanted)
{
    loadPair(genesis3Female);
    const auto impl = makeImpl();
    DzFigure& figure = impl->loadGenesis_X(GntLoadFigure::Genesis3Male, GntResolution::Base, 1);
    EXPECT_EQ(kst::daz::GetNodeResolution(figure), kst::daz::NodeResolution::BaseResolution);
    DzIntProperty& level = *kst::daz::FindSubdivisionLevelIntProperty(figure, true);
    const int highest = level.getMax();
    Impl::SetResolution_X(figure, GntResolution::Subd, highest + 1);
    EXPECT_EQ(kst::daz::GetNodeResolution(figure), kst::daz::NodeResolution::HighResolution);
    EXPECT_EQ(level.getMax(), highest + 1) << "raised";
    EXPECT_EQ(level.getValue(), highest + 1);
    Impl::SetResolution_X(figure, GntResolution::Subd, 1);
    EXPECT_EQ(level.getMax(), highest + 1) << "never lowered";
    EXPECT_EQ(level.getValue(), 1);
}

TEST_F(EdgeCase, each_stock_figure_is_found_under_its_label)
{
    loadPair(genesis3Female);
    target->setLabel(QLatin1String("Nova"));
    const auto impl = makeImpl();
    const char* const labels[] = {"Genesis 3 Female", "Genesis 3 Male", "Genesis 8 Female",
                                  "Genesis 8 Male",   "Genesis 9",      "Genesis 9"};
    for (int which = 1; which <= 6; ++which) {
        DzFigure& figure = impl->loadGenesis_X(static_cast<GntLoadFigure>(which), GntResolution::Base, 1);
        EXPECT_EQ(figure.getLabel(), QLatin1String(labels[which - 1]));
        EXPECT_TRUE(figure.isVisible());
        dzScene->removeNode(&figure);
    }
}

TEST_F(EdgeCase, files_are_exported_into_the_temporary_folder)
{
    loadPair(genesis3Female);
    const auto impl = makeImpl();
    const std::string path = impl->exportSelectedAsObj_X("stem");
    EXPECT_EQ(path, TestFolder().toStdString() + "/stem.obj");
    EXPECT_TRUE(QFileInfo(QString::fromStdString(path)).isFile());
}

TEST_F(EdgeCase, a_morph_missing_twice_keeps_its_first_value)
{
    loadPair(genesis3Female);
    const auto impl = makeImpl();
    impl->S8_DialUpMorphsInFitSuitWithTransfers_X(
        *source, {{"Gone", 0.5f}, {"Wide", 0.25f}, {"Gone", 0.75f}, {"Lost", -1.0f}}, missing);
    EXPECT_EQ(missing, (GntMissingMorphs{{"Gone", 0.5f}, {"Lost", -1.0f}}));
    EXPECT_EQ(dial(*source, "Wide").getValue(), 0.25f);
}

TEST_F(EdgeCase, a_new_morph_that_is_not_there_is_told_with_the_report)
{
    loadPair(genesis3Female);
    EXPECT_EQ(MessageOf([&] { makeImpl()->findNewMorphProperty_X(*source, "Gone", "<b>report</b>"); }),
              "failed to find new morph " + Quoted("Gone") + " in node " + Quoted("Vera") +
                  " figure after conversion; Morph Loader Pro returned: <b>report</b>");
    EXPECT_EQ(&makeImpl()->findNewMorphProperty_X(*source, "Wide", ""), &dial(*source, "Wide"));
}

TEST_F(EdgeCase, the_head_split_is_loaded_once_and_taken_away_as_far_as_it_is_there)
{
    loadPair(genesis3Female);
    const auto impl = makeImpl();
    const int nodes = dzScene->getNumNodes();
    impl->loadHeadSplitDFormerOnce_X();
    const std::size_t count = impl->headSplitNodes.size();
    EXPECT_EQ(dzScene->getNumNodes(), nodes + static_cast<int>(count));
    EXPECT_GE(count, 2u);
    EXPECT_NE(openhost::FindAttenuationMap(
                  *target, QStringLiteral("D-Former_1::weightmap::Genesis 9/Influence Weights")),
              nullptr);
    {
        Recorder recorder;
        recorder.refused = openhost::Operation::OpenFile;
        impl->loadHeadSplitDFormerOnce_X();
        EXPECT_TRUE(recorder.lines.empty());
    }
    dzScene->removeNode(impl->headSplitNodes.front());
    impl->removeHeadSplitNodes();
    EXPECT_EQ(dzScene->getNumNodes(), nodes);
    impl->removeHeadSplitNodes();
    EXPECT_EQ(dzScene->getNumNodes(), nodes);
}

TEST_F(EdgeCase, a_head_split_that_failed_may_be_tried_again)
{
    loadPair(genesis3Female);
    const auto impl = makeImpl();
    {
        Recorder recorder;
        recorder.refused = openhost::Operation::OpenFile;
        EXPECT_EQ(MessageOf([&] { impl->loadHeadSplitDFormerOnce_X(); }),
                  "failed to load head split D-former from file " +
                      Quoted(TestFolder().toStdString() +
                             "/mini/People/Genesis 9/Developer Kit/G9 HeadSplit DFormer.duf"));
    }
    EXPECT_FALSE(impl->headSplitLoaded);
    impl->loadHeadSplitDFormerOnce_X();
    EXPECT_TRUE(impl->headSplitLoaded);
}

/// Asked before operations whose text ends so; its answer is the host's.
class AtOperation : public openhost::OperationWatch {
public:
    AtOperation(const char* end, std::function<bool()> answer)
        : _end(QLatin1String(end)), _answer(std::move(answer))
    {
    }
    bool allow(openhost::Operation operation, const QString& detail) override
    {
        return operation != openhost::Operation::SetValue || !detail.endsWith(_end) || _answer();
    }

private:
    QString _end;
    std::function<bool()> _answer;
};

TEST_F(EdgeCase, a_temporary_figure_with_a_morph_of_two_dials_is_refused)
{
    loadPair(genesis8Female);
    target->setLabel(QLatin1String("Nova"));
    const auto impl = makeImpl();
    const AtOperation listener(".lodlevel=0", [] {
        DzNode& loaded = *dzScene->findNodeByLabel(QLatin1String("Genesis 9"));
        kst::MorphList::FindMorph_X(loaded, "CloneGenesis3Male")
            .addProperty(new DzFloatProperty(QStringLiteral("Second"), true, false));
        return true;
    });
    EXPECT_EQ(MessageOf([&] { impl->S3_LoadTempG9ForFitSuit_X(GntResolution::Base); }),
              "expected modifier to have exactly one property");
}

/// As what the system prints of a failed assertion.
std::string Assertion(const std::string& expression)
{
    std::string pattern = "S3_LoadTempG9ForFitSuit_X.*";
    for (const char c : expression)
        pattern +=
            std::string("()&*|.").find(c) == std::string::npos ? std::string(1, c) : std::string("\\") + c;
    return pattern;
}

class EdgeCaseDeathTest : public EdgeCase {
protected:
    EdgeCaseDeathTest() { testing::FLAGS_gtest_death_test_style = "threadsafe"; }

    void loadTemporary(GntResolution wanted, const char* operation, bool (*answer)())
    {
        loadPair(genesis8Female);
        target->setLabel(QLatin1String("Nova"));
        kst::daz::FindSubdivisionLevelIntProperty(*source, true)->setValue(2);
        const auto impl = makeImpl();
        const AtOperation listener(operation, answer);
        impl->S3_LoadTempG9ForFitSuit_X(wanted);
    }

    static bool allow() { return true; }
    static bool refuse() { return false; }
    static bool lowerNewFigure()
    {
        kst::daz::SetNodeResolution(*dzScene->findNodeByLabel(QLatin1String("Genesis 9")),
                                    kst::daz::NodeResolution::BaseResolution, true);
        return true;
    }
};

TEST_F(EdgeCaseDeathTest, the_temporary_figure_is_at_the_resolution_that_was_set)
{
    loadTemporary(GntResolution::Base, ".lodlevel=0", allow);
    EXPECT_DEATH(loadTemporary(GntResolution::Base, ".lodlevel=0", refuse),
                 Assertion("kst::daz::GetNodeResolution(*pfigTempG9ForFitSuit) == "
                           "kst::daz::NodeResolution::BaseResolution"));
}

TEST_F(EdgeCaseDeathTest, the_temporary_figure_is_subdivided_to_the_level_of_the_source)
{
    loadTemporary(GntResolution::Subd, ".SubDIALevel=2", allow);
    EXPECT_DEATH(loadTemporary(GntResolution::Subd, ".SubDIALevel=2", lowerNewFigure),
                 Assertion("kst::daz::GetNodeResolution(*pfigTempG9ForFitSuit) == "
                           "kst::daz::NodeResolution::HighResolution"));
    EXPECT_DEATH(loadTemporary(GntResolution::Subd, ".SubDIALevel=2", refuse),
                 Assertion("kst::daz::GetSubdivisionLevel(*pfigTempG9ForFitSuit, &iSubdLevelTemp) && "
                           "(iSubdLevelTemp == pParams->iSubdLevelSource)"));
}

class HeightEdge : public ConversionFixture {
protected:
    void SetUp() override
    {
        loadPairInOnePlace(genesis3Female);
        height = &dial(*target, "body_bs_ProportionHeight");
        height->setMinMax(-100.0f, 100.0f);
    }

    static float top(const DzFigure& figure) { return figure.getWSBoundingBox().getMax().m_y; }

    DzFloatProperty* height = nullptr;
};

TEST_F(HeightEdge, any_figure_that_is_taller_shrinks_below_the_other)
{
    for (const float from : {0.05f, 1.0f, 4.0f}) {
        height->setValue(from);
        ASSERT_GT(top(*target), top(*source));
        EXPECT_EQ(kst::daz::AdjustFigureHeight(*target, *height, *source), from) << "its old value";
        EXPECT_LT(top(*target), top(*source));
        height->setValue(height->getValue() + 0.005f);
        EXPECT_GE(top(*target), top(*source)) << "one step too far, not more";
    }
}

TEST_F(HeightEdge, a_dial_without_effect_moves_2002_steps_either_way)
{
    DzFloatProperty& idle = dial(*target, "BaseMasculine_figure_ctrl_Character");
    idle.setMinMax(-100.0f, 100.0f);
    for (const float lift : {5.0f, -5.0f}) {
        idle.setValue(0.0f);
        transform(*source, "YTranslate").setValue(0.0f);
        const float place = lift + top(*target) - top(*source);
        transform(*source, "YTranslate").setValue(place);
        const Recorder recorder;
        EXPECT_EQ(kst::daz::AdjustFigureHeight(*target, idle, *source), -1.0f);
        EXPECT_EQ(recorder.lines.size(), 2002u);
        // Adding a step of 0.005 two thousand times in single precision loses less than a thousandth.
        EXPECT_NEAR(idle.getValue(), lift > 0.0f ? 10.01f : -10.01f, 0.001f);
        EXPECT_EQ(transform(*source, "YTranslate").getValue(), place) << "the reference stays";
    }
}

} // namespace
