// Detail of morphs for subdivided meshes: the companion file, saving and loading.
// SPDX-License-Identifier: MIT

#include "dson/dhdm.h"
#include "dzenumproperty.h"
#include "dzerror.h"
#include "dzfacetshape.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzintproperty.h"
#include "dzmorph.h"
#include "dzmorphdeltas.h"
#include "dzobject.h"
#include "figure/deltas_access.h"
#include "figure/mesh_access.h"
#include "ks_exception.h"
#include "ks_filtered-save.h"
#include "tests/host/content_fixture.h"

#include <cstring>
#include <random>

#include <nlohmann/json.hpp>

namespace {

namespace fs = std::filesystem;
using geometry::MultiresDetail;
using geometry::Vec3f;

const geometry::Topology& Strip()
{
    static const dson::FigureAsset figure = mini::Figure();
    return *figure.geometry.mesh.topology;
}

/// Every third corner of every level has an offset of its own.
MultiresDetail SomeDetail(int levels)
{
    std::mt19937 random(5);
    std::normal_distribution<float> along(0.0f, 0.3f);
    MultiresDetail detail;
    for (int level = 1; level <= levels; ++level) {
        geometry::DetailLevel current;
        for (std::uint32_t corner = static_cast<std::uint32_t>(level); corner < 16u << 2 * level;
             corner += 3) {
            current.corners.push_back(corner);
            current.offsets.push_back({along(random), along(random), along(random)});
        }
        detail.levels.push_back(std::move(current));
    }
    return detail;
}

std::string Encoded(const MultiresDetail& detail, const geometry::Topology& cage = Strip())
{
    std::size_t leftOut = 0;
    std::string bytes = dson::EncodeDhdm(detail, cage, &leftOut);
    EXPECT_EQ(leftOut, 0u);
    return bytes;
}

template <class T>
T At(const std::string& bytes, std::size_t place)
{
    T value;
    std::memcpy(&value, bytes.data() + place, sizeof value);
    return value;
}

std::string With(std::string bytes, std::size_t place, std::uint32_t value)
{
    std::memcpy(bytes.data() + place, &value, sizeof value);
    return bytes;
}

void ExpectSame(const MultiresDetail& a, const MultiresDetail& b)
{
    ASSERT_EQ(a.levels.size(), b.levels.size());
    for (std::size_t i = 0; i < a.levels.size(); ++i) {
        EXPECT_EQ(a.levels[i].corners, b.levels[i].corners);
        EXPECT_EQ(a.levels[i].offsets, b.levels[i].offsets);
    }
}

std::string RefusalOf(const std::string& bytes)
{
    return ErrorOf([&] { dson::DecodeDhdm(bytes, Strip(), "x.dhdm"); });
}

} // namespace

TEST(DetailFile, holds_levels_faces_and_paths_byte_for_byte)
{
    // Third corner of the second face, last of its four vertices: path 2, 3.
    MultiresDetail detail;
    detail.levels.push_back({{4 * (4 + 2) + 3}, {{1.0f, 2.0f, -0.5f}}});
    const std::string bytes = Encoded(detail);
    ASSERT_EQ(bytes.size(), 16u + 16u + 8u + 14u);
    const std::uint32_t words[] = {0xD0D0D0D0, 1, 0x3F800000, 1, /* level */ 4, 1, 1, 22, /* face */ 1, 1};
    for (std::size_t i = 0; i < std::size(words); ++i)
        EXPECT_EQ(At<std::uint32_t>(bytes, 4 * i), words[i]) << i;
    EXPECT_EQ(At<float>(bytes, 40), 1.0f);
    EXPECT_EQ(bytes.substr(44, 2), "\xB0\x20");
    EXPECT_EQ(At<float>(bytes, 46), 2.0f);
    EXPECT_EQ(At<float>(bytes, 50), -0.5f);
}

TEST(DetailFile, holds_long_paths_from_level_4_on)
{
    // Every step is another one: 3, 0, 1, 2, 3.
    MultiresDetail detail;
    detail.levels.resize(4);
    detail.levels[3] = {{((((3u * 4 + 0) * 4 + 1) * 4 + 2) * 4) + 3}, {{1.0f, 2.0f, 3.0f}}};
    const std::string bytes = Encoded(detail);
    const std::size_t edit = 16 + 4 * 16 + 8;
    ASSERT_EQ(bytes.size(), edit + 16);
    const std::uint32_t path = 5u << 28 | 3u << 22 | 0u << 20 | 1u << 18 | 2u << 16 | 3u << 14;
    EXPECT_EQ(At<std::uint16_t>(bytes, edit + 4), path & 0xFFFF);
    EXPECT_EQ(At<std::uint16_t>(bytes, edit + 6), path >> 16);
    ExpectSame(dson::DecodeDhdm(bytes, Strip(), "x"), detail);
}

TEST(DetailFile, reads_back_bit_for_bit)
{
    const MultiresDetail detail = SomeDetail(6);
    ExpectSame(dson::DecodeDhdm(Encoded(detail), Strip(), "x"), detail);
    ExpectSame(dson::DecodeDhdm(Encoded({}), Strip(), "x"), {});
}

TEST(DetailFile, may_name_faces_and_corners_in_any_order)
{
    MultiresDetail detail;
    detail.levels.push_back({{3, 40}, {{1, 0, 0}, {0, 2, 0}}});
    const std::string bytes = Encoded(detail);
    const std::string swapped = bytes.substr(0, 32) + bytes.substr(54, 22) + bytes.substr(32, 22);
    ExpectSame(dson::DecodeDhdm(swapped, Strip(), "x"), detail);
}

TEST(DetailFile, leaves_out_what_lies_behind_the_fourth_corner_of_a_face)
{
    geometry::Topology pentagon;
    pentagon.vertexCount = 5;
    pentagon.addFace(std::vector<std::uint32_t>{0, 1, 2, 3, 4});
    MultiresDetail detail;
    detail.levels.push_back({{15, 16, 19}, {{1, 0, 0}, {2, 0, 0}, {3, 0, 0}}});
    std::size_t leftOut = 0;
    const std::string bytes = dson::EncodeDhdm(detail, pentagon, &leftOut);
    EXPECT_EQ(leftOut, 2u);
    EXPECT_EQ(dson::DecodeDhdm(bytes, pentagon, "x").levels[0].corners, std::vector<std::uint32_t>{15});
}

TEST(DetailFile, that_is_damaged_is_refused_with_a_sentence)
{
    MultiresDetail detail;
    detail.levels.push_back({{27}, {{1.0f, 2.0f, -0.5f}}});
    const std::string good = Encoded(detail);
    EXPECT_EQ(RefusalOf("no detail at all"), "x.dhdm: is no file of morph detail");
    EXPECT_EQ(RefusalOf(""), "x.dhdm: ends at byte 0 in the middle of a level");
    EXPECT_EQ(RefusalOf(With(good, 4, 2)), "x.dhdm: is no file of morph detail");
    EXPECT_EQ(RefusalOf(With(With(good, 4, 2), 12, 2)), "x.dhdm: ends at byte 54 in the middle of a level");
    EXPECT_EQ(RefusalOf(With(good, 16, 5)), "x.dhdm: is for 5 faces but the figure has 4");
    EXPECT_EQ(RefusalOf(With(good, 20, 2)), "x.dhdm: level 1 is numbered 2 or too fine");
    EXPECT_EQ(RefusalOf(With(good, 24, 0xFFFFFFFF)), "x.dhdm: level 1 is larger than the file");
    EXPECT_EQ(RefusalOf(With(good, 28, 21)), "x.dhdm: level 1 has 22 bytes instead of 21");
    EXPECT_EQ(RefusalOf(With(good, 32, 4)), "x.dhdm: level 1 holds 1 edit of face 4");
    EXPECT_EQ(RefusalOf(With(good, 36, 2)), "x.dhdm: level 1 holds 2 edits of face 1");
    EXPECT_EQ(RefusalOf(With(good, 40, 0x7F800000)), "x.dhdm: level 1 has a broken edit of face 1");
    std::string longer = good;
    longer[45] = '\x30'; // a path of another length
    EXPECT_EQ(RefusalOf(longer), "x.dhdm: level 1 has a broken edit of face 1");
    EXPECT_EQ(RefusalOf(good + "more"), "x.dhdm: 4 bytes follow behind the last level");
}

TEST(DetailFile, cut_off_anywhere_is_refused_and_changed_anywhere_does_no_harm)
{
    const std::string good = Encoded(SomeDetail(4));
    for (std::size_t length = 0; length < good.size(); length += 1 + length / 40)
        EXPECT_NE(RefusalOf(good.substr(0, length)), "no error") << length;
    std::mt19937 random(9);
    for (int i = 0; i < 3000; ++i) {
        std::string bytes = good;
        bytes[random() % bytes.size()] = static_cast<char>(random());
        try {
            for (const geometry::DetailLevel& level : dson::DecodeDhdm(bytes, Strip(), "x").levels)
                EXPECT_TRUE(std::is_sorted(level.corners.begin(), level.corners.end()));
        } catch (const base::FormatError&) {
        }
    }
}

namespace {

/// A Mini with a morph "Up" that has detail of two levels.
class DetailOnDisk : public LibraryTest {
protected:
    void SetUp() override
    {
        LibraryTest::SetUp();
        mini::WriteCharacter(_library);
    }

    DzFigure& openSubdivided()
    {
        DzFigure* const figure = openMini();
        DzFacetShape& shape = *qobject_cast<DzFacetShape*>(figure->getObject()->getCurrentShape());
        shape.enableSubDivision(true);
        shape.getLODControl()->setValue(1);
        shape.getSubDLevelControl()->setValue(2);
        return *figure;
    }

    static DzMorph& addUp(DzFigure& figure)
    {
        auto* const deltas = openhost::DeltasAccess::create({{3}, {{0, 1, 0}}}, mini::vertexCount);
        openhost::DeltasAccess::assignDetail(*deltas, SomeDetail(2));
        auto* const morph = new DzMorph(deltas);
        morph->setName(QStringLiteral("Up"));
        figure.getObject()->addModifier(morph);
        return *morph;
    }

    static std::vector<Vec3f> dialed(DzFigure& figure, float value = 1.0f)
    {
        FindMorph(figure, "Up")->getValueControl()->setValue(value);
        return openhost::MeshAccess::mesh(*figure.getObject()->getCachedGeom()).positions;
    }

    void save(DzFigure& figure)
    {
        kst::FilteredSave::SaveMorphSupportAsset_X(figure, _library.string(), "Acme", "Shapes", {"Up"}, false,
                                                   false);
    }

    fs::path morphFile() const { return _library / (std::string(mini::morphFolder).substr(1) + "Up.dsf"); }
    fs::path companion() const { return fs::path(morphFile()).replace_extension(".dhdm"); }

    /// Saves, forgets and loads again.
    DzFigure& reopened()
    {
        DzFigure& figure = openSubdivided();
        addUp(figure);
        _wanted = dialed(figure);
        save(figure);
        TestHost().reset();
        use(_library);
        return openSubdivided();
    }

    std::vector<Vec3f> _wanted;
};

} // namespace

TEST_F(DetailOnDisk, is_saved_with_the_morph_and_loaded_again)
{
    DzFigure& figure = reopened();
    EXPECT_TRUE(fs::exists(companion()));
    const auto json = nlohmann::json::parse(ReadBytes(morphFile()));
    EXPECT_EQ(json["modifier_library"][0]["morph"]["hd_url"],
              "/data/Acme/Mini/Base/Morphs/Acme/Shapes/Up.dhdm");
    EXPECT_EQ(dialed(figure), _wanted);
    EXPECT_NE(dialed(figure, 0.5f), _wanted);
}

TEST_F(DetailOnDisk, is_read_only_when_it_is_seen)
{
    DzFigure& figure = reopened();
    fs::remove(companion());
    const int start = LogText().size();
    DzFacetShape& shape = *qobject_cast<DzFacetShape*>(figure.getObject()->getCurrentShape());
    shape.getLODControl()->setValue(0);
    EXPECT_EQ(dialed(figure).size(), std::size_t(mini::vertexCount));
    EXPECT_EQ(LogText().mid(start), QString());
}

TEST_F(DetailOnDisk, that_is_missing_leaves_the_rest_of_the_morph_and_is_told_once)
{
    DzFigure& figure = reopened();
    fs::remove(companion());
    const std::vector<Vec3f> before = dialed(figure, 0.0f);
    const std::vector<Vec3f> after = dialed(figure);
    EXPECT_EQ(after.size(), before.size());
    EXPECT_NE(after, before);
    dialed(figure, 0.5f);
    EXPECT_EQ(log().count(QStringLiteral("Up.dhdm: no content directory has it")), 1) << log().toStdString();
}

TEST_F(DetailOnDisk, that_cannot_be_read_keeps_the_morph_from_being_saved_without_it)
{
    DzFigure& figure = reopened();
    fs::remove(companion());
    const std::string before = ReadBytes(morphFile());
    EXPECT_THROW(save(figure), kst::Exception);
    EXPECT_TRUE(log().contains(QStringLiteral("the deltas of Up cannot be read"))) << log().toStdString();
    EXPECT_EQ(ReadBytes(morphFile()), before);
}

TEST_F(DetailOnDisk, is_found_beside_the_morph_and_whatever_the_case_of_its_path)
{
    DzFigure& figure = reopened();
    std::string text = ReadBytes(morphFile());
    const std::string url = "/data/Acme/Mini/Base/Morphs/Acme/Shapes/Up.dhdm";
    const auto rewrite = [&](const std::string& other) {
        std::string changed = text;
        changed.replace(changed.find(url), url.size(), other);
        WriteBytes(morphFile(), changed);
        TestHost().reset();
        use(_library);
        return dialed(openSubdivided());
    };
    EXPECT_EQ(dialed(figure), _wanted);
    EXPECT_EQ(rewrite("/Data/acme/Mini/base/Morphs/Acme/Shapes/UP.dhdm"), _wanted);
    EXPECT_EQ(rewrite("/data/moved/away/Up.dhdm"), _wanted);
}

TEST_F(DetailOnDisk, for_another_mesh_is_refused_and_the_rest_of_the_morph_loads)
{
    DzFigure& figure = reopened();
    geometry::Topology other = Strip();
    other.addFace(std::vector<std::uint32_t>{0, 1, 2});
    WriteBytes(companion(), Encoded(SomeDetail(2), other));
    EXPECT_NE(dialed(figure), _wanted);
    EXPECT_TRUE(log().contains(QStringLiteral("is for 5 faces but the figure has 4"))) << log().toStdString();
}

TEST_F(DetailOnDisk, that_cannot_be_written_leaves_the_morph_as_it_was)
{
    DzFigure& figure = openSubdivided();
    addUp(figure);
    save(figure);
    const std::string before = ReadBytes(morphFile()), detail = ReadBytes(companion());
    FindMorph(figure, "Up")->getDeltas()->addDelta(1, DzVec3(0, 0, 9));
    fs::remove(companion());
    fs::create_directories(companion() / "in the way");
    EXPECT_THROW(save(figure), kst::Exception);
    EXPECT_EQ(ReadBytes(morphFile()), before);
    fs::remove_all(companion());
    save(figure);
    EXPECT_NE(ReadBytes(morphFile()), before);
    EXPECT_EQ(ReadBytes(companion()), detail);
}

TEST_F(DetailOnDisk, goes_from_the_morph_that_is_saved_again_without_it)
{
    DzFigure& figure = openSubdivided();
    DzMorph& morph = addUp(figure);
    save(figure);
    openhost::DeltasAccess::assignDetail(*morph.getDeltas(), {});
    save(figure);
    EXPECT_FALSE(
        nlohmann::json::parse(ReadBytes(morphFile()))["modifier_library"][0]["morph"].contains("hd_url"));
}

TEST_F(DetailOnDisk, is_left_out_of_saved_scenes_and_the_log_says_so)
{
    addUp(openSubdivided());
    const fs::path scene = folder("scenes") / "Up.duf";
    EXPECT_EQ(dzScene->saveScene(QString::fromStdString(scene.string())), DZ_NO_ERROR);
    EXPECT_TRUE(log().contains(QStringLiteral(
        "Up: the detail for subdivided meshes is not saved with the scene; save it as a morph asset")))
        << log().toStdString();
}
