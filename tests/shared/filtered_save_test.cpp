// Saving through the host's asset filters.
// SPDX-License-Identifier: MIT

#include "dzassetiofilter.h"
#include "dzassetiomgr.h"
#include "dzfigure.h"
#include "dzfileiosettings.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dzmorphdeltas.h"
#include "dzobject.h"
#include "dzshape.h"
#include "ks_filtered-save.h"
#include "openhost/attendant.h"
#include "tests/host/content_fixture.h"
#include "tests/shared/throws.h"

#include <nlohmann/json.hpp>

namespace {

namespace fs = std::filesystem;
using kst::FilteredSave;

/// Answers the question for options, and keeps it.
class OptionsNote : public openhost::Attendant {
public:
    bool chooseFileOptions(const QString&, const std::vector<openhost::OptionRow>&,
                           DzFileIOSettings& options) override
    {
        ++timesAsked;
        seen = options.toJsonString();
        return isAccepted;
    }
    int timesAsked = 0;
    bool isAccepted = true;
    QString seen;
};

/// Keeps what the host is asked for.
class SaveWatcher : public openhost::OperationWatch {
public:
    bool allow(openhost::Operation operation, const QString& detail) override
    {
        if (operation == openhost::Operation::SaveAsset)
            filters.push_back(detail.toStdString());
        return operation != openhost::Operation::SaveAsset || isAllowed;
    }
    bool isAllowed = true;
    std::vector<std::string> filters;
};

class FilteredSaveTest : public LibraryTest {
protected:
    void SetUp() override
    {
        LibraryTest::SetUp();
        _figure = openMini();
        ASSERT_NE(_figure, nullptr);
    }

    std::string path(const char* name) const { return (folder("saved") / name).string(); }
    nlohmann::json saved(const char* name) const { return nlohmann::json::parse(ReadBytes(path(name))); }
    void addMorph(const char* name)
    {
        auto* const deltas = new DzMorphDeltas;
        deltas->setTargetVertexCount(mini::vertexCount);
        deltas->addDelta(1, DzVec3(0, 1, 0));
        auto* const morph = new DzMorph(deltas);
        morph->setName(QLatin1String(name));
        _figure->getObject()->addModifier(morph);
    }

    DzFigure* _figure = nullptr;
    OptionsNote note;

private:
    openhost::AttendantOverride _answering{note};
};

} // namespace

TEST_F(FilteredSaveTest, needs_a_filter_of_that_name)
{
    EXPECT_EQ(MessageOf([] { FilteredSave("DzNoSuchFilter"); }), "failed to find DzNoSuchFilter");
}

TEST_F(FilteredSaveTest, writes_the_scene_plain_or_compressed)
{
    for (const bool compress : {false, true}) {
        EXPECT_TRUE(FilteredSave::SaveScene_X(path("Scene.duf"), compress));
        EXPECT_EQ(ReadBytes(path("Scene.duf")).substr(0, 2) == "\x1F\x8B", compress);
    }
    EXPECT_TRUE(FilteredSave::SaveScene_X(path("Scene"), false));
    EXPECT_EQ(saved("Scene.duf")["asset_info"]["type"], "scene");
    EXPECT_EQ(note.timesAsked, 0);
}

TEST_F(FilteredSaveTest, uses_the_filter_of_each_kind)
{
    DzNode* const ring = new DzNode;
    ring->setName(QStringLiteral("Ring"));
    ring->setLabel(QStringLiteral("Ring"));
    _figure->addNodeChild(ring);
    const SaveWatcher watcher;
    EXPECT_TRUE(FilteredSave::SaveScene_X(path("A"), false));
    EXPECT_TRUE(FilteredSave::SaveSceneSubset_X(path("B"), false, false));
    EXPECT_TRUE(FilteredSave::SaveWearablePreset_X(path("C"), false, false));
    EXPECT_TRUE(FilteredSave::SavePosePreset_X(path("D"), false, false));
    EXPECT_EQ(watcher.filters, (std::vector<std::string>{"DzSceneAssetFilter", "DzSceneSubsetAssetFilter",
                                                         "DzWearablesAssetFilter", "DzPoseAssetFilter"}));
    EXPECT_EQ(saved("B.duf")["asset_info"]["type"], "scene_subset");
    EXPECT_EQ(saved("C.duf")["asset_info"]["type"], "wearable");
    EXPECT_EQ(saved("C.duf")["scene"]["nodes"][0]["name"], "Ring");
    EXPECT_EQ(saved("D.duf")["asset_info"]["type"], "preset_pose");
    EXPECT_EQ(note.timesAsked, 0);
}

TEST_F(FilteredSaveTest, names_the_selected_figure_and_the_present_frame)
{
    dzScene->setPrimarySelection(_figure->findNodeChild(QStringLiteral("arm"), true));
    EXPECT_TRUE(FilteredSave::SavePosePreset_X(path("Pose.duf"), false, true));
    EXPECT_EQ(note.timesAsked, 1);
    const auto options = nlohmann::json::parse(note.seen.toStdString());
    EXPECT_EQ(options["RootLabel"], "Mini");
    EXPECT_EQ(options["SaveCurFrame"], true);
    EXPECT_FALSE(options.contains("RunSilent"));
    dzScene->selectAllNodes(false);
    EXPECT_EQ(MessageOf([this] { FilteredSave::SavePosePreset_X(path("P"), false, false); }),
              "nothing selected in scene");
    EXPECT_EQ(MessageOf([this] { FilteredSave::SaveWearablePreset_X(path("W"), false, false); }),
              "nothing selected in scene");
}

TEST_F(FilteredSaveTest, ends_when_the_options_are_refused)
{
    note.isAccepted = false;
    EXPECT_EQ(MessageOf([this] { FilteredSave::SaveSceneSubset_X(path("S"), false, true); }),
              "operation canceled");
    EXPECT_THROW(FilteredSave::SavePosePreset_X(path("P"), false, true), kst::CanceledException);
    EXPECT_FALSE(fs::exists(path("S.duf")));
    EXPECT_EQ(note.timesAsked, 2);
}

TEST_F(FilteredSaveTest, tells_the_host_s_text_of_any_other_result)
{
    SaveWatcher watcher;
    watcher.isAllowed = false;
    EXPECT_EQ(MessageOf([this] { FilteredSave::SaveScene_X(path("S"), false); }),
              "Daz Studio asset IO manager reported: The operation failed.");
    EXPECT_EQ(MessageOf([] { FilteredSave::SaveScene_X("", false); }),
              "Daz Studio asset IO manager reported: An argument is not valid.");
    WriteBytes(folder("blocked"), "a file");
    watcher.isAllowed = true;
    EXPECT_EQ(MessageOf([this] { FilteredSave::SaveScene_X((folder("blocked") / "S").string(), false); }),
              "Daz Studio asset IO manager reported: The file cannot be opened.");
}

TEST_F(FilteredSaveTest, writes_morphs_silently_in_the_order_given)
{
    for (const char* const name : {"One", "Two", "Three"})
        addMorph(name);
    const std::string mine = folder("mine").string();
    fs::create_directories(mine);
    EXPECT_TRUE(FilteredSave::SaveMorphSupportAsset_X(*_figure, mine, "Me", "Own", {"Three", "One", "Two"},
                                                      false, false));
    EXPECT_EQ(note.timesAsked, 0);
    for (const char* const name : {"One", "Two", "Three"})
        EXPECT_TRUE(
            fs::exists(folder("mine") / "data/Acme/Mini/Base/Morphs/Me/Own" / (std::string(name) + ".dsf")));
}
