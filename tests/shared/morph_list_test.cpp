// The morphs of a node.
// SPDX-License-Identifier: MIT

#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dzmorphdeltas.h"
#include "dzobject.h"
#include "shared/ks_morphlist.h"
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

} // namespace
