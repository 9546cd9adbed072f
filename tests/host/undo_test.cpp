// Taking back and doing again what was done to the scene.
// SPDX-License-Identifier: MIT

#include "dzundostack.h"

#include "dzaction.h"
#include "dzbone.h"
#include "dzerclink.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dzmorphdeltas.h"
#include "dzobject.h"
#include "dzscript.h"
#include "dzstringproperty.h"
#include "tests/host/undo_fixture.h"

#include <QPointer>

#include <limits>

namespace {

class Undo : public UndoTest {};

DzNode* AddShaped(const char* label)
{
    DzNode* const node = AddNode(label);
    node->setObject(new DzObject);
    EndStep();
    dzUndoStack->clear();
    return node;
}

} // namespace

TEST_F(Undo, takes_back_a_dial_to_the_bit)
{
    DzFloatProperty* const dial = AddDial(*AddNode("Figure"), "Height");
    dial->setDoubleMinMax(-10.0, 10.0);
    dial->setDoubleRawValue(0.1 + 0.2);
    expectStep("Set Height", [&] { dial->setDoubleValue(std::numeric_limits<double>::denorm_min()); });
}

TEST_F(Undo, takes_a_drag_of_a_slider_back_as_one_step)
{
    DzFloatProperty* const dial = AddDial(*AddNode("Figure"), "Height");
    expectStep("Set Height", [&] {
        dial->beginEdit();
        for (int i = 1; i <= 100; ++i) {
            dial->setValue(static_cast<float>(i) / 100.0f);
            EndStep();
        }
        dial->finishEdit();
    });
}

TEST_F(Undo, leaves_no_step_of_a_drag_that_is_cancelled)
{
    DzFloatProperty* const dial = AddDial(*AddNode("Figure"), "Height");
    EndStep();
    dial->setValue(0.3f);
    EndStep();
    const std::string before = SceneText();
    const QString caption = dzUndoStack->getUndoCaption();
    dial->setLabel(QStringLiteral("Size"));
    EndStep();
    dzUndoStack->undo();
    dial->beginEdit();
    dial->setValue(0.9f);
    dial->cancelEdit();
    EXPECT_EQ(SceneText(), before);
    EXPECT_EQ(dzUndoStack->getUndoCaption(), caption);
    EXPECT_EQ(dzUndoStack->getRedoCaption(), QStringLiteral("Rename Size"));
}

TEST_F(Undo, takes_back_places_labels_names_and_what_is_seen)
{
    DzNode* const node = AddNode("Figure");
    expectStep("Set X Translate", [&] { node->getXPosControl()->setValue(12.5f); });
    expectStep("Rename Vera", [&] { node->setLabel(QStringLiteral("Vera")); });
    expectStep("Rename Vera", [&] { node->setName(QStringLiteral("Vera1")); });
    expectStep("Hide Vera", [&] { node->setVisible(false); });
    expectStep("Show Vera", [&] { node->setVisible(true); });
}

TEST_F(Undo, brings_back_the_same_node_in_its_place)
{
    DzNode* const first = AddNode("First");
    DzNode* const second = AddNode("Second", first);
    AddNode("Below", second);
    AddNode("Third", first);
    DzNode* const last = AddNode("Last");
    dzScene->setSelection({last, second}, second);
    const QPointer<DzNode> same(second);
    expectStep("Delete Second", [&] { dzScene->removeNode(second); });
    TestHost().purge();
    dzUndoStack->undo();
    ASSERT_TRUE(same);
    EXPECT_EQ(dzScene->findNodeByLabel(QStringLiteral("Second")), same);
    EXPECT_EQ(dzScene->getPrimarySelection(), same);
}

TEST_F(Undo, ends_the_links_of_what_is_deleted_and_brings_them_back)
{
    DzFloatProperty* const driver = AddDial(*AddNode("Driver"), "Drive");
    DzFloatProperty* const between = AddDial(*AddNode("Between"), "Middle");
    DzFloatProperty* const driven = AddDial(*AddNode("Driven"), "Follow");
    driven->setDoubleMinMax(-100.0, 100.0);
    between->insertController(new DzERCLink(driver, 2.0, 0.0));
    driven->insertController(new DzERCLink(between, 3.0, 0.0));
    driven->insertController(new DzERCLink(driver, 0.5, 0.25));
    driver->setValue(1.0f);
    DzNode* const node = static_cast<DzNode*>(between->getOwner());
    expectStep("Delete Between", [&] { dzScene->removeNode(node); });
    EXPECT_FLOAT_EQ(driven->getValue(), 0.75f);
    dzUndoStack->undo();
    EXPECT_FLOAT_EQ(driven->getValue(), 6.75f);
    expectStep("Change the Link of Follow",
               [&] { static_cast<DzERCLink*>(driven->getController(0))->setScalar(4.0); });
    expectStep("Unlink Follow", [&] {
        driven->deleteController(static_cast<DzNumericController*>(driven->getController(0)));
    });
}

TEST_F(Undo, takes_back_properties_and_their_aliases)
{
    DzNode* const node = AddNode("Figure");
    DzFloatProperty* const dial = AddDial(*node, "Height");
    DzFloatProperty* const other = AddDial(*AddNode("Other"), "Second Height");
    expectStep("Change Second Height", [&] { other->setAliasTarget(dial); });
    expectStep("Remove Height", [&] { node->removeProperty(dial); });
    expectStep("Add Width", [&] { AddDial(*node, "Width"); });
    expectStep("Change Second Height", [&] {
        other->setDoubleMinMax(-3.0, 5.0);
        other->setIsClamped(true);
        other->lock(true);
        other->setHidden(true);
        other->setPath(QStringLiteral("/Actor/Body"));
    });
}

TEST_F(Undo, takes_back_who_hangs_on_whom)
{
    DzNode* const first = AddNode("First");
    DzNode* const second = AddNode("Second");
    DzNode* const child = AddNode("Child", first);
    AddNode("Sibling", first);
    first->getYRotControl()->setValue(33.0f);
    expectStep("Move Child", [&] { second->addNodeChild(child, true); });
    expectStep("Move Child", [&] { second->removeNodeChild(child, true); });
}

TEST_F(Undo, takes_back_who_follows_whom)
{
    auto* const body = new DzFigure;
    auto* const shirt = new DzFigure;
    auto* const coat = new DzFigure;
    for (DzFigure* const figure : {body, shirt, coat}) {
        figure->setLabel(figure == body ? QStringLiteral("Body") : QStringLiteral("Clothes"));
        dzScene->addNode(figure);
    }
    shirt->setFollowTarget(body);
    expectStep("Fit Clothes (2)", [&] { coat->setFollowTarget(body); });
    expectStep("Delete Clothes", [&] { dzScene->removeNode(shirt); });
    EXPECT_EQ(body->getNumFollowSkeletons(), 1);
    dzUndoStack->undo();
    EXPECT_EQ(body->getFollowSkeleton(0), shirt);
    expectStep("Delete Body", [&] { dzScene->removeNode(body); });
}

TEST_F(Undo, takes_back_morphs_with_their_displacements)
{
    DzNode* const node = AddShaped("Figure");
    DzObject& object = *node->getObject();
    expectStep("Create Morph Wide", [&] { object.addModifier(NewMorph("Wide", 3)); });
    expectStep("Create Morph Tall", [&] { object.addModifier(NewMorph("Tall", 4), 0); });
    auto* const wide = static_cast<DzMorph*>(object.findModifier(QStringLiteral("Wide")));
    expectStep("Change Morph Wide", [&] { wide->setDeltas(NewMorph("Other", 5)->getDeltas()); });
    expectStep("Delete Morph Wide", [&] { object.removeModifier(wide); });
    EXPECT_EQ(object.getNumModifiers(), 1);
    dzUndoStack->undo();
    EXPECT_EQ(object.findModifier(QStringLiteral("Wide")), wide);
}

TEST_F(Undo, takes_what_is_loaded_back_as_a_whole)
{
    const int before = dzScene->getNumNodes();
    expectStep("Add Loaded", [&] {
        DzNode* const node = AddNode("Loaded");
        AddDial(*node, "Height")->setValue(0.5f);
        AddNode("Hand", AddNode("Arm", node));
    });
    dzUndoStack->undo();
    EXPECT_EQ(dzScene->getNumNodes(), before);
}

TEST_F(Undo, keeps_nothing_of_what_came_and_went_in_one_step)
{
    DzFloatProperty* const dial = AddDial(*AddNode("Figure"), "Height");
    EndStep();
    QPointer<DzNode> helper;
    expectStep("Set Height", [&] {
        helper = AddNode("Helper");
        AddDial(*helper, "Drive")->setValue(1.0f);
        dial->insertController(new DzERCLink(
            static_cast<DzFloatProperty*>(helper->findProperty(QStringLiteral("Drive"))), 1.0, 0.0));
        dial->setValue(3.0f);
        dzScene->removeNode(helper);
    });
    TestHost().purge();
    EXPECT_FALSE(helper) << "a step holds what it brings back to nobody";
    EXPECT_TRUE(dzUndoStack->undo());
    EXPECT_EQ(dial->getValue(), 0.0f);
}

TEST_F(Undo, lets_go_of_what_no_step_can_bring_back)
{
    const QPointer<DzNode> node(AddNode("Figure"));
    EndStep();
    dzScene->removeNode(node);
    EndStep();
    TestHost().purge();
    EXPECT_TRUE(node);
    dzUndoStack->clear();
    TestHost().purge();
    EXPECT_FALSE(node);
    const QPointer<DzNode> undone(AddNode("Other"));
    EndStep();
    dzUndoStack->undo();
    AddNode("Instead"); // what was taken back is not to be done again any more
    EndStep();
    TestHost().purge();
    EXPECT_FALSE(undone);
}

TEST_F(Undo, holds_are_one_step_or_none)
{
    DzFloatProperty* const dial = AddDial(*AddNode("Figure"), "Height");
    expectStep("Grow", [&] {
        dzUndoStack->beginHold();
        dial->setValue(0.2f);
        dzUndoStack->beginHold();
        dial->setValue(0.4f);
        dzUndoStack->accept(QStringLiteral("Inner"));
        dzUndoStack->accept(QStringLiteral("Grow"));
    });
    const std::string before = SceneText();
    dzUndoStack->beginHold();
    dial->setValue(0.9f);
    dzUndoStack->beginHold();
    dial->setValue(0.1f);
    EXPECT_FALSE(dzUndoStack->undo()) << "while a hold is open";
    EXPECT_TRUE(dzUndoStack->cancel());
    EXPECT_EQ(dial->getValue(), 0.9f);
    dzScene->removeNode(static_cast<DzNode*>(dial->getOwner()));
    EXPECT_TRUE(dzUndoStack->cancel());
    EXPECT_EQ(SceneText(), before);
    EXPECT_FALSE(dzUndoStack->cancel()) << "there is none any more";
}

TEST_F(Undo, records_nothing_unless_somebody_wants_to_take_it_back)
{
    dzUndoStack->setRecording(false);
    DzFloatProperty* const dial = AddDial(*AddNode("Figure"), "Height");
    dial->setValue(0.5f);
    const QPointer<DzNode> node(AddNode("Gone"));
    dzScene->removeNode(node);
    EndStep();
    TestHost().purge();
    EXPECT_FALSE(node);
    EXPECT_FALSE(dzUndoStack->canUndo());
    EXPECT_FALSE(dzUndoStack->undo());
    dzUndoStack->beginHold();
    dial->setValue(0.7f);
    EXPECT_TRUE(dzUndoStack->cancel()) << "a hold can be cancelled all the same";
    EXPECT_EQ(dial->getValue(), 0.5f);
}

TEST_F(Undo, forgets_all_and_says_so_when_something_cannot_be_taken_back)
{
    DzNode* const node = AddNode("Figure");
    EndStep();
    QStringList told;
    QObject::connect(dzUndoStack, &DzUndoStack::restarted, [&](const QString& what) { told.append(what); });
    node->setObject(new DzObject);
    EndStep();
    EXPECT_EQ(told, QStringList(QStringLiteral("Replace the Shape of Figure")));
    EXPECT_FALSE(dzUndoStack->canUndo());
    EXPECT_TRUE(LogText().contains(QStringLiteral("Replace the Shape of Figure")));
    AddNode("Next");
    EndStep();
    delete node;
    EndStep();
    EXPECT_EQ(told.size(), 2);
}

TEST_F(Undo, forgets_the_oldest_of_many_steps)
{
    DzFloatProperty* const dial = AddDial(*AddNode("Figure"), "Height");
    dial->setDoubleMinMax(0.0, 1000.0);
    for (int i = 1; i <= DzUndoStack::mostSteps + 10; ++i) {
        EndStep();
        dial->setValue(static_cast<float>(i));
    }
    int taken = 0;
    while (dzUndoStack->undo())
        ++taken;
    EXPECT_EQ(taken, DzUndoStack::mostSteps);
    EXPECT_EQ(dial->getValue(), 10.0f);
}

TEST_F(Undo, forgets_the_oldest_of_what_takes_much_memory)
{
    dzUndoStack->setMeasure([](const QObject&) { return DzUndoStack::mostBytes / 3; });
    std::vector<QPointer<DzNode>> nodes;
    for (int i = 0; i < 5; ++i)
        nodes.emplace_back(AddNode("Figure"));
    EndStep();
    dzUndoStack->clear();
    for (const QPointer<DzNode>& node : nodes) {
        dzScene->removeNode(node);
        EndStep();
    }
    TestHost().purge();
    EXPECT_FALSE(nodes[0]);
    EXPECT_TRUE(nodes[4]);
    EXPECT_TRUE(dzUndoStack->undo());
    EXPECT_TRUE(dzUndoStack->undo());
    EXPECT_FALSE(dzUndoStack->undo()) << "the step is forgotten";
    EXPECT_EQ(dzUndoStack->getUndoCaption(), QString());
}

TEST_F(Undo, names_several_things_by_the_first_whatever_it_is_called)
{
    DzNode& odd = *AddNode("Figure");
    odd.setLabel(QStringLiteral("%2 of %1"));
    DzNode& other = *AddNode("Other");
    EndStep();
    odd.setVisible(false);
    other.setVisible(false);
    EndStep();
    EXPECT_EQ(dzUndoStack->getUndoCaption().toStdString(), "Hide %2 of %1 and 1 More");
}

TEST_F(Undo, knows_when_the_scene_is_as_it_was_saved)
{
    DzFloatProperty* const dial = AddDial(*AddNode("Figure"), "Height");
    dzUndoStack->setClean();
    EXPECT_TRUE(dzUndoStack->isClean());
    dial->setValue(0.5f);
    EndStep();
    EXPECT_FALSE(dzUndoStack->isClean());
    dzUndoStack->undo();
    EXPECT_TRUE(dzUndoStack->isClean());
    dzScene->clear();
    EXPECT_FALSE(dzUndoStack->isClean());
}

TEST_F(Undo, leaves_alone_what_somebody_put_back_by_hand)
{
    DzNode* const figure = AddShaped("Figure");
    DzNode* const other = AddNode("Other");
    DzObject& object = *figure->getObject();
    DzMorph* const morph = NewMorph("Wide", 3);
    DzFloatProperty* const dial = AddDial(*figure, "Height");
    object.addModifier(morph);
    EndStep();
    object.removeModifier(morph);
    figure->removeProperty(dial);
    dzScene->removeNode(other);
    EndStep();
    object.addModifier(morph);
    figure->addProperty(dial);
    figure->addNodeChild(other);
    EndStep();
    for (int k = 0; k < 2; ++k)
        ASSERT_TRUE(dzUndoStack->undo());
    EXPECT_EQ(morph->getObject(), &object);
    EXPECT_FALSE(other->getNodeParent());
    for (int k = 0; k < 2; ++k)
        ASSERT_TRUE(dzUndoStack->redo());
    dzUndoStack->clear();
    TestHost().purge();
    EXPECT_EQ(object.findModifier(QStringLiteral("Wide")), morph);
    EXPECT_EQ(figure->findProperty(QStringLiteral("Height")), dial);
    EXPECT_EQ(dzScene->findNodeByLabel(QStringLiteral("Other")), other);
}

TEST_F(Undo, leaves_a_link_alone_that_somebody_put_back_by_hand)
{
    DzFloatProperty* const driver = AddDial(*AddNode("Driver"), "Drive");
    DzFloatProperty* const driven = AddDial(*AddNode("Driven"), "Follow");
    auto* const link = new DzERCLink(driver, 2.0, 0.0);
    driven->insertController(link);
    EndStep();
    driven->deleteController(link);
    EndStep();
    driven->insertController(link);
    EndStep();
    dzUndoStack->clear();
    EXPECT_EQ(driven->getController(0), link);
}

TEST_F(Undo, keeps_the_links_of_what_goes_and_comes_back_in_one_step)
{
    DzFloatProperty* const driver = AddDial(*AddNode("Driver"), "Drive");
    DzFloatProperty* const driven = AddDial(*AddNode("Driven"), "Follow");
    driven->insertController(new DzERCLink(driver, 2.0, 0.0));
    driver->setValue(1.0f);
    EndStep();
    DzNode* const node = static_cast<DzNode*>(driver->getOwner());
    dzScene->removeNode(node);
    dzScene->addNode(node);
    EndStep();
    driver->setValue(0.25f);
    EXPECT_FLOAT_EQ(driven->getValue(), 0.5f);
}

TEST_F(Undo, can_be_told_to_forget_while_a_step_is_taken_back)
{
    DzScript script;
    script.setCode(QStringLiteral("Scene.addNode(new DzNode()); UndoStack.beginHold(); UndoStack.accept();"
                                  "Scene.nodeRemoved.connect(function() { UndoStack.clear(); });"
                                  "var undone = UndoStack.undo();"
                                  "[undone, UndoStack.canUndo(), UndoStack.canRedo()].join()"));
    ASSERT_TRUE(script.execute()) << script.errorMessage().toStdString();
    EXPECT_EQ(script.result().toString(), QStringLiteral("true,false,false"));
}

TEST_F(Undo, takes_nothing_back_over_what_cannot_be)
{
    DzNode* const figure = AddShaped("Figure");
    figure->getObject()->addModifier(NewMorph("Wide", 3));
    EndStep();
    dzUndoStack->beginHold();
    figure->setObject(new DzObject);
    dzUndoStack->cancel();
    EXPECT_FALSE(dzUndoStack->canUndo());
}

TEST_F(Undo, leaves_the_holds_of_others_to_them)
{
    DzFloatProperty* const dial = AddDial(*AddNode("Figure"), "Height");
    EndStep();
    dzUndoStack->beginHold();
    dial->setValue(0.5f);
    DzScript script;
    script.setCode(QStringLiteral("[acceptUndo(), cancelUndo()].join()"));
    ASSERT_TRUE(script.execute());
    EXPECT_EQ(script.result().toString(), QStringLiteral("false,false"));
    EXPECT_TRUE(dzUndoStack->cancel());
    EXPECT_EQ(dial->getValue(), 0.0f);
}

TEST_F(Undo, serves_scripts)
{
    DzFloatProperty* const dial = AddDial(*AddNode("Figure"), "Height");
    EndStep();
    dzUndoStack->clear();
    DzScript script;
    script.setCode(QStringLiteral("var dial = Scene.getNode(0).findProperty('Height');"
                                  "beginUndo(); dial.setValue(0.25); var a = acceptUndo('Grow a bit');"
                                  "UndoStack.beginHold(); dial.setValue(0.75); var c = UndoStack.cancel();"
                                  "beginUndo(); dial.setValue(1); cancelUndo();"
                                  "var undone = UndoStack.undo(); var at = dial.getValue();"
                                  "UndoStack.redo();"
                                  "[a, c, undone, at, dial.getValue(), UndoStack.getUndoCaption()].join()"));
    ASSERT_TRUE(script.execute()) << script.errorMessage().toStdString();
    EXPECT_EQ(script.result().toString(), QStringLiteral("true,true,true,0,0.25,Grow a bit"));
    EXPECT_EQ(dial->getValue(), 0.25f);
}

TEST_F(Undo, keeps_what_a_script_made_and_deleted_as_long_as_a_step_may_bring_it_back)
{
    DzScript script;
    script.setCode(QStringLiteral("var node = new DzNode(); node.setLabel('Made'); Scene.addNode(node);"
                                  "UndoStack.beginHold(); UndoStack.accept();" // another step from here on
                                  "Scene.removeNode(node); node = null"));
    ASSERT_TRUE(script.execute()) << script.errorMessage().toStdString();
    EndStep();
    TestHost().purge();
    EXPECT_EQ(dzUndoStack->getUndoCaption(), QStringLiteral("Delete Made"));
    EXPECT_TRUE(dzUndoStack->undo());
    EXPECT_TRUE(dzScene->findNodeByLabel(QStringLiteral("Made")));
    EXPECT_TRUE(dzUndoStack->redo());
    EXPECT_FALSE(dzScene->findNodeByLabel(QStringLiteral("Made")));
}

TEST_F(Undo, ends_a_step_that_a_script_leaves_open)
{
    DzFloatProperty* const dial = AddDial(*AddNode("Figure"), "Height");
    EndStep();
    DzScript script;
    script.setCode(QStringLiteral("beginUndo(); Scene.getNode(0).findProperty('Height').setValue(1);"));
    ASSERT_TRUE(script.execute());
    EXPECT_FALSE(dzUndoStack->isHolding());
    EXPECT_TRUE(LogText().contains(QStringLiteral("began a step to undo and did not end it")));
    EXPECT_TRUE(dzUndoStack->undo());
    EXPECT_EQ(dial->getValue(), 0.0f);
}
