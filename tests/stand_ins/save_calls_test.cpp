// What the host is told to save, and what comes of its answers.
// SPDX-License-Identifier: MIT

#include "dznode.h"
#include "ks_filtered-save.h"
#include "openhost/attendant.h"
#include "tests/host/host_fixture.h"
#include "tests/shared/throws.h"
#include "tests/stand_ins/noting_saver.h"

#include <nlohmann/json.hpp>

namespace {

using kst::FilteredSave;
using nlohmann::json;

class SaveCalls : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        noting::ForgetSaves();
        node = new DzNode;
        node->setName(QLatin1String("Genesis9"));
        node->setLabel(QLatin1String("Nova"));
        dzScene->addNode(node);
        dzScene->setPrimarySelection(node);
    }

    /// Three morphs whose names are in no order.
    bool saveMorphs(bool compress = false, bool showOptions = false) const
    {
        return FilteredSave::SaveMorphSupportAsset_X(*node, "/library", "Acme", "Shapes",
                                                     {"Round", "Angry", "Nose"}, compress, showOptions);
    }
    static json ordered() { return json::parse(noting::orders.at(0).options); }
    static json asked() { return json::parse(noting::questions.at(0).options); }

    DzNode* node = nullptr;

private:
    openhost::Attendant _nobody; // no filter shows a window
    openhost::AttendantOverride _answering{_nobody};
};

TEST_F(SaveCalls, name_the_figure_and_the_place_of_its_morphs)
{
    EXPECT_TRUE(saveMorphs());
    EXPECT_EQ(noting::orders.at(0).filter, "DzMorphSupportAssetFilter");
    EXPECT_EQ(ordered()["RootLabel"], "Nova");
    EXPECT_EQ(ordered()["BaseDataPath"], "/library");
    EXPECT_EQ(ordered()["VendorName"], "Acme");
    EXPECT_EQ(ordered()["ProductName"], "Shapes");
}

TEST_F(SaveCalls, number_the_morphs_below_the_name_of_the_node_in_the_order_given)
{
    saveMorphs();
    EXPECT_EQ(ordered()["NodeNames"],
              json::parse(R"({"Genesis9": {"0": "Round", "1": "Angry", "2": "Nose"}})"));
}

TEST_F(SaveCalls, say_whether_to_compress)
{
    for (const bool compress : {true, false}) {
        noting::orders.clear();
        saveMorphs(compress);
        EXPECT_EQ(ordered()["CompressOutput"], compress);
    }
}

TEST_F(SaveCalls, hand_over_nothing_but_these_options)
{
    saveMorphs();
    EXPECT_EQ(ordered().size(), 7u) << ordered();
    EXPECT_EQ(ordered()["RunSilent"], true);
}

TEST_F(SaveCalls, have_morphs_saved_under_no_name_and_without_a_dialog)
{
    saveMorphs();
    const noting::SaveOrder& order = noting::orders.at(0);
    EXPECT_EQ(order.filename, "");
    EXPECT_EQ(order.startingDir, "");
    EXPECT_EQ(order.category, "");
    EXPECT_FALSE(order.showOptions);
    EXPECT_TRUE(noting::questions.empty());
}

TEST_F(SaveCalls, ask_the_user_for_the_options_when_these_are_to_be_shown)
{
    EXPECT_TRUE(saveMorphs(true, true));
    ASSERT_EQ(noting::questions.size(), 1u);
    EXPECT_EQ(noting::questions[0].filter, "DzMorphSupportAssetFilter");
    EXPECT_TRUE(noting::questions[0].useInterface);
    EXPECT_EQ(noting::questions[0].filename, "");
    EXPECT_EQ(asked()["NodeNames"], ordered()["NodeNames"]) << "all is said by then";
}

TEST_F(SaveCalls, silence_the_host_only_after_the_user_was_asked)
{
    saveMorphs(false, true);
    EXPECT_FALSE(asked().contains("RunSilent"));
    EXPECT_EQ(ordered()["RunSilent"], true);
    EXPECT_FALSE(noting::orders.at(0).showOptions);
}

TEST_F(SaveCalls, end_as_cancelled_when_the_user_refuses_the_options)
{
    noting::isAccepted = false;
    EXPECT_THROW(saveMorphs(false, true), kst::CanceledException);
    EXPECT_EQ(MessageOf([this] { saveMorphs(false, true); }), "operation canceled");
    EXPECT_TRUE(noting::orders.empty());
}

TEST_F(SaveCalls, give_the_path_and_its_folder)
{
    EXPECT_TRUE(FilteredSave::SaveScene_X("/mine/scenes/A.duf", false));
    EXPECT_EQ(noting::orders.at(0).filename, "/mine/scenes/A.duf");
    EXPECT_EQ(noting::orders.at(0).startingDir, "/mine/scenes");
}

TEST_F(SaveCalls, tell_a_cancelled_save_from_one_that_was_done)
{
    for (const bool isDone : {true, false}) {
        noting::saveResult = isDone ? DZ_NO_ERROR : 100;
        EXPECT_EQ(saveMorphs(), isDone);
        EXPECT_EQ(FilteredSave::SaveScene_X("/a/A.duf", false), isDone);
        EXPECT_EQ(FilteredSave::SaveSceneSubset_X("/a/A.duf", false, false), isDone);
        EXPECT_EQ(FilteredSave::SaveWearablePreset_X("/a/A.duf", false, false), isDone);
        EXPECT_EQ(FilteredSave::SavePosePreset_X("/a/A.duf", false, false), isDone);
    }
    EXPECT_EQ(noting::orders.size(), 10u);
}

} // namespace
