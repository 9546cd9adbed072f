// Saves that concern several folders, and loads of what one of them left.
// SPDX-License-Identifier: MIT

#include "base/file_set.h"
#include "base/process_mark.h"
#include "dzassetiomgr.h"
#include "dzfigure.h"
#include "dzfileiosettings.h"
#include "dzmorph.h"
#include "saving/morph_asset_filter.h"
#include "tests/base/journal_text.h"
#include "tests/base/traced_run.h"
#include "tests/host/save_fixture.h"

namespace {

namespace fs = std::filesystem;

const char* const miniFile = "data/Acme/Mini/Base/Morphs/Me/Own/Tall.dsf";
const char* const maxiFile = "data/Acme/Maxi/Base/Morphs/Me/Own/Tall.dsf";

/// Mini, and a figure of another folder, each with a morph that no file has.
class MorphsOfTwo : public SaveTest {
protected:
    void SetUp() override
    {
        SaveTest::SetUp();
        dson::FigureAsset maxi = mini::Figure();
        maxi.info.id = "/data/Acme/Maxi/Base/Maxi.dsf";
        maxi.nodes[0] = dson::MakeNode("Maxi", "Maxi", "figure");
        maxi.nodes[1].parent = "Maxi";
        dson::WriteFigure(maxi, _library);
        dson::CharacterAsset character;
        character.info = maxi.info;
        character.info.id = "/People/Maxi.duf";
        character.info.type = "character";
        character.figureUri = dson::MakeUri(maxi.info.id, "Maxi");
        character.label = "Maxi";
        dson::WriteCharacter(character, maxi, _library);
        ASSERT_NE(openMini(), nullptr);
        ASSERT_TRUE(open(_library / "People/Maxi.duf")) << log().toStdString();
        for (const char* const name : {"Mini", "Maxi"}) {
            DzNode* const node = dzScene->findNode(QString::fromUtf8(name));
            ASSERT_NE(node, nullptr) << name;
            addMorph(*node, "Tall", {{1}, {{0, 2, 0}}});
        }
    }
    int saveBoth() const
    {
        DzFileIOSettings options;
        options.setStringValue(QStringLiteral("BaseDataPath"), QString::fromStdString(library().string()));
        options.setStringValue(QStringLiteral("VendorName"), QStringLiteral("Me"));
        options.setStringValue(QStringLiteral("ProductName"), QStringLiteral("Own"));
        DzSettings* const nodes = options.setSettingsValue(QStringLiteral("NodeNames"));
        for (const char* const name : {"Mini", "Maxi"})
            nodes->setSettingsValue(QString::fromUtf8(name))
                ->setStringValue(QStringLiteral("0"), QStringLiteral("Tall"));
        return DzMorphSupportAssetFilter().doSave(&options, {}, {});
    }
    fs::path library() const { return folder("mine"); }
    void empty() const
    {
        fs::remove_all(library());
        fs::create_directory(library());
    }
    bool has(const char* file) const { return fs::exists(library() / file); }
};

} // namespace

TEST_F(MorphsOfTwo, are_saved_both_or_neither)
{
    empty();
    const auto save = [this] { return saveBoth() == 0 ? 0 : 1; };
    const TracedRun whole = RunTraced(library(), save);
    ASSERT_EQ(whole.exitCode, 0);
    ASSERT_TRUE(has(miniFile) && has(maxiFile));
    std::size_t both = 0, neither = 0;
    for (std::size_t at = 1; at <= whole.calls.size(); ++at) {
        empty();
        EXPECT_TRUE(RunTraced(library(), save, {at}).wasKilled);
        base::FinishFileSet((library() / (at % 2 ? miniFile : maxiFile)).parent_path());
        EXPECT_EQ(has(miniFile), has(maxiFile)) << "killed before " << whole.calls[at - 1];
        ++(has(miniFile) ? both : neither);
    }
    EXPECT_GT(both, 5u);
    EXPECT_GT(neither, 5u);
}

TEST_F(MorphsOfTwo, leave_no_folders_when_one_cannot_be_saved)
{
    empty();
    fs::create_directories(library() / maxiFile);
    EXPECT_NE(saveBoth(), 0);
    EXPECT_FALSE(fs::exists(library() / "data/Acme/Mini"));
}

using LeftSave = LibraryTest;

TEST_F(LeftSave, of_a_figure_is_finished_before_the_figure_is_read)
{
    const fs::path base = _library / "data/Acme/Mini/Base";
    dson::FigureAsset taller = mini::Figure();
    taller.geometry.mesh.positions[1] = {0, 25, 0};
    dson::WriteFigure(taller, folder("other"));
    std::string ended = base::ProcessMark();
    ended.replace(ended.rfind('-') + 1, std::string::npos, "1"); // a process of our number before us
    const std::string figurePart = "Mini.dsf." + ended + ".1.part", morphPart = "Up.dsf." + ended + ".2.part";
    fs::create_directories(base / "Morphs");
    fs::rename(folder("other") / "data/Acme/Mini/Base/Mini.dsf", base / figurePart);
    WriteBytes(base / "Morphs" / morphPart, "{}");
    WriteBytes(
        base / ".gantrel-saving",
        JournalText({"gantrel file set 2", "set", "1", "folder", ".", "put", figurePart, "Mini.dsf",
                     IdentityText(base / figurePart), IdentityText(base / "Mini.dsf"), "folder", "Morphs",
                     "put", morphPart, "Up.dsf", IdentityText(base / "Morphs" / morphPart), "-", "end"}));
    WriteBytes(base / "Morphs/.gantrel-saving",
               JournalText({"gantrel file set 2", "member", "1", "Morphs", ".", "end"}));
    DzFigure* const figure = openMini();
    ASSERT_NE(figure, nullptr) << log().toStdString();
    ExpectAt(VertexAt(*figure, 1), 0, 25, 0);
    EXPECT_TRUE(log().contains(QLatin1String("a save was interrupted here and is finished now: 2 files")));
    EXPECT_TRUE(fs::exists(base / "Morphs/Up.dsf"));
    EXPECT_FALSE(fs::exists(base / ".gantrel-saving"));
    EXPECT_FALSE(fs::exists(base / "Morphs/.gantrel-saving"));
}
