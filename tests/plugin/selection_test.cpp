// Which figures take part in a conversion.
// SPDX-License-Identifier: MIT

#include "tests/host/host_fixture.h"
#include "tests/plugin/mini_scene.h"

#include "dzbone.h"
#include "dzelement.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzintproperty.h"
#include "dzmorph.h"
#include "dzobject.h"
#include "dzproperty.h"
#include "dzuri.h"
#include "gnt_convert-figure.h"
#include "ks_daz-helpers.h"
#include "ks_exception.h"
#include "ks_morphlist.h"
#include "ks_property-setting.h"
#include "tests/shared/throws.h"

#include <tuple>

namespace {

class SelectionTest : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        AddMiniLibrary();
    }

    static void select(std::initializer_list<DzNode*> nodes)
    {
        dzScene->selectAllNodes(false);
        for (DzNode* const node : nodes)
            node->select(true);
    }

    static std::string messageOfSelection()
    {
        try {
            GntConverter::FindSourceAndTargetInSceneSelected_X();
            return "nothing was refused";
        } catch (const kst::Exception& error) {
            return error.what();
        }
    }
};

const char* const genesis3Male = "People/Genesis 3 Male/Genesis 3 Male.duf";
const char* const genesis8 = "People/Genesis 8 Female/Developer Kit/Genesis 8 Female Dev Load.duf";
const char* const genesis9 = "People/Genesis 9/Genesis 9.duf";
const char* const twoFigures =
    "you must select two figures (a \xE2\x80\x9Csource\xE2\x80\x9D Genesis 8 or 8.1 and a "
    "\xE2\x80\x9Ctarget\xE2\x80\x9D Genesis 9) in the scene";

TEST_F(SelectionTest, takes_source_and_target_in_any_order)
{
    DzFigure& source = LoadMini(genesis3Male);
    DzFigure& target = LoadMini(genesis9);
    for (const bool sourceFirst : {true, false}) {
        select({sourceFirst ? &source : &target, sourceFirst ? &target : &source});
        const std::shared_ptr<GntParams> params = GntConverter::FindSourceAndTargetInSceneSelected_X();
        EXPECT_EQ(&params->figSource, &source);
        EXPECT_EQ(&params->figTarget, &target);
        EXPECT_EQ(params->cloneShape, GntCloneShape::Genesis3Male);
        EXPECT_EQ(params->iSubdLevelSource, 1);
    }
}

TEST_F(SelectionTest, takes_a_bone_for_its_figure)
{
    DzFigure& source = LoadMini(genesis8);
    DzFigure& target = LoadMini(genesis9);
    select({source.findBone(QLatin1String("head")), &target});
    EXPECT_EQ(&GntConverter::FindSourceAndTargetInSceneSelected_X()->figSource, &source);
}

TEST_F(SelectionTest, maps_genesis_8_1_to_the_genesis_8_clone)
{
    DzFigure& source = LoadMini(genesis8);
    source.setAssetUri(DzUri(
        QLatin1String("/data/Daz%203D/Genesis%208/Female%208_1/Genesis8_1Female.dsf#Genesis8_1Female")));
    DzFigure& target = LoadMini(genesis9);
    select({&source, &target});
    EXPECT_EQ(GntConverter::FindSourceAndTargetInSceneSelected_X()->cloneShape,
              GntCloneShape::Genesis8Female);
}

TEST_F(SelectionTest, asks_for_two_figures_when_the_count_is_wrong)
{
    EXPECT_EQ(messageOfSelection(), twoFigures);
    DzFigure& target = LoadMini(genesis9);
    EXPECT_EQ(messageOfSelection(), twoFigures);
    DzFigure& other = LoadMini(genesis9);
    select({&target, &other});
    EXPECT_EQ(messageOfSelection(), twoFigures);
}

TEST_F(SelectionTest, names_a_node_of_no_known_kind)
{
    DzFigure& target = LoadMini(genesis9);
    auto* const prop = new DzNode;
    prop->setLabel(QLatin1String("Chair"));
    dzScene->addNode(prop);
    select({&target, prop});
    EXPECT_EQ(messageOfSelection(), "selected figure \xE2\x80\x9C"
                                    "Chair\xE2\x80\x9D is not a Genesis 3, 8, 8.1, or 9 figure");
}

TEST_F(SelectionTest, names_a_bone_that_belongs_to_no_figure)
{
    DzFigure& source = LoadMini(genesis8);
    DzFigure& target = LoadMini(genesis9);
    auto* const bone = new DzBone;
    bone->setLabel(QLatin1String("Lost Head"));
    bone->setAssetUri(source.getAssetUri()); // whatever it came from, it is no figure
    dzScene->addNode(bone);
    ASSERT_EQ(bone->getSkeleton(), nullptr);
    select({bone, &source, &target});
    EXPECT_EQ(messageOfSelection(),
              "selected figure " + Quoted("Lost Head") + " is not a Genesis 3, 8, 8.1, or 9 figure");
}

TEST_F(SelectionTest, names_each_dial_that_the_target_lacks)
{
    const std::string noProperty =
        "node " + Quoted("Genesis9") + " (" + Quoted("Genesis 9") + ") has no property named ";
    const std::pair<const char*, std::string> lacking[] = {
        {"CloneGenesis8Female", noProperty + Quoted("CloneGenesis8Female")},
        {"BaseFeminine_figure_ctrl_Character", noProperty + Quoted("BaseFeminine_figure_ctrl_Character")},
        {"BaseMasculine_figure_ctrl_Character", noProperty + Quoted("BaseMasculine_figure_ctrl_Character")},
        {"body_bs_ProportionHeight",
         "cannot find morph " + Quoted("body_bs_ProportionHeight") + " in node " + Quoted("Genesis 9")},
    };
    for (const auto& [name, message] : lacking) {
        SetUp();
        DzFigure& source = LoadMini(genesis8);
        DzFigure& target = LoadMini(genesis9);
        select({&source, &target});
        kst::daz::FindProperty(target, kst::daz::PropertyLocation::Modifiers, name, true)
            ->getOwner()
            ->setName(QLatin1String("renamed"));
        EXPECT_EQ(messageOfSelection(), message);
    }
}

TEST_F(SelectionTest, refuses_a_target_with_a_morph_of_two_dials)
{
    DzFigure& source = LoadMini(genesis8);
    DzFigure& target = LoadMini(genesis9);
    select({&source, &target});
    kst::MorphList::FindMorph_X(target, "CloneGenesis3Male") // none that this conversion uses
        .addProperty(new DzFloatProperty(QStringLiteral("Second"), true, false));
    EXPECT_EQ(messageOfSelection(), "expected modifier to have exactly one property");
}

TEST_F(SelectionTest, names_what_a_figure_without_geometry_lacks)
{
    DzFigure& stock = LoadMini(genesis8);
    DzFigure& target = LoadMini(genesis9);
    auto* const bare = new DzFigure;
    bare->setName(QLatin1String("Bare"));
    bare->setLabel(QLatin1String("Bare One"));
    bare->setAssetUri(stock.getAssetUri());
    dzScene->addNode(bare);
    select({bare, &target});
    EXPECT_EQ(messageOfSelection(),
              "node " + Quoted("Bare") + " (" + Quoted("Bare One") + ") has no DzObject");
    bare->setAssetUri(target.getAssetUri());
    select({&stock, bare});
    EXPECT_EQ(messageOfSelection(),
              "cannot find morph " + Quoted("body_bs_ProportionHeight") + " in node " + Quoted("Bare One"));
    bare->setObject(new DzObject);
    bare->setAssetUri(stock.getAssetUri());
    select({bare, &target});
    EXPECT_EQ(messageOfSelection(), "node " + Quoted("Bare One") + " has no DzShape");
}

TEST_F(SelectionTest, names_a_node_that_is_no_figure_but_comes_from_one)
{
    DzFigure& source = LoadMini(genesis8);
    DzFigure& target = LoadMini(genesis9);
    auto* const prop = new DzNode;
    prop->setLabel(QLatin1String("Copy"));
    dzScene->addNode(prop);
    prop->setAssetUri(source.getAssetUri());
    select({prop, &target});
    EXPECT_EQ(messageOfSelection(), "node " + Quoted("Copy") + " is not a DzFigure");
    prop->setAssetUri(target.getAssetUri());
    select({&source, prop});
    EXPECT_EQ(messageOfSelection(), "node " + Quoted("Copy") + " is not a DzFigure");
}

TEST_F(SelectionTest, needs_no_clone_dial_of_another_generation)
{
    DzFigure& source = LoadMini(genesis8);
    DzFigure& target = LoadMini(genesis9);
    select({&source, &target});
    kst::daz::FindProperty(target, kst::daz::PropertyLocation::Modifiers, "CloneGenesis3Male", true)
        ->getOwner()
        ->setName(QLatin1String("renamed"));
    EXPECT_NE(GntConverter::FindSourceAndTargetInSceneSelected_X(), nullptr);
}

TEST_F(SelectionTest, maps_each_kind_of_source_to_its_clone)
{
    const std::tuple<const char*, GntCloneShape, std::string_view> kinds[] = {
        {"/data/DAZ%203D/Genesis%203/Female/Genesis3Female.dsf#Genesis3Female", GntCloneShape::Genesis3Female,
         "CloneGenesis3Female"},
        {"/data/Daz%203D/Genesis%208/Female/Genesis8Female.dsf#Genesis8Female", GntCloneShape::Genesis8Female,
         "CloneGenesis8Female"},
        {"/data/Daz%203D/Genesis%208/Female%208_1/Genesis8_1Female.dsf#Genesis8_1Female",
         GntCloneShape::Genesis8Female, "CloneGenesis8Female"},
        {"/data/DAZ%203D/Genesis%203/Male/Genesis3Male.dsf#Genesis3Male", GntCloneShape::Genesis3Male,
         "CloneGenesis3Male"},
        {"/data/Daz%203D/Genesis%208/Male/Genesis8Male.dsf#Genesis8Male", GntCloneShape::Genesis8Male,
         "CloneGenesis8Male"},
        {"/DATA/daz%203d/genesis%208/male%208_1/genesis8_1male.dsf#GENESIS8_1MALE",
         GntCloneShape::Genesis8Male, "CloneGenesis8Male"},
    };
    DzFigure& source = LoadMini(genesis8);
    DzFigure& target = LoadMini(genesis9);
    select({&source, &target});
    for (const auto& [uri, cloneShape, dial] : kinds) {
        source.setAssetUri(DzUri(QLatin1String(uri)));
        const std::shared_ptr<GntParams> params = GntConverter::FindSourceAndTargetInSceneSelected_X();
        EXPECT_EQ(params->cloneShape, cloneShape) << uri;
        EXPECT_EQ(GntClonePropertyName(cloneShape), dial);
        EXPECT_EQ(&params->settingCloneShape->getProperty(), params->findPropertyInTarget(dial)) << uri;
    }
    EXPECT_EQ(static_cast<int>(GntCloneShape::Genesis3Female), 0);
    EXPECT_EQ(static_cast<int>(GntCloneShape::Genesis3Male), 1);
    EXPECT_EQ(static_cast<int>(GntCloneShape::Genesis8Female), 2);
    EXPECT_EQ(static_cast<int>(GntCloneShape::Genesis8Male), 3);
}

TEST_F(SelectionTest, looks_for_a_dial_without_a_name_for_no_known_clone)
{
    const auto unknown = static_cast<GntCloneShape>(4);
    EXPECT_EQ(GntClonePropertyName(unknown), "");
    EXPECT_FALSE(GntNeedsThighPose(unknown));
    DzFigure& source = LoadMini(genesis8);
    DzFigure& target = LoadMini(genesis9);
    DzFloatProperty& height = kst::MorphList::FindMorphProperty_X(target, "body_bs_ProportionHeight");
    EXPECT_EQ(MessageOf([&] { GntParams(source, 1, unknown, target, height); }),
              "node " + Quoted("Genesis9") + " (" + Quoted("Genesis 9") + ") has no property named " +
                  Quoted(""));
}

TEST_F(SelectionTest, names_an_unknown_figure_even_when_the_count_is_wrong_too)
{
    DzFigure& older = LoadMini(genesis8);
    older.setLabel(QLatin1String("Old"));
    older.setAssetUri(DzUri(QLatin1String("/data/DAZ%203D/Genesis%202/Female/Genesis2Female.dsf#Genesis2")));
    select({&older});
    EXPECT_EQ(messageOfSelection(),
              "selected figure " + Quoted("Old") + " is not a Genesis 3, 8, 8.1, or 9 figure");
}

TEST_F(SelectionTest, takes_no_third_figure)
{
    DzFigure& source = LoadMini(genesis8);
    DzFigure& other = LoadMini(genesis3Male);
    DzFigure& target = LoadMini(genesis9);
    DzFigure& otherTarget = LoadMini(genesis9);
    select({&source, &other});
    EXPECT_EQ(messageOfSelection(), twoFigures);
    select({&source, &other, &target});
    EXPECT_EQ(messageOfSelection(), twoFigures);
    select({&source, &target, &otherTarget});
    EXPECT_EQ(messageOfSelection(), twoFigures);
}

TEST_F(SelectionTest, changes_nothing_in_the_scene)
{
    DzFigure& source = LoadMini(genesis8);
    DzFigure& target = LoadMini(genesis9);
    const Recorder recorder;
    select({&source});
    EXPECT_EQ(messageOfSelection(), twoFigures);
    select({&source, &target});
    GntConverter::FindSourceAndTargetInSceneSelected_X();
    EXPECT_EQ(recorder.lines, (std::vector<std::string>{"select Genesis 8 Female", "select Genesis 8 Female",
                                                        "select Genesis 9"}))
        << "what the test itself selects";
}

TEST_F(SelectionTest, takes_the_subdivision_level_of_that_moment)
{
    DzFigure& source = LoadMini(genesis8);
    DzFigure& target = LoadMini(genesis9);
    select({&source, &target});
    DzIntProperty& level = *kst::daz::FindSubdivisionLevelIntProperty(source, true);
    level.setValue(2);
    const std::shared_ptr<GntParams> params = GntConverter::FindSourceAndTargetInSceneSelected_X();
    level.setValue(1);
    EXPECT_EQ(params->iSubdLevelSource, 2);
}

TEST_F(SelectionTest, gives_the_target_dials_themselves_and_no_copies)
{
    DzFigure& source = LoadMini(genesis8);
    DzFigure& target = LoadMini(genesis9);
    select({&source, &target});
    const std::shared_ptr<GntParams> params = GntConverter::FindSourceAndTargetInSceneSelected_X();
    const std::pair<kst::FloatPropertySetting*, const char*> settings[] = {
        {params->settingCloneShape.get(), "CloneGenesis8Female"},
        {params->settingBaseFeminine.get(), "BaseFeminine_figure_ctrl_Character"},
        {params->settingBaseMasculine.get(), "BaseMasculine_figure_ctrl_Character"},
        {params->settingProportionHeight.get(), "body_bs_ProportionHeight"}};
    for (const auto& [setting, name] : settings) {
        DzFloatProperty& dial = kst::MorphList::FindMorphProperty_X(target, name);
        EXPECT_EQ(&setting->getProperty(), &dial) << name;
    }
    EXPECT_EQ(&params->propTargetHeight, &params->settingProportionHeight->getProperty());
}

} // namespace
