// Steps in any order: all of them taken back, and all done again.
// SPDX-License-Identifier: MIT

#include "dzundostack.h"

#include "dzerclink.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dzmorphdeltas.h"
#include "dzobject.h"
#include "tests/host/host_fixture.h"
#include "tests/host/undo_scene.h"

#include <ostream>
#include <sstream>

#include <fmt/format.h>
#include <rapidcheck/gtest.h>

namespace {

/// What a user or a script may do to some node of the scene, chosen by numbers.
struct Deed {
    int kind, where, which;
    float number;
};

std::ostream& operator<<(std::ostream& out, const Deed& deed)
{
    return out << fmt::format("{{{}, {}, {}, {}}}", deed.kind, deed.where, deed.which, deed.number);
}

constexpr int kinds = 18;

/// The first line that differs, of both; empty for the same texts.
std::string Difference(const std::string& one, const std::string& other)
{
    std::istringstream ones(one), others(other);
    std::string a, b;
    while (true) {
        const bool isMore = static_cast<bool>(std::getline(ones, a));
        const bool isOtherMore = static_cast<bool>(std::getline(others, b));
        if (!isMore && !isOtherMore)
            return {};
        if (a != b || isMore != isOtherMore)
            return a + " / " + b;
    }
}

DzNode* NodeAt(int where)
{
    return dzScene->getNumNodes() > 0 ? dzScene->getNode(where % dzScene->getNumNodes()) : nullptr;
}

DzFloatProperty* DialAt(const DzElement& element, int which)
{
    return qobject_cast<DzFloatProperty*>(element.getProperty(which % element.getNumProperties()));
}

DzFigure* NewFigure(int which)
{
    auto* const figure = new DzFigure;
    figure->setLabel(QStringLiteral("Figure %1").arg(which % 3));
    figure->setObject(new DzObject);
    auto* const dial = new DzFloatProperty(QStringLiteral("Dial"), true, true);
    figure->addProperty(dial);
    dial->setDoubleMinMax(-100.0, 100.0);
    return figure;
}

void AddMorph(DzNode& node, int which)
{
    auto* const morph = new DzMorph;
    morph->setName(QStringLiteral("Morph %1").arg(which % 5));
    morph->getDeltas()->addDelta(which, DzVec3(1.0f, float(which), 0.0f));
    if (!node.getObject() || node.getObject()->addModifier(morph, which % 3 - 1) != DZ_NO_ERROR)
        delete morph;
}

void Link(DzNode& driven, DzNode& driver, int which)
{
    DzFloatProperty* const to = DialAt(driven, which);
    DzFloatProperty* const from = DialAt(driver, which + 1);
    if (to && from)
        to->insertController(new DzERCLink(from, 0.5, 0.125));
}

void Unlink(const DzNode& node, int which)
{
    DzFloatProperty* const dial = DialAt(node, which);
    if (dial && dial->getNumControllers() > 0)
        dial->deleteController(static_cast<DzNumericController*>(dial->getController(0)));
}

void EditLink(const DzNode& node, const DzNode& other, const Deed& deed)
{
    const DzFloatProperty* const dial = DialAt(node, deed.which);
    auto* const link = dial ? qobject_cast<DzERCLink*>(dial->getController(0)) : nullptr;
    if (!link)
        return;
    if (deed.which % 2 == 0)
        link->setProperty(DialAt(other, deed.which + 2));
    else
        link->addKeyValue(deed.which % 7, deed.number);
}

void EditMorph(DzModifier& modifier, const Deed& deed)
{
    auto* const morph = qobject_cast<DzMorph*>(&modifier);
    if (!morph)
        return;
    if (deed.which % 3 == 0)
        morph->getDeltas()->removeVertex(deed.where % 5);
    else
        morph->getDeltas()->addDelta(deed.where % 5, DzVec3(deed.number, 0.0f, 1.0f));
}

void Follow(DzNode& node, DzNode* other)
{
    if (auto* const figure = qobject_cast<DzSkeleton*>(&node))
        figure->setFollowTarget(qobject_cast<DzSkeleton*>(other));
}

void Do(const Deed& deed)
{
    DzNode* const node = NodeAt(deed.where);
    DzNode* const other = NodeAt(deed.which);
    if (!node || deed.kind == 0) {
        dzScene->addNode(NewFigure(deed.which));
        return;
    }
    DzObject* const object = node->getObject();
    switch (deed.kind) {
    case 1:
        node->addNodeChild(NewFigure(deed.which));
        break;
    case 2:
        dzScene->removeNode(node);
        break;
    case 3:
        if (DzFloatProperty* const dial = DialAt(*node, deed.which))
            dial->setValue(deed.number);
        break;
    case 4:
        node->setLabel(QStringLiteral("Label %1").arg(deed.which));
        break;
    case 5:
        node->setVisible(deed.which % 2 == 0);
        break;
    case 6:
        AddMorph(*node, deed.which);
        break;
    case 7:
        if (object && object->getNumModifiers() > 0)
            object->removeModifier(object->getModifier(deed.which % object->getNumModifiers()));
        break;
    case 8:
        Link(*node, *other, deed.which);
        break;
    case 9:
        Unlink(*node, deed.which);
        break;
    case 10:
        other->addNodeChild(node, deed.which % 2 == 0);
        break;
    case 11:
        Follow(*node, other);
        break;
    case 12:
        node->select(deed.which % 2 == 0);
        break;
    case 13:
        EditLink(*node, *other, deed);
        break;
    case 14:
        if (object && object->getNumModifiers() > 0)
            EditMorph(*object->getModifier(deed.which % object->getNumModifiers()), deed);
        break;
    case 15:
        node->setInheritsScale(deed.which % 2 == 0);
        break;
    case 16:
        node->setRotationOrder(static_cast<DzRotationOrder::Order>(deed.which % 6));
        break;
    default:
        if (object && object->getNumModifiers() > 0)
            if (auto* const dial = DialAt(*object->getModifier(deed.which % object->getNumModifiers()), 0))
                dial->setValue(deed.number);
    }
}

rc::Gen<std::vector<std::vector<Deed>>> Steps()
{
    const auto deed = rc::gen::construct<Deed>(
        rc::gen::inRange(0, kinds), rc::gen::inRange(0, 50), rc::gen::inRange(0, 50),
        rc::gen::map(rc::gen::inRange(-1000, 1000), [](int n) { return float(n) / 7.0f; }));
    return rc::gen::container<std::vector<std::vector<Deed>>>(rc::gen::container<std::vector<Deed>>(deed));
}

class UndoSequence : public HostTest {};

} // namespace

RC_GTEST_FIXTURE_PROP(UndoSequence, brings_each_state_back_in_both_directions, ())
{
    TestHost().reset();
    const auto steps = *Steps();
    for (int i = 0; i < 3; ++i)
        dzScene->addNode(NewFigure(i));
    dzUndoStack->setRecording(true);
    std::vector<std::string> states;
    QStringList captions;
    std::string end;
    for (const std::vector<Deed>& step : steps) {
        const std::string before = SceneText();
        dzUndoStack->beginHold();
        for (const Deed& deed : step)
            Do(deed);
        dzUndoStack->accept(QString::number(captions.size() + 1));
        TestHost().purge();
        if (dzUndoStack->getUndoCaption() == QString::number(captions.size() + 1)) {
            states.push_back(before);
            captions.append(dzUndoStack->getUndoCaption());
            end = SceneText();
        }
    }
    for (int round = 0; round < 2; ++round) {
        for (int i = captions.size(); i-- > 0;) {
            RC_ASSERT(dzUndoStack->undo());
            RC_ASSERT(Difference(SceneText(), states[static_cast<std::size_t>(i)]) == std::string());
        }
        RC_ASSERT(!dzUndoStack->undo());
        for (int i = 0; i < captions.size(); ++i)
            RC_ASSERT(dzUndoStack->redo());
        RC_ASSERT(captions.isEmpty() || Difference(SceneText(), end) == std::string());
    }
    // A hold that is cancelled leaves all as it was, too.
    const std::string before = SceneText();
    dzUndoStack->beginHold();
    for (const std::vector<Deed>& step : steps)
        for (const Deed& deed : step)
            Do(deed);
    dzUndoStack->cancel();
    RC_ASSERT(Difference(SceneText(), before) == std::string());
}
