// Influence weights that instances of modifiers have of their own.
// SPDX-License-Identifier: MIT

#include "dzfigure.h"
#include "tests/host/keep_fixture.h"

namespace {

using namespace doll;
using nlohmann::ordered_json;

/// Of the Doll's mesh, unless another size is named.
std::string Weights(const std::string& rows, int vertexCount = 8)
{
    return R"("influence_vertex_count": )" + std::to_string(vertexCount) +
           R"(, "influence_weights": {"values": [)" + rows + "]}";
}

std::string PushedBy(const std::string& weights)
{
    return R"(, "extra": [{"type": "studio/modifier/push", )" + weights + "}]";
}

class InstanceWeights : public KeepTest {
protected:
    void SetUp() override
    {
        KeepTest::SetUp();
        // By 3 cm along the normals, at vertex 3 alone.
        writeShape("Out", Control("Out", PushedBy(Weights("[3, 1]")),
                                  R"({"id": "value", "type": "float", "value": 3})"));
    }
    static std::string out(const std::string& suffix, const std::string& more)
    {
        return R"({"id": "Out)" + suffix + R"(", "url": "/)" + std::string(shapes) +
               R"(Out.dsf#Out", "parent": "#Doll-1)" + suffix + "\"" + more + "}";
    }
    static std::string twoDolls()
    {
        return Instance("", R"(, "label": "Doll")") + ", " + Instance("-2", R"(, "label": "Second")");
    }
    static void expectPushed(const char* label, int vertex, float by)
    {
        const DzFigure* const figure = labelled(label);
        ASSERT_NE(figure, nullptr);
        EXPECT_NEAR(VertexAt(*figure, vertex).m_z, by, 1e-4f) << label << ", vertex " << vertex;
    }
    bool reloadSaved()
    {
        TestHost().reset();
        use(_library);
        return open(target());
    }
};

} // namespace

TEST_F(InstanceWeights, count_for_the_figure_of_the_instance_alone)
{
    const auto expectAll = [] {
        expectPushed("Doll", 3, 0);
        expectPushed("Doll", 4, 1.5f);
        expectPushed("Second", 3, 3);
        expectPushed("Second", 4, 0);
    };
    resaved(scene(twoDolls(), R"(, "modifiers": [)" + out("", PushedBy(Weights("[4, 0.5]"))) + ", " +
                                  out("-2", "") + "]"));
    expectAll();
    ASSERT_TRUE(reloadSaved());
    expectAll();
    expectStable();
}

TEST_F(InstanceWeights, of_what_the_scene_defines_are_written_beside_the_definition)
{
    const ordered_json file =
        resaved(R"("modifier_library": [{"id": "Own", "name": "Own", "parent": "#Doll-1",
            "channel": {"id": "value", "type": "float", "value": 2})" +
                PushedBy(Weights("[6, 1]")) + "}], " +
                scene(Instance("", R"(, "label": "Doll")"),
                      R"(, "modifiers": [{"id": "Own-1", "url": "#Own", "parent": "#Doll-1")" +
                          PushedBy(Weights("[7, 1]")) + "}]"));
    expectPushed("Doll", 6, 0);
    expectPushed("Doll", 7, 2);
    EXPECT_EQ(file["modifier_library"].back()["extra"][0]["influence_weights"]["values"], parsed("[[6, 1]]"));
    ASSERT_TRUE(reloadSaved());
    expectPushed("Doll", 6, 0);
    expectPushed("Doll", 7, 2);
    expectStable();
}

TEST_F(InstanceWeights, of_d_formers_count)
{
    const std::string nodes = R"("node_library": [
        {"id": "Bend Base", "type": "node", "extra": [{"type": "studio/node/dform_base"}]},
        {"id": "Bend", "type": "node", "parent": "#Bend Base", "extra": [{"type": "studio/node/dform"}],
         "translation": [{"id": "z", "value": 4}]},
        {"id": "Bend Field", "type": "node", "parent": "#Bend Base",
         "extra": [{"type": "studio/node/dform_zone", "influence_mode": "weight_map"}]}], )";
    const std::string instances = R"(, {"id": "b", "url": "#Bend Base"},
        {"id": "f", "url": "#Bend", "parent": "#b"}, {"id": "z", "url": "#Bend Field", "parent": "#b"})";
    resaved(nodes + R"("modifier_library": [{"id": "Bend", "name": "Bend", "parent": "#Doll-1", "dform": {)" +
            Weights("[0, 1]") + "}}], " +
            scene(Instance("", R"(, "label": "Doll")") + instances,
                  R"(, "modifiers": [{"id": "Bend-1", "url": "#Bend", "parent": "#Doll-1", "dform": {)" +
                      Weights("[7, 0.5]") + R"(, "vendor": "x"}}])"));
    for (const bool isReloaded : {false, true}) {
        ASSERT_TRUE(!isReloaded || reloadSaved());
        expectPushed("Doll", 0, 0);
        expectPushed("Doll", 7, 2);
    }
    expectStable();
    EXPECT_NE(ReadBytes(target()).find("\"vendor\""), std::string::npos);
}

TEST_F(InstanceWeights, for_another_mesh_leave_those_of_the_definition)
{
    resaved(scene(twoDolls(), R"(, "modifiers": [)" + out("", PushedBy(Weights("[4, 1]", 9))) + "]"));
    expectPushed("Doll", 3, 3);
    expectPushed("Doll", 4, 0);
    EXPECT_TRUE(logged("Out is given influence weights for another mesh than that of 8 vertices and keeps "
                       "those of its definition"))
        << log().toStdString();
}

TEST_F(InstanceWeights, of_presets_are_saved_with_the_scene)
{
    const auto preset = [this](const char* rows) {
        return load("Presets/Out.duf",
                    File(R"("scene": {"modifiers": [{"id": "Out-1", "url": "name://@selection#Out:",
                        "parent": "name://@selection:")" +
                             PushedBy(Weights(rows)) + "}]}",
                         "preset_properties"));
    };
    ASSERT_NE(openDoll(), nullptr);
    ASSERT_TRUE(preset("[4, 0.5]")) << log().toStdString();
    saved();
    for (const bool isReloaded : {false, true}) {
        ASSERT_TRUE(!isReloaded || reloadSaved());
        expectPushed("Doll", 3, 0);
        expectPushed("Doll", 4, 1.5f);
    }
    expectStable();

    dzScene->selectAllNodes(false);
    labelled("Doll")->select(true);
    ASSERT_TRUE(preset("[5, 1]")) << log().toStdString();
    saved();
    for (const bool isReloaded : {false, true}) {
        ASSERT_TRUE(!isReloaded || reloadSaved());
        expectPushed("Doll", 4, 0);
        expectPushed("Doll", 5, 3);
    }
    expectStable();
}
