// What a node's list of morphs tells of each, and where it finds a property.
// SPDX-License-Identifier: MIT

#include "dzfloatproperty.h"
#include "dzintproperty.h"
#include "dzmorph.h"
#include "dzmorphdeltas.h"
#include "dzobject.h"
#include "ks_morphlist.h"
#include "ks_string.h"
#include "tests/host/host_fixture.h"

namespace {

using kst::MorphList;
using kst::str::ToStd;
using Location = MorphList::Location;

class MorphInfoTest : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        node = new DzNode;
        node->setObject(new DzObject);
        dzScene->addNode(node);
        morph = new DzMorph;
        morph->setName(QString::fromUtf8("R\xC3\xB6und"));
        morph->setLabel(QString::fromUtf8("R\xC3\xB6und Face"));
        node->getObject()->addModifier(morph);
        morph->getValueControl()->setPath(QString::fromUtf8("/Actor/K\xC3\xB6pfe"));
    }

    std::shared_ptr<kst::MorphInfo> info() const { return MorphList(*node).getAll().front(); }
    void setDeltasUri(const char* uri) const { morph->getDeltas()->setUri(DzUri(QLatin1String(uri))); }

    DzNode* node = nullptr;
    DzMorph* morph = nullptr;
    static constexpr const char* name = "R\xC3\xB6und";
};

TEST_F(MorphInfoTest, gives_name_path_and_label_as_the_host_writes_them)
{
    EXPECT_EQ(info()->getMorphNameQ(), morph->getName());
    EXPECT_EQ(ToStd(info()->getPathQ()), "/Actor/K\xC3\xB6pfe");
    EXPECT_EQ(ToStd(info()->getLabelQ()), "R\xC3\xB6und Face");
}

TEST_F(MorphInfoTest, gives_empty_texts_for_no_morph_and_no_property)
{
    const kst::MorphInfo none;
    EXPECT_TRUE(none.getMorphNameQ().isEmpty());
    EXPECT_TRUE(none.getPathQ().isEmpty());
    EXPECT_TRUE(none.getLabelQ().isEmpty());
    EXPECT_EQ(none.property, nullptr);
}

TEST_F(MorphInfoTest, keeps_name_and_path_of_the_time_when_the_list_was_made)
{
    const auto kept = info();
    morph->setName(QLatin1String("Renamed"));
    morph->getValueControl()->setPath(QLatin1String("/Elsewhere"));
    EXPECT_EQ(kept->morphName, name);
    EXPECT_EQ(kept->propertyPath, "/Actor/K\xC3\xB6pfe");
}

TEST_F(MorphInfoTest, names_the_asset_of_the_deltas)
{
    setDeltasUri("/data/Acme/Mini/Round.dsf#Round");
    EXPECT_EQ(info()->deltasUri, "/data/Acme/Mini/Round.dsf#Round");
    setDeltasUri("");
    EXPECT_EQ(info()->deltasUri, "");
}

TEST_F(MorphInfoTest, counts_as_a_data_file_only_what_lies_below_the_data_folder)
{
    const std::pair<const char*, bool> places[] = {{"/data/Acme/Round.dsf#Round", true},
                                                   {"/datas/Acme/Round.dsf#Round", false},
                                                   {"/People/data/Round.dsf#Round", false},
                                                   {"", false}};
    for (const auto& [uri, isInDataFolder] : places) {
        setDeltasUri(uri);
        EXPECT_EQ(info()->isInDataFolder, isInDataFolder) << uri;
    }
}

TEST_F(MorphInfoTest, leaves_a_private_property_of_the_node_to_be_found)
{
    auto* const hidden = new DzFloatProperty(QLatin1String("Hidden"), true, true);
    ASSERT_EQ(node->addPrivateProperty(hidden), DZ_NO_ERROR);
    auto where = Location::Morph;
    EXPECT_EQ(MorphList(*node).findPropertyInNode("Hidden", &where), hidden);
    EXPECT_EQ(where, Location::Node);
}

TEST_F(MorphInfoTest, is_found_behind_a_property_of_the_node_that_is_no_float)
{
    node->addProperty(new DzIntProperty(QString::fromUtf8(name), true, true));
    auto where = Location::Node;
    EXPECT_EQ(MorphList(*node).findPropertyInNode(name, &where), morph->getValueControl());
    EXPECT_EQ(where, Location::Morph);
}

TEST_F(MorphInfoTest, leaves_the_place_as_it_was_when_nothing_is_found)
{
    for (const Location before : {Location::Node, Location::Morph}) {
        auto where = before;
        EXPECT_EQ(MorphList(*node).findPropertyInNode("Nope", &where), nullptr);
        EXPECT_EQ(where, before);
    }
}

} // namespace
