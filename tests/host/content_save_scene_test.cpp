// Saved scenes come back as they were.
// SPDX-License-Identifier: MIT

#include "dzbasiccamera.h"
#include "dzbone.h"
#include "dzboolproperty.h"
#include "dzerclink.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dzmorphdeltas.h"
#include "tests/host/save_fixture.h"
#include "tests/host/scene_text.h"

namespace {

class SavedScene : public SaveTest {};

} // namespace

TEST_F(SavedScene, comes_back_to_the_last_bit)
{
    for (const bool compress : {false, true}) {
        TestHost().reset();
        use(_library);
        ASSERT_NO_FATAL_FAILURE(makeScene());
        ASSERT_EQ(save("DzSceneAssetFilter", file("All.duf"), compress), 0) << log().toStdString();
        EXPECT_EQ(ReadBytes(file("All.duf")).substr(0, 2) == "\x1F\x8B", compress);
        const std::string before = SceneText();
        ASSERT_TRUE(reload(file("All.duf"))) << log().toStdString();
        EXPECT_EQ(SceneText(), before);
    }
}

TEST_F(SavedScene, is_written_without_a_look_at_displacements_that_are_in_files_of_their_own)
{
    mini::WriteMorph(mini::Morph("Up", 1, {0, 2, 0}), _library);
    const DzFigure* const figure = openMini();
    ASSERT_NE(figure, nullptr);
    const DzMorph* const up = FindMorph(*figure, "Up");
    ASSERT_NE(up, nullptr);
    DialOf(*figure, "Up")->setLabel(QStringLiteral("Upwards")); // which the file is to tell
    ASSERT_EQ(save("DzSceneAssetFilter", file("All.duf")), 0) << log().toStdString();
    EXPECT_NE(ReadBytes(file("All.duf")).find("Upwards"), std::string::npos);
    EXPECT_FALSE(up->getDeltas()->areDeltasLoaded());
}

TEST_F(SavedScene, is_written_again_as_the_same_bytes)
{
    ASSERT_NO_FATAL_FAILURE(makeScene());
    ASSERT_EQ(save("DzSceneAssetFilter", file("First.duf")), 0);
    ASSERT_TRUE(reload(file("First.duf")));
    const std::string loaded = SceneText();
    ASSERT_EQ(save("DzSceneAssetFilter", file("First.duf")), 0);
    const std::string second = untimed(file("First.duf"));
    ASSERT_TRUE(reload(file("First.duf")));
    EXPECT_EQ(SceneText(), loaded);
    ASSERT_EQ(save("DzSceneAssetFilter", file("First.duf")), 0);
    EXPECT_EQ(untimed(file("First.duf")), second);
}

TEST_F(SavedScene, keeps_morphs_that_were_not_looked_at_when_its_file_is_replaced)
{
    DzFigure* const figure = openMini();
    ASSERT_NE(figure, nullptr);
    addMorph(*figure, "Quiet", {{3}, {{0, 0, 9}}});
    ASSERT_EQ(save("DzSceneAssetFilter", file("Own.duf")), 0);
    ASSERT_TRUE(reload(file("Own.duf")));
    makeProp("Sword")->select();
    WriteBytes(file("Own.duf"), "gone");
    auto* const loaded = qobject_cast<DzFigure*>(dzScene->findNodeByLabel(QStringLiteral("Mini")));
    ASSERT_NE(loaded, nullptr);
    ASSERT_NE(DialOf(*loaded, "Quiet"), nullptr);
    DialOf(*loaded, "Quiet")->setValue(1.0f);
    ExpectAt(VertexAt(*loaded, 3), 10, 10, 9);
    EXPECT_TRUE(FindMorph(*loaded, "Quiet")->getAssetUri().isEmpty()) << "no data file has it";
}

TEST_F(SavedScene, keeps_what_was_changed_of_a_dial_at_rest)
{
    DzFigure* const figure = openMini();
    ASSERT_NE(figure, nullptr);
    DzFloatProperty* const up = DialOf(*figure, "Up");
    up->setMinMax(-3.0f, 4.0f);
    up->setPath(QStringLiteral("/Elsewhere"));
    up->setHidden(true);
    DzFloatProperty* const turn = figure->findBone(QStringLiteral("arm"))->getXRotControl();
    turn->setIsClamped(true);
    turn->setMinMax(-5.0f, 5.0f);
    turn->lock(true);
    const std::string before = SceneText();
    ASSERT_EQ(save("DzSceneAssetFilter", file("Dials.duf")), 0);
    ASSERT_TRUE(reload(file("Dials.duf")));
    EXPECT_EQ(SceneText(), before);
}

TEST_F(SavedScene, keeps_dials_and_links_that_were_made_by_hand)
{
    DzFigure* const figure = openMini();
    ASSERT_NE(figure, nullptr);
    auto* const own = new DzFloatProperty(QStringLiteral("Own Dial"), true, true, 0.5f);
    own->setPath(QStringLiteral("/Mine"));
    DzBone* const arm = figure->findBone(QStringLiteral("arm"));
    arm->addProperty(own);
    own->setValue(0.75f);
    DzFloatProperty* const up = DialOf(*figure, "Up");
    up->insertController(new DzERCLink(DzERCLink::ERCDeltaAdd, own, 0.1, 0.0));
    up->insertController(new DzERCLink(DzERCLink::ERCMultiply, DialOf(*figure, "Bend"), 1.0, 0.0));
    auto* const keyed = new DzERCLink(DzERCLink::ERCKeyed, own, 1.0, 0.0);
    keyed->addKeyValue(0.0, 1.0);
    keyed->addKeyValue(1.0, 5.0);
    arm->getYRotControl()->insertController(keyed);
    arm->getXRotControl()->insertController(new DzERCLink(DzERCLink::ERCSubtract, own, 1.0, 3.0));
    DialOf(*figure, "Bend")->setValue(0.5f);
    const double turned = arm->getXRotControl()->getDoubleValue();
    const double raised = up->getDoubleValue();
    EXPECT_EQ(turned, 2.25);
    EXPECT_NE(raised, 0.0);
    ASSERT_EQ(save("DzSceneAssetFilter", file("Links.duf")), 0);
    ASSERT_TRUE(reload(file("Links.duf"))) << log().toStdString();
    auto* const loaded = qobject_cast<DzFigure*>(dzScene->findNodeByLabel(QStringLiteral("Mini")));
    ASSERT_NE(loaded, nullptr);
    const DzBone* const loadedArm = loaded->findBone(QStringLiteral("arm"));
    const auto* const dial =
        qobject_cast<DzFloatProperty*>(loadedArm->findProperty(QStringLiteral("Own Dial")));
    ASSERT_NE(dial, nullptr);
    EXPECT_EQ(dial->getPath(), QStringLiteral("/Mine"));
    EXPECT_EQ(dial->getDoubleDefaultValue(), 0.5);
    EXPECT_EQ(dial->getValue(), 0.75f);
    EXPECT_EQ(DialOf(*loaded, "Up")->getDoubleValue(), raised);
    EXPECT_EQ(DialOf(*loaded, "Up")->getNumControllers(), 2);
    EXPECT_EQ(loadedArm->getYRotControl()->getDoubleValue(), 4.0);
    EXPECT_EQ(loadedArm->getXRotControl()->getDoubleValue(), turned);
    EXPECT_EQ(loadedArm->getZRotControl()->getNumControllers(), 1) << "the data file's own link, once";
}

TEST_F(SavedScene, keeps_the_tension_of_links)
{
    DzFigure* const figure = openMini();
    ASSERT_NE(figure, nullptr);
    DzFloatProperty* const bend = DialOf(*figure, "Bend");
    auto* const keyed = new DzERCLink(DzERCLink::ERCKeyed, bend, 1.0, 0.0);
    keyed->setKeyInterpolation(DzERCLink::TCB_INTERP);
    keyed->addKeyValue(0.0, 0.0);
    keyed->addKeyValue(1.0, 0.4, 0.5, 0.25, -0.5);
    keyed->addKeyValue(2.0, 0.1);
    DialOf(*figure, "Up")->insertController(keyed);
    bend->setValue(0.75f);
    const double raised = DialOf(*figure, "Up")->getDoubleValue();
    ASSERT_EQ(save("DzSceneAssetFilter", file("Tension.duf")), 0);
    EXPECT_FALSE(log().contains(QStringLiteral("cannot be kept"))) << log().toStdString();
    ASSERT_TRUE(reload(file("Tension.duf"))) << log().toStdString();
    const DzNode* const loaded = dzScene->findNodeByLabel(QStringLiteral("Mini"));
    ASSERT_NE(loaded, nullptr);
    EXPECT_GT(raised, 0.1);
    EXPECT_LT(raised, 0.9) << "its limits would hide the curve";
    EXPECT_EQ(DialOf(*loaded, "Up")->getDoubleValue(), raised);
}

TEST_F(SavedScene, keeps_cameras)
{
    auto* const camera = new DzBasicCamera;
    camera->setName(QStringLiteral("Camera 1"));
    camera->setLabel(QStringLiteral("Camera 1"));
    dzScene->addNode(camera);
    camera->getFocalLengthControl()->setValue(80.0f);
    camera->getPerspectiveControl()->setBoolValue(false);
    camera->getZPosControl()->setValue(300.0f);
    const std::string before = SceneText();
    ASSERT_EQ(save("DzSceneAssetFilter", file("Camera.duf")), 0);
    ASSERT_TRUE(reload(file("Camera.duf")));
    EXPECT_EQ(SceneText(), before);
}
