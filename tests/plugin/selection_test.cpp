// Which figures take part in a conversion.
// SPDX-License-Identifier: MIT

#include "tests/host/host_fixture.h"
#include "tests/plugin/mini_scene.h"

#include "dzbone.h"
#include "dzelement.h"
#include "dzfigure.h"
#include "dzproperty.h"
#include "dzuri.h"
#include "plugin/gnt_convert-figure.h"
#include "shared/ks_daz-helpers.h"
#include "shared/ks_exception.h"

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

TEST_F(SelectionTest, names_the_dial_that_the_target_lacks)
{
    DzFigure& source = LoadMini(genesis8);
    DzFigure& target = LoadMini(genesis9);
    select({&source, &target});
    kst::daz::FindProperty(target, kst::daz::PropertyLocation::Modifiers,
                           "BaseFeminine_figure_ctrl_Character", true)
        ->getOwner()
        ->setName(QLatin1String("renamed"));
    EXPECT_EQ(messageOfSelection(),
              "node \xE2\x80\x9CGenesis9\xE2\x80\x9D (\xE2\x80\x9CGenesis 9\xE2\x80\x9D) has no "
              "property named \xE2\x80\x9C"
              "BaseFeminine_figure_ctrl_Character\xE2\x80\x9D");
}

} // namespace
