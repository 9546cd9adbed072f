// Properties, links and formulas.
// SPDX-License-Identifier: MIT

#include "dzboolproperty.h"
#include "dzelement.h"
#include "dzenumproperty.h"
#include "dzerclink.h"
#include "dzfloatproperty.h"
#include "dzintproperty.h"
#include "dznode.h"
#include "dzpropertygroup.h"
#include "dzpropertygrouptree.h"
#include "dzstringproperty.h"
#include "openhost/diagnostics.h"
#include "scene/changes_together.h"
#include "scene/formula_controller.h"
#include "scene/scene_limits.h"
#include "tests/host/host_fixture.h"

#include <QSignalSpy>

#include <cmath>

using openhost::FormulaController;
using openhost::FormulaOperation;
using openhost::FormulaStage;
using Kind = openhost::FormulaOperation::Kind;

namespace {

DzFloatProperty* Add(DzElement& element, const char* name, float value = 0.0f)
{
    auto* const property = new DzFloatProperty(QLatin1String(name), true, true, value);
    element.addProperty(property);
    return property;
}

FormulaOperation Push(DzNumericProperty* property)
{
    FormulaOperation operation;
    operation.kind = Kind::PushProperty;
    operation.property = property;
    return operation;
}

FormulaOperation Push(double value)
{
    FormulaOperation operation;
    operation.value = value;
    return operation;
}

FormulaOperation Do(Kind kind)
{
    FormulaOperation operation;
    operation.kind = kind;
    return operation;
}

class Property : public HostTest {
protected:
    DzElement element;
};

using Link = Property;
using Formula = Property;

} // namespace

TEST_F(Property, set_value_is_held_within_limits_only_when_clamped)
{
    DzFloatProperty* const dial = Add(element, "dial");
    dial->setMinMax(-1.0f, 2.0f);
    dial->setValue(5.0f);
    EXPECT_EQ(dial->getValue(), 5.0f);
    dial->setIsClamped(true);
    EXPECT_EQ(dial->getValue(), 2.0f);
    dial->setValue(-7.0f);
    EXPECT_EQ(dial->getValue(), -1.0f);
}

TEST_F(Property, values_that_are_not_finite_are_refused)
{
    DzFloatProperty* const dial = Add(element, "dial", 0.25f);
    dial->setValue(NAN);
    dial->setValue(INFINITY);
    EXPECT_EQ(dial->getValue(), 0.25f);
}

TEST_F(Property, a_locked_property_keeps_its_value)
{
    DzFloatProperty* const dial = Add(element, "dial");
    dial->lock(true);
    dial->setValue(1.0f);
    EXPECT_EQ(dial->getValue(), 0.0f);
}

TEST_F(Property, signals_tell_changes_once_and_removal)
{
    DzFloatProperty* const dial = Add(element, "dial");
    QSignalSpy changed(dial, SIGNAL(currentValueChanged())), removed(dial, SIGNAL(removed()));
    dial->setValue(0.5f);
    dial->setValue(0.5f);
    EXPECT_EQ(changed.count(), 1);
    element.removeProperty(dial);
    EXPECT_EQ(removed.count(), 1);
    EXPECT_EQ(element.findProperty(QStringLiteral("dial")), nullptr);
}

TEST_F(Property, kinds_round_and_choose_as_their_type_says)
{
    DzIntProperty number(QStringLiteral("n"), false, false, 2);
    number.setDoubleValue(2.6);
    EXPECT_EQ(number.getValue(), 3);
    DzBoolProperty flag(QStringLiteral("b"), false, false);
    flag.setDoubleValue(7.0);
    EXPECT_TRUE(flag.getBoolValue());
    EXPECT_EQ(flag.getValue(), 1);
    DzEnumProperty choice(QStringLiteral("e"), false, false);
    choice.addItem(QStringLiteral("Base"));
    choice.addItem(QStringLiteral("High Resolution"));
    EXPECT_TRUE(choice.setValueFromString(QStringLiteral("High Resolution")));
    EXPECT_EQ(choice.getValue(), 1);
    EXPECT_FALSE(choice.setValueFromString(QStringLiteral("high resolution")));
    choice.setValue(9);
    EXPECT_EQ(choice.getStringValue(), QStringLiteral("High Resolution"));
    EXPECT_NE(qobject_cast<DzIntProperty*>(&choice), nullptr);
    EXPECT_EQ(qobject_cast<DzFloatProperty*>(static_cast<DzProperty*>(&number)), nullptr);
}

TEST_F(Property, names_are_unique_within_an_element_and_follow_renaming)
{
    DzFloatProperty* const dial = Add(element, "dial");
    DzFloatProperty twin(QStringLiteral("dial"), true, true);
    EXPECT_EQ(element.addProperty(&twin), DZ_DUPLICATE_NAME_ERROR);
    dial->setName(QStringLiteral("other"));
    EXPECT_EQ(element.findProperty(QStringLiteral("dial")), nullptr);
    EXPECT_EQ(element.findProperty(QStringLiteral("other")), dial);
    EXPECT_EQ(element.findProperty(QStringLiteral("OTHER"), false), dial);
}

TEST_F(Property, private_properties_are_found_apart)
{
    auto* const hidden = new DzFloatProperty(QStringLiteral("secret"), false, false);
    element.addPrivateProperty(hidden);
    EXPECT_EQ(element.findProperty(QStringLiteral("secret")), nullptr);
    EXPECT_EQ(element.findPrivateProperty(QStringLiteral("secret")), hidden);
    EXPECT_EQ(element.getNumProperties(), 0);
    EXPECT_EQ(element.getNumPrivateProperties(), 1);
}

TEST_F(Property, setting_a_path_makes_the_groups)
{
    DzFloatProperty* const nose = Add(element, "nose");
    DzFloatProperty* const waist = Add(element, "waist");
    nose->setPath(QStringLiteral("Actor/Head/Face/"));
    waist->setPath(QStringLiteral("/Actor"));
    EXPECT_EQ(nose->getPath(), QStringLiteral("/Actor/Head/Face"));
    DzPropertyGroupTree* const tree = element.getPropertyGroups();
    EXPECT_EQ(tree->getAllPaths(), QStringList({QStringLiteral("/Actor"), QStringLiteral("/Actor/Head"),
                                                QStringLiteral("/Actor/Head/Face")}));
    EXPECT_EQ(tree->findChild(QStringLiteral("/Actor"))->getProperty(0), waist);
    DzPropertyGroup* const face = nose->getGroup();
    EXPECT_EQ(face->getPath(), QStringLiteral("/Actor/Head/Face"));
    EXPECT_EQ(face->getProperty(0), nose);
    element.removeProperty(nose);
    EXPECT_EQ(face->getNumProperties(), 0);
}

TEST_F(Property, in_more_groups_than_a_tree_holds_lies_in_the_last_of_them_which_is_told)
{
    DzFloatProperty* const deep = Add(element, "deep");
    const openhost::DiagnosticsCollector met(dzApp->diagnostics());
    const QString most = QStringLiteral("/g").repeated(openhost::deepestGroups);
    deep->setPath(most);
    EXPECT_TRUE(met.all().empty());
    deep->setPath(most + QStringLiteral("/h"));
    EXPECT_EQ(deep->getPath(), most);
    ASSERT_EQ(met.all().size(), 1u);
    EXPECT_EQ(base::ToLine(met.all()[0]),
              "deep: lies deeper than 64 groups in each other; those beyond are left out");
}

TEST_F(Property, an_alias_reads_and_sets_its_target)
{
    DzFloatProperty* const target = Add(element, "target");
    DzFloatProperty* const alias = Add(element, "alias");
    EXPECT_TRUE(alias->setAliasTarget(target));
    EXPECT_FALSE(target->setAliasTarget(alias));
    target->setValue(0.25f);
    EXPECT_EQ(alias->getValue(), 0.25f);
    alias->setValue(0.75f);
    EXPECT_EQ(target->getValue(), 0.75f);
    element.removeProperty(target);
    EXPECT_EQ(alias->getAliasTarget(), nullptr);
}

TEST_F(Link, each_type_has_its_arithmetic)
{
    struct Case {
        DzERCLink::ERCType type;
        double expected; // v = 6, c = 3, m = 2, a = 1
    };
    for (const Case& test : {Case{DzERCLink::ERCDeltaAdd, 13.0}, Case{DzERCLink::ERCDivideInto, 1.5},
                             Case{DzERCLink::ERCDivideBy, 3.0}, Case{DzERCLink::ERCMultiply, 19.0},
                             Case{DzERCLink::ERCSubtract, 4.0}, Case{DzERCLink::ERCAdd, 10.0}}) {
        DzFloatProperty driver(QStringLiteral("c"), true, true, 3.0f),
            driven(QStringLiteral("v"), true, true, 6.0f);
        driven.insertController(new DzERCLink(test.type, &driver, 2.0, 1.0));
        EXPECT_DOUBLE_EQ(driven.getDoubleValue(), test.expected) << "type " << test.type;
        driven.setValue(20.0f);
        EXPECT_FLOAT_EQ(driven.getValue(), 20.0f) << "inverse of type " << test.type;
    }
}

TEST_F(Link, chains_add_up)
{
    DzFloatProperty *const a = Add(element, "a", 10.0f), *const b = Add(element, "b", 5.0f),
                           *const c = Add(element, "c", 2.0f);
    b->insertController(new DzERCLink(a, 1.0, 0.0));
    c->insertController(new DzERCLink(b, 2.0, 1.0));
    EXPECT_EQ(b->getValue(), 15.0f);
    EXPECT_EQ(c->getValue(), 33.0f);
    a->setValue(0.0f);
    EXPECT_EQ(c->getValue(), 13.0f);
}

TEST_F(Link, multiplying_links_apply_to_the_sum_whatever_was_inserted_first)
{
    DzFloatProperty *const a = Add(element, "a", 2.0f), *const b = Add(element, "b", 3.0f),
                           *const v = Add(element, "v", 1.0f);
    v->insertController(new DzERCLink(DzERCLink::ERCMultiply, b));
    v->insertController(new DzERCLink(DzERCLink::ERCAdd, a));
    EXPECT_EQ(v->getValue(), 9.0f);
    v->setValue(12.0f);
    EXPECT_EQ(v->getRawValue(), 2.0f);
}

TEST_F(Link, dividing_by_zero_leaves_the_value)
{
    DzFloatProperty *const zero = Add(element, "zero"), *const v = Add(element, "v", 4.0f);
    v->insertController(new DzERCLink(DzERCLink::ERCDivideBy, zero));
    EXPECT_EQ(v->getValue(), 4.0f);
}

TEST_F(Link, keyed_links_interpolate_and_hold_at_the_ends)
{
    DzFloatProperty *const x = Add(element, "x"), *const v = Add(element, "v", 100.0f);
    auto* const link = new DzERCLink(DzERCLink::ERCKeyed, x);
    link->addKeyValue(2.0, 30.0);
    link->addKeyValue(0.0, 10.0);
    link->addKeyValue(1.0, 10.0);
    v->insertController(link);
    const auto at = [&](float value) {
        x->setValue(value);
        return v->getValue();
    };
    EXPECT_EQ(at(1.5f), 120.0f);
    EXPECT_EQ(at(9.0f), 130.0f);
    EXPECT_EQ(at(-1.0f), 110.0f);
    link->setKeyInterpolation(DzERCLink::CONSTANT_INTERP);
    EXPECT_EQ(at(1.9f), 110.0f);
    link->setKeyInterpolation(DzERCLink::TCB_INTERP);
    EXPECT_EQ(at(1.0f), 110.0f);
    // Hermite with slope 10 at key 1 and 20 at key 2, half way: 20 + (10 - 20) / 8.
    EXPECT_FLOAT_EQ(at(1.5f), 118.75f);
}

TEST_F(Link, dependants_are_told_once_and_links_go_with_what_drives_them)
{
    DzFloatProperty *const a = Add(element, "a"), *const b = Add(element, "b"), *const c = Add(element, "c"),
                           *const d = Add(element, "d", 1.0f);
    b->insertController(new DzERCLink(a, 1.0, 0.0));
    c->insertController(new DzERCLink(a, 1.0, 0.0));
    d->insertController(new DzERCLink(b, 1.0, 0.0));
    d->insertController(new DzERCLink(c, 1.0, 0.0));
    QSignalSpy told(d, SIGNAL(currentValueChanged()));
    a->setValue(2.0f);
    EXPECT_EQ(told.count(), 1);
    EXPECT_EQ(d->getValue(), 5.0f);
    EXPECT_EQ(a->getNumSlaveControllers(), 2);
    element.removeProperty(b);
    EXPECT_EQ(a->getNumSlaveControllers(), 1);
    EXPECT_EQ(d->getNumControllers(), 1);
    EXPECT_EQ(d->getValue(), 3.0f);
}

TEST_F(Link, changes_together_are_told_once_at_the_end_and_have_their_values_before)
{
    DzFloatProperty *const a = Add(element, "a"), *const b = Add(element, "b"), *const c = Add(element, "c"),
                           *const alone = Add(element, "alone");
    b->insertController(new DzERCLink(a, 1.0, 0.0));
    c->insertController(new DzERCLink(b, 1.0, 0.0));
    EXPECT_EQ(c->getValue(), 0.0f);
    QSignalSpy toldA(a, SIGNAL(currentValueChanged())), toldC(c, SIGNAL(currentValueChanged())),
        toldAlone(alone, SIGNAL(currentValueChanged()));
    {
        const openhost::ChangesTogether together;
        a->setValue(1.0f);
        EXPECT_EQ(c->getValue(), 1.0f);
        const openhost::ChangesTogether within;
        b->setRawValue(2.0f);
        a->setValue(4.0f);
        EXPECT_EQ(c->getValue(), 6.0f);
        EXPECT_EQ(toldA.count() + toldC.count(), 0);
    }
    EXPECT_EQ(toldA.count(), 1);
    EXPECT_EQ(toldC.count(), 1);
    EXPECT_EQ(toldAlone.count(), 0);
    a->setValue(5.0f);
    EXPECT_EQ(toldC.count(), 2);
    EXPECT_EQ(c->getValue(), 7.0f);
}

TEST_F(Link, what_is_deleted_among_changes_together_is_told_to_those_it_drove)
{
    DzFloatProperty *const a = Add(element, "a", 3.0f), *const b = Add(element, "b"),
                           *const c = Add(element, "c");
    b->insertController(new DzERCLink(a, 1.0, 0.0));
    c->insertController(new DzERCLink(b, 1.0, 0.0));
    EXPECT_EQ(c->getValue(), 3.0f);
    QSignalSpy told(c, SIGNAL(currentValueChanged()));
    {
        const openhost::ChangesTogether together;
        a->setValue(4.0f);
        element.removeProperty(a);
    }
    EXPECT_EQ(told.count(), 1);
    EXPECT_EQ(c->getValue(), 0.0f);
}

TEST_F(Link, in_a_circle_are_evaluated_anew_after_a_value_that_changes_nothing)
{
    DzFloatProperty *const a = Add(element, "to", 1.0f), *const b = Add(element, "fro", 10.0f),
                           *const driver = Add(element, "driver", 0.0f);
    a->insertController(new DzERCLink(b, 1.0, 0.0));
    b->insertController(new DzERCLink(a, 1.0, 0.0));
    a->insertController(new DzERCLink(driver, 1.0, 0.0));
    const openhost::ChangesTogether together;
    a->setValue(12.0f); // raw 1, as it is
    driver->setValue(5.0f);
    EXPECT_EQ(b->getValue(), 26.0f); // a counts b with its raw value
}

TEST_F(Link, a_cycle_is_cut_and_reported_once)
{
    DzFloatProperty *const a = Add(element, "round", 1.0f), *const b = Add(element, "about", 10.0f);
    a->insertController(new DzERCLink(b, 1.0, 0.0));
    b->insertController(new DzERCLink(a, 1.0, 0.0));
    EXPECT_EQ(a->getValue(), 12.0f); // b counts a with its raw value
    a->setRawValue(2.0f);
    EXPECT_EQ(a->getValue(), 14.0f);
    EXPECT_EQ(LogText().count(QStringLiteral("links form a cycle through .round")), 1);
}

TEST_F(Link, to_itself_counts_with_the_raw_value)
{
    DzFloatProperty* const a = Add(element, "ouroboros", 2.0f);
    a->insertController(new DzERCLink(a, 3.0, 0.0));
    EXPECT_EQ(a->getValue(), 8.0f);
    a->setRawValue(1.0f);
    EXPECT_EQ(a->getValue(), 4.0f);
}

TEST_F(Link, a_long_chain_needs_no_deep_stack)
{
    constexpr int length = 200000;
    std::vector<std::unique_ptr<DzFloatProperty>> chain;
    for (int i = 0; i < length; ++i) {
        chain.push_back(std::make_unique<DzFloatProperty>(QString(), true, true));
        if (i > 0)
            chain[std::size_t(i)]->insertController(new DzERCLink(chain[std::size_t(i) - 1].get(), 1.0, 0.0));
    }
    chain.front()->setValue(3.0f);
    EXPECT_EQ(chain.back()->getValue(), 3.0f);
    while (!chain.empty())
        chain.pop_back();
}

TEST_F(Formula, the_stack_machine_computes)
{
    DzFloatProperty *const x = Add(element, "x", 3.0f), *const v = Add(element, "v", 1.0f);
    // (x - 1) * 4 / 2, negated, inverted twice
    v->insertController(FormulaController::Create(
        FormulaStage::Sum, {Push(x), Push(1.0), Do(Kind::Subtract), Push(4.0), Do(Kind::Multiply), Push(2.0),
                            Do(Kind::Divide), Do(Kind::Negate), Do(Kind::Invert), Do(Kind::Invert)}));
    EXPECT_DOUBLE_EQ(v->getDoubleValue(), -3.0);
    v->setValue(0.5f);
    EXPECT_FLOAT_EQ(v->getValue(), 0.5f);
}

TEST_F(Formula, final_value_is_sum_times_product_then_clamped)
{
    DzFloatProperty *const x = Add(element, "x", 2.0f), *const v = Add(element, "v", 1.0f);
    v->insertController(FormulaController::Create(FormulaStage::Multiply, {Push(x)}));
    v->insertController(
        FormulaController::Create(FormulaStage::Sum, {Push(x), Push(0.5), Do(Kind::Multiply)}));
    EXPECT_EQ(v->getValue(), 4.0f);
    v->setMinMax(0.0f, 3.0f);
    v->setIsClamped(true);
    EXPECT_EQ(v->getValue(), 3.0f);
}

TEST_F(Formula, splines_sort_their_knots)
{
    DzFloatProperty *const x = Add(element, "x", 15.0f), *const v = Add(element, "v");
    FormulaOperation spline = Do(Kind::Spline);
    spline.knots = {{20.0, 1.0, 0, 0, 0}, {10.0, 0.0, 0, 0, 0}};
    v->insertController(FormulaController::Create(FormulaStage::Sum, {Push(x), spline}));
    EXPECT_DOUBLE_EQ(v->getDoubleValue(), 0.5);
    x->setValue(40.0f);
    EXPECT_DOUBLE_EQ(v->getDoubleValue(), 1.0);
}

TEST_F(Formula, operations_that_do_not_fit_the_stack_are_refused)
{
    EXPECT_EQ(FormulaController::Create(FormulaStage::Sum, {}), nullptr);
    EXPECT_EQ(FormulaController::Create(FormulaStage::Sum, {Push(1.0), Do(Kind::Add)}), nullptr);
    EXPECT_EQ(FormulaController::Create(FormulaStage::Sum, {Push(1.0), Push(1.0)}), nullptr);
    EXPECT_EQ(FormulaController::Create(FormulaStage::Sum, {Push(nullptr)}), nullptr);
}
