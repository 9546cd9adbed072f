// Edits of links, dials' properties and displacements, and edits that change nothing.
// SPDX-License-Identifier: MIT

#include "dzerclink.h"
#include "dznode.h"
#include "dzobject.h"
#include "figure/deltas_access.h"
#include "scene/undo_recording.h"
#include "tests/host/undo_fixture.h"

#include <functional>
#include <new>

namespace {

class UndoEdits : public UndoTest {
protected:
    void SetUp() override
    {
        UndoTest::SetUp();
        figure = AddNode("Figure");
        figure->setObject(new DzObject);
        height = AddDial(*figure, "Height");
        width = AddDial(*figure, "Width");
        depth = AddDial(*figure, "Depth");
        height->setSensitivity(0.5f);
        link = new DzERCLink(width, 0.5, 0.25);
        height->insertController(link);
        EndStep();
        dzUndoStack->clear();
    }

    /// Of work that is not to be a step.
    void expectNoStep(const std::function<void()>& work)
    {
        const std::string before = SceneText();
        work();
        EndStep();
        EXPECT_FALSE(dzUndoStack->canUndo()) << dzUndoStack->getUndoCaption().toStdString();
        EXPECT_EQ(SceneText(), before);
    }

    DzNode* figure = nullptr;
    DzFloatProperty *height = nullptr, *width = nullptr, *depth = nullptr;
    DzERCLink* link = nullptr;
};

} // namespace

TEST_F(UndoEdits, that_set_what_is_there_are_no_steps)
{
    expectNoStep([&] {
        height->setIsFavorite(height->isFavorite());
        height->setIsUserProperty(height->isUserProperty());
        height->setCanAnimate(height->canAnimate());
        height->setCanAutoFollow(height->canAutoFollow());
        height->setIsManipulator(height->isManipulator());
        height->setRegion(height->getRegion());
        height->setDoubleDefaultValue(height->getDoubleDefaultValue());
        height->setDisplayAsPercent(height->getDisplayAsPercent());
        height->setSensitivity(height->getSensitivity());
        link->setType(DzERCLink::ERCDeltaAdd);
        link->setScalar(0.5);
        link->setAddend(0.25);
        link->setProperty(width);
        link->setKeyInterpolation(DzERCLink::LINEAR_INTERP);
        figure->setRotationOrder(figure->getRotationOrder());
        figure->setInheritsScale(figure->inheritsScale());
    });
}

TEST_F(UndoEdits, that_drag_a_slider_back_to_where_it_was_are_no_steps)
{
    expectNoStep([&] {
        width->beginEdit();
        for (const float value : {0.1f, 0.7f, 0.0f}) {
            width->setValue(value);
            EndStep();
        }
        width->finishEdit();
    });
}

TEST_F(UndoEdits, that_come_to_nothing_leave_what_can_be_done_again)
{
    width->setValue(0.5f);
    EndStep();
    ASSERT_TRUE(dzUndoStack->undo());
    dzUndoStack->beginHold();
    width->setValue(0.75f);
    width->setValue(0.0f);
    dzUndoStack->accept(QStringLiteral("Nothing"));
    EXPECT_FALSE(dzUndoStack->canUndo());
    EXPECT_TRUE(dzUndoStack->redo());
    EXPECT_EQ(width->getValue(), 0.5f);
}

TEST_F(UndoEdits, that_bring_one_dial_back_and_not_the_other_are_one_step)
{
    expectStep("Set Width and 1 More", [&] {
        dzUndoStack->beginHold();
        width->setValue(0.75f);
        {
            dzUndoStack->beginHold();
            width->setValue(0.25f);
            dzUndoStack->accept();
        }
        depth->setValue(0.5f);
        width->setValue(0.0f);
        dzUndoStack->accept();
    });
}

TEST_F(UndoEdits, of_what_drives_a_link_are_taken_back_among_its_other_links)
{
    // The link stands between others, on both sides.
    height->insertController(new DzERCLink(depth, 2.0, 0.0));
    depth->insertController(new DzERCLink(width, 3.0, 0.0));
    width->setValue(0.5f);
    depth->setValue(0.125f);
    EndStep();
    dzUndoStack->clear();
    expectStep("Unlink Height and 1 More", [&] { link->setProperty(depth); });
    EXPECT_EQ(link->getProperty(), depth);
    EXPECT_EQ(height->getController(0), link);
    expectStep("Unlink Height and 1 More", [&] { link->setProperty(nullptr); });
    dzUndoStack->clear(); // the link is not the steps' to let go of
    EXPECT_EQ(height->getController(0), link);
}

TEST_F(UndoEdits, of_a_links_keys_are_taken_back)
{
    width->setValue(0.25f);
    EndStep();
    expectStep("Change the Link of Height", [&] {
        link->setType(DzERCLink::ERCKeyed);
        link->addKeyValue(0.0, 0.1);
        link->addKeyValue(1.0, 0.7, 0.5, 0.25, -0.5);
    });
    expectStep("Change the Link of Height", [&] { link->addKeyValue(0.5, 0.9); });
    expectStep("Change the Link of Height", [&] { link->setKeyInterpolation(DzERCLink::TCB_INTERP); });
}

TEST_F(UndoEdits, of_displacements_in_place_are_taken_back)
{
    DzMorph* const morph = NewMorph("Wide", 3);
    figure->getObject()->addModifier(morph);
    EndStep();
    DzMorphDeltas& deltas = *morph->getDeltas();
    const char* const caption = "Change Morph Wide";
    expectStep(caption, [&] { deltas.addDelta(1, DzVec3(0.1f, 0.0f, -0.3f)); });
    expectStep(caption, [&] { deltas.setDelta(0, DzVec3(0.0f, 0.7f, 0.0f)); });
    expectStep(caption, [&] { deltas.removeVertex(3); });
    expectStep(caption, [&] {
        for (int i = 0; i < 100; ++i)
            deltas.addDelta(i, DzVec3(float(i), 0.0f, 0.0f));
    });
    expectStep(caption, [&] { deltas.removeAllDeltas(); });
}

TEST_F(UndoEdits, of_displacements_that_two_morphs_share_are_taken_back)
{
    DzMorph* const gone = NewMorph("Gone", 3);
    DzMorphDeltas& deltas = *gone->getDeltas();
    auto* const stays = new DzMorph(&deltas);
    stays->setName(QStringLiteral("Stays"));
    figure->getObject()->addModifier(stays);
    delete gone;
    EndStep();
    expectStep("Change Morph Stays", [&] { deltas.addDelta(1, DzVec3(0.1f, 0.0f, -0.3f)); });
}

TEST_F(UndoEdits, of_displacements_from_a_file_come_back_as_they_were)
{
    auto* const morph = new DzMorph;
    morph->setName(QStringLiteral("Stock"));
    DzMorphDeltas& deltas = *morph->getDeltas();
    int readings = 0;
    openhost::DeltasAccess::setLoader(deltas, [&](base::Diagnostics&) {
        return geometry::SparseDeltas{{5}, {{float(++readings), 0.0f, 0.0f}}};
    });
    figure->getObject()->addModifier(morph);
    EndStep();
    deltas.removeAllDeltas();
    EndStep();
    ASSERT_TRUE(dzUndoStack->undo());
    ASSERT_EQ(deltas.getNumDeltas(), 1);
    EXPECT_EQ(deltas.getDeltaVec(0).m_x, 1.0f) << "what the file holds by now does not count";
}

TEST_F(UndoEdits, of_detail_are_taken_back)
{
    DzMorph* const morph = NewMorph("Wide", 3);
    figure->getObject()->addModifier(morph);
    EndStep();
    DzMorphDeltas& deltas = *morph->getDeltas();
    openhost::DeltasAccess::assignDetail(deltas, {{{{4}, {{0.0f, 0.1f, 0.0f}}}}});
    EndStep();
    ASSERT_TRUE(dzUndoStack->undo());
    EXPECT_TRUE(openhost::DeltasAccess::detail(deltas).empty());
    ASSERT_TRUE(dzUndoStack->redo());
    EXPECT_EQ(openhost::DeltasAccess::detail(deltas).levels.at(0).corners.at(0), 4u);
}

TEST_F(UndoEdits, of_how_a_node_turns_and_grows_and_of_a_region_are_taken_back)
{
    DzNode* const child = AddNode("Child");
    figure->addNodeChild(child);
    EndStep();
    expectStep("Change Child", [&] { child->setRotationOrder(DzRotationOrder::ZYX); });
    expectStep("Change Child", [&] { child->setInheritsScale(false); });
    expectStep("Change Height", [&] { height->setRegion(QStringLiteral("Head")); });
}

TEST_F(UndoEdits, keep_no_memory_of_what_has_only_come)
{
    dzUndoStack->setMeasure([](const QObject&) { return DzUndoStack::mostBytes; });
    for (int i = 0; i < 3; ++i) {
        AddNode("More");
        EndStep();
    }
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(dzUndoStack->undo()) << i;
}

TEST_F(UndoEdits, do_not_take_what_is_made_anew_for_what_went_from_its_place)
{
    alignas(DzFloatProperty) unsigned char place[sizeof(DzFloatProperty)];
    auto* const former = new (place) DzFloatProperty(QStringLiteral("Former"), true, true);
    figure->addProperty(former);
    EndStep();
    figure->removeProperty(former);
    EndStep();
    ASSERT_TRUE(openhost::IsHeldByUndo(*former));
    former->~DzFloatProperty(); // as nobody should
    const auto* const next = new (place) DzFloatProperty(QStringLiteral("Next"), true, true);
    EXPECT_FALSE(openhost::IsHeldByUndo(*next));
    next->~DzFloatProperty();
    EXPECT_TRUE(dzUndoStack->undo());
}
