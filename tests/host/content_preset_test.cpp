// Presets on what is selected, and saving morphs.
// SPDX-License-Identifier: MIT

#include "base/file_set.h"
#include "dson/reader.h"
#include "dzassetiomgr.h"
#include "dzbone.h"
#include "dzdformmodifier.h"
#include "dzerror.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dzmorphdeltas.h"
#include "dzobject.h"
#include "dzweightmap.h"
#include "figure/deltas_access.h"
#include "ks_exception.h"
#include "ks_filtered-save.h"
#include "openhost/attendant.h"
#include "openhost/testing.h"
#include "tests/host/content_fixture.h"

#include <chrono>
#include <memory>
#include <thread>

#include <nlohmann/json.hpp>

namespace {

namespace fs = std::filesystem;

using Preset = LibraryTest;

class SavedMorph : public LibraryTest {
protected:
    /// The figure with a morph made in the scene.
    DzFigure* openWithMorph(const char* name = "My Shape")
    {
        DzFigure* const figure = openMini();
        if (!figure)
            return nullptr;
        auto* const morph =
            new DzMorph(openhost::DeltasAccess::create({{2, 7}, {{0.1f, 0, -3}, {0, 1.0f / 3, 0}}}, 10));
        morph->setName(QString::fromUtf8(name));
        morph->setLabel(QStringLiteral("Shape of Mine"));
        morph->getValueControl()->setPath(QStringLiteral("/Actor/Mine"));
        figure->getObject()->addModifier(morph);
        return figure;
    }
    static std::string save(DzNode& node, const fs::path& folder, const char* vendor = "Me",
                            const char* product = "Own", bool compress = false, const char* name = "My Shape")
    {
        try {
            return kst::FilteredSave::SaveMorphSupportAsset_X(node, folder.string(), vendor, product, {name},
                                                              compress, false)
                       ? "saved"
                       : "cancelled";
        } catch (const kst::Exception& error) {
            return error.what();
        }
    }
    static std::string reported(const char* reason)
    {
        return std::string("Daz Studio asset IO manager reported: ") + reason;
    }
    /// Says the same to every question.
    class ReplacingAttendant : public openhost::Attendant {
    public:
        std::optional<bool> mayReplaceFiles(const QStringList& files) override
        {
            asked = files;
            return answer;
        }
        bool answer = true;
        QStringList asked;

    private:
        openhost::AttendantOverride _answering{*this};
    };
    fs::path savedFile() const { return folder("mine") / "data/Acme/Mini/Base/Morphs/Me/Own/My Shape.dsf"; }
};

} // namespace

TEST_F(Preset, a_d_former_lends_its_weights_to_the_selected_figure)
{
    const fs::path preset = writeDForm(10, {1, 9});
    DzFigure* const figure = openMini();
    ASSERT_NE(figure, nullptr);
    dzScene->setPrimarySelection(figure->findNodeChild(QStringLiteral("arm"), true));
    ASSERT_TRUE(open(preset)) << log().toStdString();
    auto* const modifier =
        qobject_cast<DzDFormModifier*>(figure->getObject()->findModifier(QStringLiteral("D-Former_1")));
    ASSERT_NE(modifier, nullptr);
    const DzWeightMap& weights = *modifier->getInfluenceWeights();
    EXPECT_EQ(weights.getName(), QStringLiteral("Influence Weights"));
    EXPECT_EQ(weights.getNumWeights(), 10);
    EXPECT_NEAR(weights.getFloatWeight(9), 0.25, 1e-4);
    EXPECT_EQ(weights.getFloatWeight(2), 0.0f);
    EXPECT_NE(dzScene->findNodeByLabel(QStringLiteral("D-Former_1")), nullptr);
}

TEST_F(Preset, that_does_not_fit_or_has_nothing_to_be_applied_to_changes_nothing)
{
    const fs::path preset = writeDForm(10, {1});
    EXPECT_FALSE(open(preset));
    EXPECT_TRUE(log().contains(QStringLiteral("Split.duf: nothing is selected to apply the preset to")));
    EXPECT_EQ(dzScene->getNumNodes(), 0);
    ASSERT_NE(openMini(), nullptr);
    EXPECT_FALSE(open(writeDForm(11, {1})));
    EXPECT_TRUE(log().contains(
        QStringLiteral("Split.duf: the influence weights are for 11 vertices but Mini has 10")));
    std::string unchecked = ReadBytes(writeDForm(10, {1, 10}));
    unchecked.replace(unchecked.find("\"influence_vertex_count\" : 10"), 29,
                      "\"influence_vertex_count\" : -1");
    WriteBytes(preset, unchecked);
    EXPECT_FALSE(open(preset));
    EXPECT_TRUE(
        log().contains(QStringLiteral("Split.duf: influence weight 1 names vertex 10 but Mini has 10")));
    EXPECT_FALSE(
        open(writePose(R"([{"url": "name://@selection/tail:?rotation/z/value", "keys": [[0, 1]]}])")));
    EXPECT_TRUE(log().contains(QStringLiteral("Pose.duf: names nothing that Mini has")));
    EXPECT_FALSE(open(_library / "data/Acme/Mini/Base/Mini.dsf"));
    EXPECT_TRUE(log().contains(QStringLiteral("Mini.dsf: holds nothing to load into a scene")));
    EXPECT_EQ(dzScene->getNumNodes(), 3);
}

TEST_F(Preset, a_pose_turns_bones_and_sets_dials)
{
    mini::WriteMorph(mini::Morph("Up", 1, {0, 2, 0}), _library);
    DzFigure* const figure = openMini();
    ASSERT_NE(figure, nullptr);
    const fs::path pose = writePose(R"([
        {"url": "name://@selection/hip/arm:?rotation/z/value", "keys": [[0, 90], [1, 5]]},
        {"url": "name://@selection:?translation/y/value", "keys": [[0, 100, ["TCB", 0, 0, 0]]]},
        {"url": "name://@selection#Up:?value/value", "keys": [[0, 0.5]]},
        {"url": "name://@selection/tail:?rotation/z/value", "keys": [[0, 1]]},
        {"url": "name://@selection/arm:?rotation/x/value", "keys": []}])");
    ASSERT_TRUE(open(pose)) << log().toStdString();
    EXPECT_EQ(DialOf(*figure, "Up")->getValue(), 0.5f);
    ExpectAt(VertexAt(*figure, 1), 0, 111, 0);
    ExpectAt(VertexAt(*figure, 9), 10, 120, 0);
}

TEST_F(Preset, stops_at_the_limits_of_a_dial_where_nobody_can_be_asked)
{
    mini::WriteMorph(mini::Morph("Up", 1, {0, 2, 0}), _library);
    DzFigure* const figure = openMini();
    ASSERT_TRUE(open(writePose(R"([{"url": "name://@selection#Up:?value/value", "keys": [[0, 2.5]]}])")));
    EXPECT_EQ(DialOf(*figure, "Up")->getValue(), 1.0f);
    EXPECT_TRUE(log().contains(QStringLiteral("Pose.duf: values beyond the limits stop at them: Up")));
}

TEST_F(SavedMorph, is_found_by_the_next_load_of_the_figure)
{
    for (const bool compress : {false, true}) {
        TestHost().reset();
        use(_library);
        fs::create_directories(folder("mine"));
        use(folder("mine"));
        DzFigure* figure = openWithMorph();
        ASSERT_NE(figure, nullptr);
        ASSERT_EQ(save(*figure, folder("mine"), "Me", "Own", compress), "saved") << log().toStdString();
        EXPECT_EQ(ReadBytes(savedFile()).substr(0, 2) == "\x1F\x8B", compress);
        EXPECT_EQ(FindMorph(*figure, "My Shape")->getAssetUri().toString(),
                  QStringLiteral("/data/Acme/Mini/Base/Morphs/Me/Own/My%20Shape.dsf#My%20Shape"));
        const geometry::SparseDeltas saved =
            openhost::DeltasAccess::deltas(*FindMorph(*figure, "My Shape")->getDeltas());

        TestHost().reset();
        use(_library);
        use(folder("mine"));
        figure = openMini();
        ASSERT_NE(figure, nullptr);
        DzMorph* const morph = FindMorph(*figure, "My Shape");
        ASSERT_NE(morph, nullptr);
        EXPECT_EQ(morph->getLabel(), QStringLiteral("Shape of Mine"));
        EXPECT_EQ(morph->getValueControl()->getPath(), QStringLiteral("/Actor/Mine"));
        EXPECT_EQ(morph->getValueControl()->getValue(), 0.0f);
        const geometry::SparseDeltas& loaded = openhost::DeltasAccess::deltas(*morph->getDeltas());
        EXPECT_EQ(loaded.vertices, saved.vertices);
        EXPECT_EQ(loaded.deltas, saved.deltas);
        fs::remove_all(folder("mine"));
    }
}

TEST_F(SavedMorph, keeps_what_others_put_into_the_file_that_it_replaces)
{
    DzFigure* const figure = openWithMorph();
    ASSERT_NE(figure, nullptr);
    fs::create_directories(folder("mine"));
    ASSERT_EQ(save(*figure, folder("mine")), "saved");
    auto json = nlohmann::ordered_json::parse(ReadBytes(savedFile()));
    json["modifier_library"][0]["extra"] = {{{"type", "note"}, {"text", "hand-made"}}};
    WriteBytes(savedFile(), json.dump());
    FindMorph(*figure, "My Shape")->setLabel(QStringLiteral("Renamed"));
    ASSERT_EQ(save(*figure, folder("mine")), "saved");
    const auto now = nlohmann::ordered_json::parse(ReadBytes(savedFile()));
    EXPECT_EQ(now["modifier_library"][0]["extra"], json["modifier_library"][0]["extra"]);
    EXPECT_EQ(now["modifier_library"][0]["channel"]["label"], "Renamed");
}

TEST_F(SavedMorph, is_not_written_under_a_bad_name)
{
    DzFigure* const figure = openWithMorph();
    ASSERT_NE(figure, nullptr);
    fs::create_directories(folder("mine"));
    for (const char* const bad :
         {"", ".", "..", "a/b", "a\\b", "  ", "a:b", "a\nb", "Inc.", "con", "Lpt1.x"}) {
        EXPECT_EQ(save(*figure, folder("mine"), bad),
                  reported("The vendor name is empty or cannot be the name of a folder."))
            << bad;
        EXPECT_EQ(save(*figure, folder("mine"), "Me", bad),
                  reported("The product name is empty or cannot be the name of a folder."))
            << bad;
    }
    EXPECT_TRUE(log().contains(QStringLiteral("\"a/b\" cannot be the name of a VendorName folder")));
    EXPECT_TRUE(log().contains(QStringLiteral("\"a/b\" cannot be the name of a ProductName folder")));
    EXPECT_EQ(save(*figure, folder("mine"), "Me", "Own", false, "None"), reported("The operation failed."));
    EXPECT_TRUE(log().contains(QStringLiteral("Mini has no morph None")));
    EXPECT_TRUE(fs::is_empty(folder("mine")));
    EXPECT_TRUE(FindMorph(*figure, "My Shape")->getAssetUri().toString().isEmpty());
    EXPECT_EQ(save(*figure, folder("mine"), "  Me ", " Own "), "saved")
        << "blanks around a name do not count";
    EXPECT_TRUE(fs::exists(savedFile()));
}

TEST_F(SavedMorph, does_not_replace_another_morph_where_nobody_can_be_asked)
{
    DzFigure* const first = openWithMorph();
    fs::create_directories(folder("mine"));
    ASSERT_EQ(save(*first, folder("mine")), "saved");
    EXPECT_EQ(save(*first, folder("mine")), "saved") << "its own file";
    const std::string bytes = ReadBytes(savedFile());
    DzFigure* const second = openWithMorph();
    EXPECT_EQ(save(*second, folder("mine")), reported("The operation failed."));
    EXPECT_TRUE(log().contains(QStringLiteral("there is a morph of this name already, and would be lost: ") +
                               QString::fromStdString(savedFile().string())));
    EXPECT_EQ(ReadBytes(savedFile()), bytes);
    FindMorph(*second, "My Shape")->setName(QStringLiteral("MY SHAPE"));
    EXPECT_EQ(save(*second, folder("mine"), "Me", "Own", false, "MY SHAPE"),
              reported("The operation failed."))
        << "on many disks it is the same file";
    EXPECT_EQ(ReadBytes(savedFile()), bytes);
}

TEST_F(SavedMorph, goes_into_folders_of_another_spelling)
{
    fs::create_directories(folder("mine") / "DATA/acme/MINI");
    ASSERT_EQ(save(*openWithMorph(), folder("mine")), "saved");
    EXPECT_TRUE(fs::exists(folder("mine") / "DATA/acme/MINI/Base/Morphs/Me/Own/My Shape.dsf"));
    EXPECT_FALSE(fs::exists(folder("mine") / "data"));
}

TEST_F(SavedMorph, is_not_lost_to_a_program_that_saves_at_the_same_time)
{
    DzFigure* const figure = openWithMorph();
    fs::create_directories(savedFile().parent_path());
    auto other = std::make_unique<base::FileSet>(savedFile().parent_path());
    std::thread late([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        WriteBytes(savedFile(), "the other's");
        other.reset();
    });
    const std::string outcome = save(*figure, folder("mine"));
    late.join();
    EXPECT_EQ(outcome, reported("The operation failed."));
    EXPECT_TRUE(log().contains(
        QStringLiteral("another program has saved a morph of this name meanwhile, which would be lost: ") +
        QString::fromStdString(savedFile().string())));
    EXPECT_EQ(ReadBytes(savedFile()), "the other's");
}

TEST_F(SavedMorph, replaces_another_morph_when_the_user_agrees)
{
    fs::create_directories(folder("mine"));
    ASSERT_EQ(save(*openWithMorph(), folder("mine")), "saved");
    const std::string bytes = ReadBytes(savedFile());
    DzFigure* const second = openWithMorph();
    FindMorph(*second, "My Shape")->setDeltas(openhost::DeltasAccess::create({{1}, {{0, 0, 5}}}, 10));
    ReplacingAttendant attendant;
    attendant.answer = false;
    EXPECT_EQ(save(*second, folder("mine")), "cancelled");
    EXPECT_EQ(ReadBytes(savedFile()), bytes);
    attendant.answer = true;
    EXPECT_EQ(save(*second, folder("mine")), "saved");
    EXPECT_NE(ReadBytes(savedFile()), bytes);
    EXPECT_EQ(attendant.asked, QStringList(QString::fromStdString(savedFile().string())))
        << "in both questions";
}

TEST_F(SavedMorph, with_a_name_that_no_file_can_have_is_told_and_found_again)
{
    DzFigure* const figure = openWithMorph("a/b");
    fs::create_directories(folder("mine"));
    ASSERT_EQ(save(*figure, folder("mine"), "Me", "Own", false, "a/b"), "saved");
    EXPECT_TRUE(fs::exists(savedFile().parent_path() / "a%2Fb.dsf"));
    EXPECT_TRUE(
        log().contains(QStringLiteral("a/b: no name for a file; the morph is named a%2Fb in its own")));
    TestHost().reset();
    use(_library);
    use(folder("mine"));
    DzFigure* const fresh = openMini();
    ASSERT_NE(FindMorph(*fresh, "a%2Fb"), nullptr);
    EXPECT_EQ(FindMorph(*fresh, "a%2Fb")->getLabel(), QStringLiteral("Shape of Mine"));
}

TEST_F(SavedMorph, is_written_only_into_a_folder_that_is_there)
{
    DzFigure* const figure = openWithMorph();
    ASSERT_NE(figure, nullptr);
    EXPECT_EQ(save(*figure, folder("mine")), reported("The content library does not exist."));
    EXPECT_TRUE(log().contains(QStringLiteral("there is no folder ") +
                               QString::fromStdString(folder("mine").string())));
    EXPECT_FALSE(fs::exists(folder("mine")));
    EXPECT_EQ(save(*figure, ""), reported("The operation failed."));
    EXPECT_TRUE(log().contains(QStringLiteral("no content folder to save into is given")));
    WriteBytes(folder("file"), "in the way");
    EXPECT_EQ(save(*figure, folder("file")), reported("The content library does not exist."));
    EXPECT_EQ(ReadBytes(folder("file")), "in the way");
    WriteBytes(folder("mine") / "data", "in the way");
    EXPECT_EQ(save(*figure, folder("mine")), reported("The operation failed."));
    EXPECT_TRUE(log().contains(QStringLiteral("cannot create folder ")));
    EXPECT_EQ(ReadBytes(folder("mine") / "data"), "in the way");
    EXPECT_TRUE(FindMorph(*figure, "My Shape")->getAssetUri().toString().isEmpty());
}
