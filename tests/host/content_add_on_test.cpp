// Files that a character wants to be loaded with it.
// SPDX-License-Identifier: MIT

#include "dzbone.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzscene.h"
#include "tests/host/foreign_scene.h"

namespace {

using namespace doll;

class AddOns : public ForeignScene {
protected:
    /// A character whose add-ons are wrapped as settings are.
    bool openWith(const std::string& paths, const std::string& script = "data/x.dse")
    {
        return load("People/Doll.duf",
                    Scene(Instance(), R"(, "extra": [{"type": "scene_post_load_script", "script": ")" +
                                          script + R"(", "settings": {"PostLoadAddons": {"value": {)" +
                                          paths + "}}}}]"));
    }
    static std::string addOn(const std::string& slot, const std::string& path)
    {
        return "\"" + slot +
               R"(": {"type": "settings", "value": {"AssetFile": {"type": "string", "value": ")" + path +
               "\"}}}";
    }
    static DzSkeleton* find(const char* label)
    {
        return qobject_cast<DzSkeleton*>(dzScene->findNodeByLabel(QString::fromUtf8(label)));
    }
};

} // namespace

TEST_F(AddOns, are_found_however_deep_their_settings_lie)
{
    writeShirt();
    write("Clothes/Shirt.duf", Scene(shirt(R"(, "conform_target": "name://@selection:")")));
    std::string before, behind;
    for (int level = 0; level < 100; ++level) {
        before += R"("Set": {"type": "settings", "value": {)";
        behind += "}}";
    }
    ASSERT_TRUE(openWith(before + addOn("Top", "/Clothes/Shirt.duf") + behind));
    EXPECT_TRUE(find("Shirt"));
}

TEST_F(AddOns, that_are_worn_follow_the_figure)
{
    writeShirt();
    write("Clothes/Shirt.duf", Scene(shirt(R"(, "conform_target": "name://@selection:")")));
    ASSERT_TRUE(openWith(addOn("Top", "/Clothes/Shirt.duf")));
    DzSkeleton* const figure = find("Doll");
    ASSERT_TRUE(figure && find("Shirt"));
    EXPECT_EQ(find("Shirt")->getFollowTarget(), figure);
    EXPECT_EQ(dzScene->getPrimarySelection(), figure);
    EXPECT_EQ(dzScene->getNumSelectedNodes(), 1);
    EXPECT_TRUE(logged("Doll.duf: 1 file is loaded with it, such as Shirt.duf")) << log().toStdString();
}

TEST_F(AddOns, that_are_figures_by_themselves_are_fitted)
{
    write("data/Nord/Shirt/Shirt.dsf", File(Figure(), "figure"));
    ASSERT_TRUE(openWith(addOn("Top", "data/Nord//Shirt/Shirt.dsf")));
    ASSERT_EQ(dzScene->getNumSkeletons(), 2);
    DzSkeleton* const figure = qobject_cast<DzSkeleton*>(dzScene->getPrimarySelection());
    DzSkeleton* const part =
        dzScene->getSkeleton(0) == figure ? dzScene->getSkeleton(1) : dzScene->getSkeleton(0);
    ASSERT_NE(figure, nullptr);
    EXPECT_EQ(part->getFollowTarget(), figure);
    BoneOf(*figure, "hand")->getZRotControl()->setValue(30.0f);
    EXPECT_EQ(BoneOf(*part, "hand")->getZRotControl()->getValue(), 30.0f);
}

TEST_F(AddOns, that_are_presets_are_applied_to_the_figure)
{
    write("Poses/Wave.duf", File(R"("scene": {"animations": [
        {"url": "name://@selection/hand:?rotation/z/value", "keys": [[0, 40]]}]})",
                                 "preset_pose"));
    ASSERT_TRUE(openWith(addOn("Pose", "/Poses/Wave.duf")));
    EXPECT_EQ(BoneOf(*dzScene->getPrimarySelection(), "hand")->getZRotControl()->getValue(), 40.0f);
}

TEST_F(AddOns, that_cannot_be_had_are_told_and_the_others_come)
{
    writeShirt();
    write("Clothes/Shirt.duf", Scene(shirt("")));
    write("Clothes/Broken.duf", "{ \"file_version\"");
    ASSERT_TRUE(openWith(addOn("a", "/Clothes/Hat.duf") + "," + addOn("b", "/Clothes/Broken.duf") + "," +
                         addOn("c", "/Clothes/Shirt.duf")));
    EXPECT_TRUE(logged(
        "Doll.duf: 1 file is to be loaded with it and in no content library, such as /Clothes/Hat.duf"))
        << log().toStdString();
    EXPECT_TRUE(logged("Broken.duf: ends too early")) << log().toStdString();
    ASSERT_NE(find("Shirt"), nullptr);
    EXPECT_EQ(find("Shirt")->getFollowTarget(), find("Doll"));
}

TEST_F(AddOns, that_name_each_other_are_loaded_once)
{
    writeShirt();
    const std::string back = R"(, "extra": {"PostLoadAddons": ["/People/Doll.duf", "/Clothes/Shirt.duf"]})";
    write("Clothes/Shirt.duf", Scene(shirt(""), back));
    ASSERT_TRUE(openWith(addOn("Top", "/Clothes/Shirt.duf")));
    EXPECT_EQ(dzScene->getNumSkeletons(), 2);
}

TEST_F(AddOns, may_be_lists_of_further_ones)
{
    writeShirt();
    write("Clothes/Shirt.duf", Scene(shirt("")));
    write("Clothes/Set.duf", File(R"("scene": {"extra": {"PostLoadAddons": ["/Clothes/Shirt.duf"]}})"));
    ASSERT_TRUE(openWith(addOn("Top", "/Clothes/Set.duf")));
    EXPECT_NE(find("Shirt"), nullptr) << log().toStdString();
}

TEST_F(AddOns, leave_scripts_alone_and_say_so)
{
    ASSERT_TRUE(openWith("", "/data/Nord/Load%20All.DSE"));
    EXPECT_TRUE(logged("Doll.duf: kept for saving and without effect here: 1 script to be run after loading, "
                       "such as /data/Nord/Load All.DSE"))
        << log().toStdString();
}

TEST_F(AddOns, are_not_any_files_that_a_scene_speaks_of)
{
    writeShirt();
    write("Clothes/Shirt.duf", Scene(shirt("")));
    ASSERT_TRUE(load("People/Doll.duf",
                     Scene(Instance(), R"(, "extra": [{"type": "notes", "from": "/Clothes/Shirt.duf"}])")));
    EXPECT_EQ(dzScene->getNumSkeletons(), 1);
}
