// Parts of files that hang on nothing, or on something that is called otherwise.
// SPDX-License-Identifier: MIT

#include "dzbone.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "tests/host/foreign_scene.h"

namespace {

using namespace doll;

class OddParts : public ForeignScene {
protected:
    void writeFigure(const std::string& what, const std::string& instead) const
    {
        std::string figure = Figure();
        const std::size_t at = figure.find(what);
        ASSERT_NE(at, figure.npos) << what;
        figure.replace(at, what.size(), instead);
        write("data/Nord/Doll/Doll.dsf", File(figure, "figure"));
    }
};

} // namespace

TEST_F(OddParts, a_bone_may_stand_before_its_parent)
{
    writeFigure(R"("node_library": [)", R"("node_library": [
        {"id": "tip", "type": "bone", "parent": "#finger"}, {"id": "finger", "type": "bone", "parent": "#hand"},)");
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    for (const auto& [bone, parent] : {std::pair("tip", "finger"), {"finger", "hand"}, {"hand", "hip"}}) {
        ASSERT_NE(BoneOf(*figure, bone), nullptr) << bone;
        EXPECT_EQ(BoneOf(*figure, bone)->getNodeParent(), BoneOf(*figure, parent)) << bone;
    }
    EXPECT_FALSE(logged("hang on nothing")) << log().toStdString();
}

TEST_F(OddParts, a_bone_whose_parent_is_nowhere_hangs_on_the_figure_and_a_line_says_so)
{
    writeFigure(R"("parent": "#hip", "rotation_order")", R"("parent": "#pelvis", "rotation_order")");
    writeShape("Turn", Control("Turn", R"(, "formulas": [{"output": "hand:#hand?rotation/z",
        "operations": [{"op": "push", "url": "Doll:#Turn?value"}]}])"));
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    ASSERT_NE(BoneOf(*figure, "hand"), nullptr);
    EXPECT_EQ(BoneOf(*figure, "hand")->getNodeParent(), figure);
    DialIn(*figure, "Turn")->setDoubleValue(90.0);
    ExpectAt(VertexAt(*figure, 6), -10, 20, 0);
    EXPECT_TRUE(
        logged("1 bones hang on nothing that is there and are hung on the figure itself, such as hand"))
        << log().toStdString();
}

TEST_F(OddParts, nodes_are_known_whatever_their_letter_case_and_a_line_says_so)
{
    writeShape("Up", Morph("Up", 1, 1.0));
    writeShape("Turn", Control("Turn", R"(, "formulas": [{"output": "HAND:#HAND?rotation/z",
        "operations": [{"op": "push", "url": "doll:#Turn?value"}]}])"));
    const char* const nodes = R"({"id": "d", "url": "/data/Nord/Doll/Doll.dsf#doll", "geometries":
        [{"id": "g", "url": "/data/Nord/Doll/Doll.dsf#doll-1"}]},
        {"id": "h", "url": "/data/Nord/Doll/Doll.dsf#Hand", "parent": "#d", "label": "Here"})";
    ASSERT_TRUE(load("People/Case.duf", Scene(nodes, R"(, "modifiers": [{"id": "u", "parent": "#g",
        "url": "/data/Nord/Doll/Morphs/Nord/Shapes/Up.dsf#Up", "channel": {"current_value": 1}}])")))
        << log().toStdString();
    const DzNode& figure = *dzScene->getPrimarySelection();
    EXPECT_EQ(dzScene->getNumNodes(), 3);
    ExpectAt(VertexAt(figure, 1), 5, 1, 0);
    EXPECT_EQ(BoneOf(figure, "hand")->getLabel(), QStringLiteral("Here"));
    DialIn(figure, "Turn")->setDoubleValue(90.0);
    ExpectAt(VertexAt(figure, 6), -10, 20, 0);
    EXPECT_TRUE(
        logged("3 names of nodes differ from the figure's in letter case alone and are taken for them, "
               "such as HAND, Hand and doll"))
        << log().toStdString();
}

TEST_F(OddParts, what_formulas_name_in_vain_is_named)
{
    int number = 0;
    for (const char* const input : {"Doll:#Gone?value", "Doll:#Lost?value", "Doll:#Gone?value",
                                    "tail:#tail?rotation/x", "Doll:#Away?value"}) {
        const std::string name = "C" + std::to_string(number++);
        writeShape(name, Control(name, Driven("Doll:#" + name + "?value", input, "1")));
    }
    writeShape("Out", Control("Out", Driven("Doll:#Nowhere?value", "Doll:#Out?value", "1")));
    ASSERT_NE(openDoll(), nullptr);
    EXPECT_TRUE(logged("6 formulas name what is not installed and 0 cannot be understood, such as "
                       "Doll:#Gone?value, Doll:#Lost?value and tail:#tail?rotation/x"))
        << log().toStdString();
}
