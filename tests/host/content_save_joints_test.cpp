// Morphs that move joints, saved for every figure of their kind.
// SPDX-License-Identifier: MIT

#include "dzbone.h"
#include "dzerclink.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dzscene.h"
#include "ks_filtered-save.h"
#include "loading/channel_properties.h"
#include "tests/host/save_fixture.h"

#include <nlohmann/json.hpp>

namespace {

namespace fs = std::filesystem;
using nlohmann::json;

class SavedJoints : public SaveTest {
protected:
    void SetUp() override
    {
        SaveTest::SetUp();
        figure = openMini();
        ASSERT_TRUE(figure);
        morph = addMorph(*figure, "Long Arm", {{9}, {{5, 0, 0}}});
        link(*figure->findBone(QStringLiteral("arm")), "center_point/x", 2.5);
        link(*figure->findBone(QStringLiteral("arm")), "end_point/x", 4.25);
    }

    void link(const DzNode& node, const char* channel, double shift) const
    {
        openhost::FindNodeChannel(node, channel)
            ->insertController(new DzERCLink(morph->getValueControl(), shift, 0.0));
    }
    /// Into the library, as Acme's "Arms".
    json saved(const char* name = "Long Arm") const
    {
        kst::FilteredSave::SaveMorphSupportAsset_X(*figure, _library.string(), "Acme", "Arms",
                                                   {morph->getName().toStdString()}, false, false);
        const fs::path folder = _library / "data/Acme/Mini/Base/Morphs/Acme/Arms";
        return json::parse(ReadBytes(folder / (std::string(name) + ".dsf"))).at("modifier_library").at(0);
    }
    static double armX(const DzFigure& of)
    {
        return openhost::FindNodeChannel(*of.findBone(QStringLiteral("arm")), "center_point/x")
            ->getDoubleValue();
    }

    DzFigure* figure = nullptr;
    DzMorph* morph = nullptr;
};

} // namespace

TEST_F(SavedJoints, are_formulas_of_the_morph)
{
    const json formulas = saved().at("formulas");
    ASSERT_EQ(formulas.size(), 2u);
    EXPECT_EQ(formulas[0].at("output"), "arm:/data/Acme/Mini/Base/Mini.dsf#arm?center_point/x");
    EXPECT_EQ(formulas[1].at("output"), "arm:/data/Acme/Mini/Base/Mini.dsf#arm?end_point/x");
    EXPECT_EQ(formulas[0].at("operations"), json::parse(R"([
        {"op": "push", "url": "Mini:/data/Acme/Mini/Base/Morphs/Acme/Arms/Long%20Arm.dsf#Long%20Arm?value"},
        {"op": "push", "val": 2.5},
        {"op": "mult"}])"));
}

TEST_F(SavedJoints, move_with_the_dial_on_every_later_load)
{
    saved();
    const DzFigure* const later = openMini();
    ASSERT_TRUE(later);
    ASSERT_NE(later, figure);
    EXPECT_EQ(armX(*later), 20.0);
    DialOf(*later, "Long Arm")->setValue(1);
    EXPECT_EQ(armX(*later), 22.5);
}

TEST_F(SavedJoints, are_left_to_the_morphs_file_by_a_scene_that_is_saved_later)
{
    saved();
    morph->getValueControl()->setValue(1);
    ASSERT_EQ(save("DzSceneAssetFilter", file("All.duf")), 0);
    EXPECT_EQ(ReadBytes(file("All.duf")).find("?center_point/x"), std::string::npos);
    ASSERT_TRUE(reload(file("All.duf")));
    const auto* const again = qobject_cast<DzFigure*>(dzScene->findNodeByLabel(QStringLiteral("Mini")));
    ASSERT_TRUE(again);
    EXPECT_EQ(armX(*again), 22.5);
}

TEST_F(SavedJoints, keep_to_the_morphs_own_links)
{
    auto* const other = new DzFloatProperty(QStringLiteral("Other"), true, true, 0.0f);
    figure->addProperty(other);
    openhost::FindNodeChannel(*figure->findBone(QStringLiteral("arm")), "center_point/y")
        ->insertController(new DzERCLink(other, 1.0, 0.0));
    EXPECT_EQ(saved().at("formulas").size(), 2u);
}

TEST_F(SavedJoints, are_told_where_no_file_defines_the_bone)
{
    auto* const tail = new DzBone;
    tail->setName(QStringLiteral("tail"));
    figure->addNodeChild(tail);
    link(*tail, "center_point/y", 1.0);
    EXPECT_EQ(saved().at("formulas").size(), 2u);
    EXPECT_TRUE(log().contains(QStringLiteral("1 link to a joint cannot be kept in a file")))
        << log().toStdString();
}

TEST_F(SavedJoints, are_no_member_of_a_morph_that_moves_none)
{
    morph = addMorph(*figure, "Plain", {{9}, {{5, 0, 0}}});
    EXPECT_FALSE(saved("Plain").contains("formulas"));
}
