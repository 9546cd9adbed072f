// One path spelled in many ways by the files that name it.
// SPDX-License-Identifier: MIT

#include "dson/uri.h"
#include "dzbone.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "tests/host/foreign_scene.h"

namespace {

using namespace doll;

class Spelling : public ForeignScene {
protected:
    /// A control on the figure whose parent is spelled like this, in JSON text.
    static std::string controlOf(const std::string& parent, const std::string& name)
    {
        return R"({"id": ")" + name + R"(", "name": ")" + name + R"(", "parent": ")" + parent +
               R"(", "channel": {"id": "value", "type": "float"}})";
    }
};

/// In JSON text; each leads to /data/Nord/Doll/Doll.dsf.
const char* const spellings[] = {"/data/Nord/Doll/Doll.dsf",         "data/Nord/Doll/Doll.dsf",
                                 "/data//Nord/Doll//Doll.dsf",       "//data/Nord/Doll/Doll.dsf",
                                 "/data/./Nord/Doll/./Doll.dsf",     "./data/Nord/Doll/Doll.dsf",
                                 "/data/Nord/Else/../Doll/Doll.dsf", "\\\\data\\\\Nord\\\\Doll\\\\Doll.dsf",
                                 "data%5CNord%5CDoll%5CDoll.dsf",    "/DATA/nord/DOLL/doll.DSF",
                                 "/d%61ta/%4Eord/Doll%2FDoll%2Edsf"};

} // namespace

TEST(NormalPath, has_one_spelling_for_all_that_lead_the_same_way)
{
    const std::pair<const char*, const char*> cases[] = {
        {"/data/a/b.dsf", "/data/a/b.dsf"},
        {"/data//a/./b.dsf", "/data/a/b.dsf"},
        {"data\\a\\b.dsf", "data/a/b.dsf"},
        {"//data/a/b.dsf", "/data/a/b.dsf"},
        {"./data/b.dsf", "data/b.dsf"},
        {"/data/x/../b.dsf", "/data/b.dsf"},
        {"/data/x/y/../../b.dsf", "/data/b.dsf"},
        {"a/..", ""},
        {"/data/a/", "/data/a"},
        {"/", "/"},
        {"", ""},
        {"/data/.hidden/..b/c..", "/data/.hidden/..b/c.."},
        {"../b.dsf", "../b.dsf"},
        {"/../b.dsf", "/../b.dsf"},
        {"a/../../b.dsf", "../b.dsf"},
        {"../../b.dsf", "../../b.dsf"},
    };
    for (const auto& [given, normal] : cases) {
        EXPECT_EQ(dson::NormalPath(given), normal) << given;
        EXPECT_EQ(dson::NormalPath(normal), normal) << normal;
    }
}

TEST_F(Spelling, of_a_parent_does_not_matter)
{
    int number = 0;
    for (const char* const path : spellings) {
        const std::string name = "C" + std::to_string(number++);
        writeShape(name, controlOf(path + std::string("#Doll"), name));
    }
    const DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    for (int i = 0; i < number; ++i)
        EXPECT_NE(DialIn(*figure, ("C" + std::to_string(i)).c_str()), nullptr) << spellings[i];
    EXPECT_FALSE(logged("other figure")) << log().toStdString();
}

TEST_F(Spelling, of_the_figure_does_not_matter)
{
    writeShape("Up", Morph("Up", 1, 1.0));
    for (const char* const path : spellings) {
        dzScene->clear();
        const std::string wears = R"(, "modifiers": [{"id": "u", "parent": "#Doll-1",
            "url": "/data/Nord/Doll/Morphs/Nord/Shapes/Up.dsf#Up", "channel": {"current_value": 0.5}}])";
        ASSERT_TRUE(load("People/Spelled.duf", Scene(Instance("", "", R"(, "label": "Here")", path), wears)))
            << path << log().toStdString();
        const DzNode& figure = *dzScene->getPrimarySelection();
        EXPECT_EQ(ValueIn(figure, "Up"), 0.5) << path;
        EXPECT_EQ(dzScene->getNumNodes(), 3) << path;
        EXPECT_EQ(BoneOf(figure, "hand")->getLabel(), QStringLiteral("Here")) << path;
        // The address is what other files call the figure.
        EXPECT_EQ(figure.getAssetUri().toString().compare(QStringLiteral("/data/Nord/Doll/Doll.dsf#Doll"),
                                                          Qt::CaseInsensitive),
                  0)
            << figure.getAssetUri().toString().toStdString();
    }
    EXPECT_FALSE(logged("in no content library")) << log().toStdString();
}

TEST_F(Spelling, of_a_shape_does_not_matter_to_instances_and_formulas)
{
    // The names alone do not tell the two apart.
    write("data/Nord/Doll/Morphs/A/Same.dsf", ModifierFile(Control("Same")));
    write("data/Nord/Doll/Morphs/B B/Same.dsf", ModifierFile(Control("Same")));
    const std::string urls[] = {"/data/Nord/Doll/Morphs/B%20B/Same.dsf#Same",
                                "/data/Nord/Doll/Morphs/B B/Same.dsf#Same",
                                "data/Nord/Doll/Morphs/B%20B/Same.dsf#Same",
                                "/data//Nord/Doll/Morphs/./B%20B/Same.dsf#Same",
                                "/data/Nord/Doll/Morphs/A/../b%20b/SAME.dsf#Same",
                                "\\\\data\\\\Nord\\\\Doll\\\\Morphs\\\\B B\\\\Same.dsf#Same"};
    for (const std::string& url : urls) {
        dzScene->clear();
        writeShape("Driven", Control("Driven", Driven("Doll:#Driven?value", "Doll:" + url + "?value", "2")));
        const std::string worn = R"(, "modifiers": [{"id": "s", "parent": "#Doll-1", "url": ")" + url +
                                 R"(", "channel": {"current_value": 0.5}}])";
        ASSERT_TRUE(load("People/Same.duf", Scene(Instance(), worn))) << url;
        const DzNode& figure = *dzScene->getPrimarySelection();
        EXPECT_EQ(ValueIn(figure, "Same"), 0.0) << url;
        EXPECT_EQ(ValueIn(figure, "Same 2"), 0.5) << url;
        EXPECT_EQ(ValueIn(figure, "Driven"), 1.0) << url;
    }
}

TEST_F(Spelling, of_a_shared_figure_does_not_matter)
{
    write("data/Nord/Doll 8_1/Doll.dsf", File(Figure(), "figure"));
    int number = 0;
    for (const char* const path : spellings) {
        const std::string name = "S" + std::to_string(number++);
        writeShape(name, controlOf(path + std::string("#Doll"), name));
    }
    ASSERT_TRUE(load("People/Shared.duf", Scene(Instance("", "", "", "data//Nord/Doll 8_1/Doll.dsf"))));
    for (int i = 0; i < number; ++i)
        EXPECT_NE(DialIn(*dzScene->getPrimarySelection(), ("S" + std::to_string(i)).c_str()), nullptr)
            << spellings[i];
}

TEST_F(Spelling, of_what_lies_beside_a_file_does_not_matter_either)
{
    write("People/Parts/Hat.dsf", File(hatMembers("Hat", "Brim"), "prop"));
    for (const char* const path :
         {"Parts/Hat.dsf", "./Parts//Hat.dsf", "Parts\\\\Hat.dsf", "parts/x/../HAT.dsf"}) {
        dzScene->clear();
        ASSERT_TRUE(load("People/Beside.duf", Scene(std::string(R"({"id": "hat", "url": ")") + path +
                                                    R"(#Hat", "label": "Hat"})")))
            << path << log().toStdString();
        const DzNode* const hat = dzScene->findNodeByLabel(QStringLiteral("Hat"));
        ASSERT_NE(hat, nullptr) << path;
        EXPECT_EQ(hat->getAssetUri().toString(), QStringLiteral("/People/Parts/Hat.dsf#Hat")) << path;
    }
}

TEST_F(Spelling, that_climbs_out_of_the_library_names_nothing)
{
    WriteBytes(_library.parent_path() / "Outside.dsf", File(Figure(), "figure"));
    for (const char* const path : {"/../Outside.dsf", "/data/../../Outside.dsf", "..\\\\Outside.dsf"})
        EXPECT_FALSE(load("People/Out.duf", Scene(Instance("", "", "", path)))) << path;
    EXPECT_EQ(timesLogged("is in no content library"), 3) << log().toStdString();
}

TEST_F(Spelling, leads_into_products_of_the_cloud_or_past_them)
{
    const std::filesystem::path product = _library / "data/cloud/1_4711/data/Nord";
    std::filesystem::create_directories(product);
    std::filesystem::rename(_library / "data/Nord/Doll", product / "Doll");
    write("data/Nord/Doll/Morphs/Plain.dsf", ModifierFile(Morph("Plain", 1, 1.0)));
    write("data/cloud/1_4712/data/Nord/Doll/Morphs/Other.dsf", ModifierFile(Morph("Other", 1, 2.0)));
    std::string cloud = Control(
        "Cloud", Driven("Doll:#Cloud?value",
                        "Doll:/data/cloud/1_4712/data/Nord/Doll/Morphs/Other.dsf#Other?value", "0.5"));
    cloud.replace(cloud.find("/data/Nord"), 10, "/data/cloud/1_4711/data/Nord");
    write("data/cloud/1_4711/data/Nord/Doll/Morphs/Cloud.dsf", ModifierFile(cloud));
    const char* const worn = R"(, "modifiers": [
        {"id": "p", "parent": "#Doll-1", "url": "/data/Nord/Doll/Morphs/Plain.dsf#Plain",
         "channel": {"current_value": 1}},
        {"id": "o", "parent": "#Doll-1", "url": "/data/Nord/Doll/Morphs/Other.dsf#Other",
         "channel": {"current_value": 1}}])";
    for (const char* const path : {"/data/Nord/Doll/Doll.dsf", "/data/cloud/1_4711/data/Nord/Doll/Doll.dsf",
                                   "data/CLOUD/1_4711/data/Nord/Doll/Doll.dsf"}) {
        dzScene->clear();
        ASSERT_TRUE(load("People/Cloud.duf", Scene(Instance("", "", "", path), worn))) << path;
        const DzNode& figure = *dzScene->getPrimarySelection();
        EXPECT_EQ(figure.getAssetUri().toString(), QStringLiteral("/data/Nord/Doll/Doll.dsf#Doll")) << path;
        ExpectAt(VertexAt(figure, 1), 5, 3, 0);
        EXPECT_EQ(ValueIn(figure, "Cloud"), 0.5) << path;
        EXPECT_EQ(dzScene->getNumNodes(), 3) << path;
    }
    EXPECT_FALSE(logged("in no content library")) << log().toStdString();
}
