// The morphs of a node.
// SPDX-License-Identifier: MIT

#include "dzerclink.h"
#include "dzfloatproperty.h"
#include "dzintproperty.h"
#include "dzmorph.h"
#include "dzmorphdeltas.h"
#include "dzobject.h"
#include "ks_morphlist.h"
#include "tests/host/host_fixture.h"
#include "tests/shared/throws.h"

namespace {

class MorphListTest : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        node = new DzNode;
        node->setLabel(QLatin1String("Mini"));
        node->setObject(new DzObject);
        dzScene->addNode(node);
    }

    DzMorph* add(const char* name, float value)
    {
        auto* const morph = new DzMorph;
        morph->setName(QLatin1String(name));
        morph->setLabel(QLatin1String(name) + QLatin1String(" Label"));
        node->getObject()->addModifier(morph);
        morph->getValueControl()->setMinMax(-1.0f, 1.0f);
        morph->getValueControl()->setValue(value);
        return morph;
    }

    DzNode* node = nullptr;
};

TEST_F(MorphListTest, is_empty_for_a_node_without_an_object)
{
    DzNode bare;
    const kst::MorphList list(bare);
    EXPECT_TRUE(list.getAll().empty());
    EXPECT_EQ(list.findMorphByName("x"), nullptr);
    EXPECT_EQ(kst::MorphList::FindMorph(bare, "x"), nullptr);
}

TEST_F(MorphListTest, finds_by_name_and_by_label_the_first_of_equal_ones)
{
    const DzMorph* const first = add("Round", 0.0f);
    add("Other", 0.0f)->setLabel(QLatin1String("Round Label"));
    const kst::MorphList list(*node);
    EXPECT_EQ(list.getAll().size(), 2u);
    EXPECT_EQ(list.findMorphByName("Round")->morph, first);
    EXPECT_EQ(list.findMorphByLabel("Round Label")->morph, first);
    EXPECT_EQ(list.findMorphByName("round"), nullptr);
}

TEST_F(MorphListTest, lists_what_is_dialed_in_in_modifier_order)
{
    add("B", -0.5f);
    add("A", 0.0f);
    add("C", 1e-8f);
    add("D", 0.25f);
    const auto active = kst::MorphList(*node).getActiveProperties();
    ASSERT_EQ(active.size(), 2u);
    EXPECT_EQ(active[0], (kst::MorphList::ActiveMorph{"B", -0.5f}));
    EXPECT_EQ(active[1], (kst::MorphList::ActiveMorph{"D", 0.25f}));
}

TEST_F(MorphListTest, refuses_a_morph_with_two_properties)
{
    add("Two", 0.0f)->addProperty(new DzFloatProperty(QLatin1String("More"), true, true));
    EXPECT_EQ(MessageOf([&] { kst::MorphList list(*node); }),
              "expected modifier to have exactly one property");
    EXPECT_EQ(MessageOf([&] { kst::MorphList::FindMorphProperty_X(*node, "Two"); }),
              "internal error: expected morph " + Quoted("Two") +
                  " to have exactly one property, but it has 2");
}

TEST_F(MorphListTest, leaves_out_a_morph_whose_property_is_no_float)
{
    DzMorph* const morph = add("Whole", 0.0f);
    ASSERT_EQ(morph->removeProperty(morph->getValueControl()), DZ_NO_ERROR);
    morph->addProperty(new DzIntProperty(QLatin1String("Value"), true, true));
    EXPECT_TRUE(kst::MorphList(*node).getAll().empty());
    EXPECT_EQ(MessageOf([&] { kst::MorphList::FindMorphProperty_X(*node, "Whole"); }),
              "property of morph " + Quoted("Whole") + " is not a DzFloatProperty");
}

TEST_F(MorphListTest, names_the_morph_or_property_that_is_missing)
{
    EXPECT_EQ(MessageOf([&] { kst::MorphList::FindMorph_X(*node, "Nope"); }),
              "cannot find morph " + Quoted("Nope") + " in node " + Quoted("Mini"));
    EXPECT_EQ(MessageOf([&] { kst::MorphList(*node).findPropertyInNode_X("Nope", nullptr); }),
              "failed to find property " + Quoted("Nope") + " in node " + Quoted("Mini"));
}

TEST_F(MorphListTest, looks_on_the_node_before_its_morphs)
{
    const DzMorph* const morph = add("Round", 0.0f);
    auto where = kst::MorphList::Location::Node;
    EXPECT_EQ(kst::MorphList(*node).findPropertyInNode("Round", &where), morph->getValueControl());
    EXPECT_EQ(where, kst::MorphList::Location::Morph);
    auto* const own = new DzFloatProperty(QLatin1String("Round"), true, true);
    node->addProperty(own);
    EXPECT_EQ(kst::MorphList(*node).findPropertyInNode("Round", &where), own);
    EXPECT_EQ(where, kst::MorphList::Location::Node);
}

TEST_F(MorphListTest, tells_morphs_of_data_files_and_favourites)
{
    DzMorph* const morph = add("Round", 0.0f);
    morph->getDeltas()->setUri(DzUri(QLatin1String("/data/Acme/Mini/Round.dsf#Round")));
    morph->getValueControl()->setIsFavorite(true);
    add("Other", 0.0f);
    const kst::MorphList list(*node);
    ASSERT_EQ(list.getFavorites().size(), 1u);
    EXPECT_TRUE(list.getFavorites().front()->isInDataFolder);
    EXPECT_FALSE(list.findMorphByName("Other")->isInDataFolder);
}

TEST_F(MorphListTest, tells_head_morphs_by_their_path_and_its_letter_case)
{
    const DzMorph* const morph = add("Nose", 0.0f);
    DzFloatProperty* const dial = morph->getValueControl();
    EXPECT_FALSE(kst::MorphList::IsHeadMorph(nullptr));
    dial->setPath(QLatin1String("/Actor/Head/Nose"));
    EXPECT_TRUE(kst::MorphList::IsHeadMorph(dial));
    dial->setPath(QLatin1String("/actor/head/Nose"));
    EXPECT_FALSE(kst::MorphList::IsHeadMorph(dial));
    dial->setPath(QLatin1String("/Actor/Header"));
    EXPECT_FALSE(kst::MorphList::IsHeadMorph(dial));
}

TEST_F(MorphListTest, expands_a_morphs_dial_to_itself_and_all_that_it_drives)
{
    DzFloatProperty* const dial = add("Round", 0.0f)->getValueControl();
    DzFloatProperty* const first = add("First", 0.0f)->getValueControl();
    DzFloatProperty* const second = add("Second", 0.0f)->getValueControl();
    first->insertController(new DzERCLink(DzERCLink::ERCDeltaAdd, dial, 0.5, 0.25));
    second->insertController(new DzERCLink(DzERCLink::ERCMultiply, dial));
    auto where = kst::MorphList::Location::Node;
    const auto expanded = kst::MorphList(*node).expandProperty("Round", &where);
    EXPECT_EQ(where, kst::MorphList::Location::Morph);
    ASSERT_EQ(expanded.size(), 3u);
    EXPECT_EQ(expanded[0].property, dial);
    EXPECT_EQ(expanded[0].linkType, kst::ExpandedProperty::ITSELF);
    EXPECT_EQ(expanded[0].scalar, 1.0);
    EXPECT_EQ(expanded[0].addend, 0.0);
    EXPECT_EQ(expanded[1].property, first);
    EXPECT_EQ(expanded[1].linkType, int(DzERCLink::ERCDeltaAdd));
    EXPECT_EQ(expanded[1].scalar, 0.5);
    EXPECT_EQ(expanded[1].addend, 0.25);
    EXPECT_EQ(expanded[2].property, second);
    EXPECT_EQ(expanded[2].linkType, int(DzERCLink::ERCMultiply));
}

TEST_F(MorphListTest, expands_a_property_of_the_node_to_what_it_drives_or_else_to_itself)
{
    DzFloatProperty* const dial = add("Round", 0.0f)->getValueControl();
    auto* const control = new DzFloatProperty(QLatin1String("Control"), true, true);
    node->addProperty(control);
    const kst::MorphList list(*node);
    auto where = kst::MorphList::Location::Morph;
    auto expanded = list.expandProperty("Control", &where);
    EXPECT_EQ(where, kst::MorphList::Location::Node);
    ASSERT_EQ(expanded.size(), 1u);
    EXPECT_EQ(expanded[0].property, control);

    dial->insertController(new DzERCLink(DzERCLink::ERCAdd, control));
    expanded = list.expandProperty("Control", nullptr);
    ASSERT_EQ(expanded.size(), 1u);
    EXPECT_EQ(expanded[0].property, dial);
    EXPECT_TRUE(list.expandProperty("Nope", nullptr).empty());
}

TEST_F(MorphListTest, describes_a_property_by_part_name_path_and_label)
{
    DzFloatProperty* const dial = add("Nose", 0.0f)->getValueControl();
    dial->setPath(QLatin1String("/Actor/Head/Face"));
    auto* const control = new DzFloatProperty(QLatin1String("Control"), true, true);
    control->setLabel(QLatin1String("Master"));
    control->setPath(QLatin1String("/General"));
    node->addProperty(control);
    const kst::MorphList list(*node);
    kst::ExpandedProperty entry;
    entry.property = dial;
    EXPECT_EQ(list.describe(entry), "Head: Nose (" + Quoted("/Actor/Head/Face/Nose Label") + ")");
    entry.property = control;
    EXPECT_EQ(list.describe(entry), "Body: Control (" + Quoted("/General/Master") + ")");
}

TEST_F(MorphListTest, makes_a_morph_as_the_last_modifier_with_a_dial_from_0_to_1)
{
    add("Round", 0.0f);
    kst::MorphList list(*node);
    const DzMorphDeltasPtr deltas(new DzMorphDeltas);
    const auto made =
        list.createMorph_X(*deltas, "New", false, QLatin1String("Brand New"), QLatin1String("/Actor"));
    EXPECT_EQ(node->getObject()->getModifier(1), made->morph);
    EXPECT_EQ(made->morph->getDeltas(), &*deltas);
    EXPECT_EQ(list.findMorphByName("New"), made);
    EXPECT_EQ(list.getAll().back(), made);
    const DzFloatProperty& dial = *made->property;
    EXPECT_EQ(dial.getName().toStdString(), "New");
    EXPECT_EQ(dial.getLabel().toStdString(), "New");
    EXPECT_EQ(dial.objectName().toStdString(), "New");
    EXPECT_EQ(dial.getPath().toStdString(), "/Actor");
    EXPECT_EQ(dial.getMin(), 0.0f);
    EXPECT_EQ(dial.getMax(), 1.0f);
    EXPECT_TRUE(dial.isClamped());
}

TEST_F(MorphListTest, refuses_a_second_morph_of_a_name_unless_its_deltas_may_be_replaced)
{
    kst::MorphList list(*node);
    const DzMorphDeltasPtr first(new DzMorphDeltas);
    const DzMorphDeltasPtr second(new DzMorphDeltas);
    const auto made = list.createMorph_X(*first, "New", false, QString(), QString());
    EXPECT_EQ(MessageOf([&] { list.createMorph_X(*second, "New", false, QString(), QString()); }),
              "a morph with the name " + Quoted("New") + " exists already");
    EXPECT_EQ(made->morph->getDeltas(), &*first);
    EXPECT_EQ(list.createMorph_X(*second, "New", true, QString(), QString()), made);
    EXPECT_EQ(made->morph->getDeltas(), &*second);
    EXPECT_EQ(list.getAll().size(), 1u);
}

/// Says in a flag when it goes.
class MortalDeltas : public DzMorphDeltas {
public:
    explicit MortalDeltas(bool& gone) : _gone(gone) {}
    ~MortalDeltas() { _gone = true; }

private:
    bool& _gone;
};

TEST_F(MorphListTest, makes_no_morph_that_the_host_refuses_and_leaves_nothing_of_it)
{
    bool gone = false;
    kst::MorphList list(*node);
    {
        Recorder host;
        host.refused = openhost::Operation::AddMorph;
        auto* const deltas = new MortalDeltas(gone); // owned by the morphs that count them
        EXPECT_EQ(MessageOf([&] { list.createMorph_X(*deltas, "New", false, QString(), QString()); }),
                  "failed to add morph " + Quoted("New") + " to node " + Quoted("Mini") + ": " +
                      getErrorMessage(DZ_OPERATION_FAILED_ERROR).toStdString());
    }
    EXPECT_TRUE(gone) << "the refused morph held them";
    EXPECT_TRUE(list.getAll().empty());
    EXPECT_EQ(list.findMorphByName("New"), nullptr);
    EXPECT_EQ(node->getObject()->getNumModifiers(), 0);
    const DzMorphDeltasPtr others(new DzMorphDeltas);
    EXPECT_NE(list.createMorph_X(*others, "New", false, QString(), QString()), nullptr)
        << "the name is still free";
}

TEST_F(MorphListTest, finds_nothing_driven_by_no_property)
{
    EXPECT_TRUE(kst::MorphList::GetSubControllers(nullptr).empty());
}

} // namespace
