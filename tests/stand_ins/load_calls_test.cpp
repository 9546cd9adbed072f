// What Morph Loader Pro is told for one morph, by the driver and by the script.
// SPDX-License-Identifier: MIT

#include "tests/stand_ins/noting_tools.h"

#include "dzfigure.h"
#include "ks_morph-loader-script.h"
#include "ks_morph-loader.h"
#include "tests/host/host_fixture.h"
#include "tests/shared/throws.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace {

using Calls = std::vector<std::string>;

/// One load as a caller asks for it.
struct Load {
    DzNode* node = nullptr;
    std::string json = "{}";
    bool subdivide = true;
    int builtResolution = 2;
    bool reverseDeformations = true;
    std::string mapPath = "Former/Map";
    float strength = -1.0f;
};

std::string ByDriver(const Load& load)
{
    return kst::MorphLoaderBatch::Exec_X(load.node, "/tmp/a.obj", "Round", QString::fromStdString(load.json),
                                         load.subdivide, load.builtResolution, "/Actor/Mine",
                                         load.reverseDeformations, load.mapPath, load.strength);
}

std::string ByOptions(const Load& load)
{
    kst::MorphLoad wanted;
    wanted.objFile = "/tmp/a.obj";
    wanted.morphName = "Round";
    wanted.importSettingsJson = QString::fromStdString(load.json);
    wanted.subdivide = load.subdivide;
    wanted.builtResolution = load.builtResolution;
    wanted.propertyGroupPath = "/Actor/Mine";
    wanted.reverseDeformations = load.reverseDeformations;
    wanted.attenuateMapPath = load.mapPath;
    wanted.attenuateStrength = load.strength;
    return kst::MorphLoaderBatch::Exec_X(load.node, wanted);
}

std::string ByScript(const Load& load)
{
    dzScene->setPrimarySelection(load.node);
    return kst::MorphLoaderProScript::ScriptExec("/tmp/a.obj", "Round", QString::fromStdString(load.json),
                                                 load.subdivide, load.builtResolution, "/Actor/Mine",
                                                 load.reverseDeformations, load.mapPath, load.strength);
}

struct Way {
    const char* name;
    std::string (*run)(const Load&);
    std::string result; ///< of a load that succeeds
    std::string prefix; ///< of its failures
};

/// All ways of loading have the same to say.
class LoadCalls : public HostTest, public testing::WithParamInterface<Way> {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        noting::calls.clear();
        noting::loadOptions.clear();
        noting::isModeSuitable = true;
        load.node = add(new DzFigure, "Vera");
    }
    static DzNode* add(DzNode* node, const char* label)
    {
        node->setLabel(QLatin1String(label));
        dzScene->addNode(node);
        return node;
    }

    const Calls& run()
    {
        GetParam().run(load);
        return noting::calls;
    }
    nlohmann::json options()
    {
        run();
        return nlohmann::json::parse(noting::loadOptions);
    }

    Load load;
};

const Way ways[] = {{"driver", ByDriver, "", ""},
                    {"options", ByOptions, "", ""},
                    {"script", ByScript, "one morph", "Script error: "}};

INSTANTIATE_TEST_SUITE_P(, LoadCalls, testing::ValuesIn(ways),
                         [](const testing::TestParamInfo<Way>& way) { return way.param.name; });

TEST_P(LoadCalls, come_in_this_order_for_a_subdivided_part_of_a_figure)
{
    EXPECT_EQ(run(), (Calls{"setLoadMode 3 Vera",
                            "setFilename /tmp/a.obj",
                            "setMorphName Round",
                            "setMorphSubdivision true",
                            "setSubdivisionBuiltResolution 2",
                            "setSubdivisionMinResolution 0",
                            "setSubdivisionMaxResolution 9",
                            "setSubdivisionSmoothCage true",
                            "setSubdivisionMapping 0",
                            "setDeltaTolerance 0.001",
                            "setCreateControlProperty false",
                            "setPropertyGroupPath /Actor/Mine",
                            "setReverseDeformations true",
                            "setOverwriteExisting 2",
                            "setCleanUpOrphans true",
                            "setMorphMirroring 0",
                            "setAttenuateMapPath Former/Map",
                            "setAttenuateStrength -1",
                            "addMorph Round",
                            "createMorphs Vera false true"}));
}

TEST_P(LoadCalls, come_in_this_order_for_all_of_a_prop)
{
    load = Load();
    load.node = add(new DzNode, "Chair");
    load.subdivide = false;
    load.builtResolution = 0;
    load.reverseDeformations = false;
    load.mapPath.clear();
    EXPECT_EQ(run(),
              (Calls{"setLoadMode 2 Chair", "setFilename /tmp/a.obj", "setMorphName Round",
                     "setMorphSubdivision false", "setSubdivisionBuiltResolution 0",
                     "setSubdivisionMinResolution 0", "setSubdivisionMaxResolution 9",
                     "setSubdivisionSmoothCage false", "setSubdivisionMapping 0", "setDeltaTolerance 0.001",
                     "setCreateControlProperty false", "setPropertyGroupPath /Actor/Mine",
                     "setReverseDeformations false", "setOverwriteExisting 2", "setCleanUpOrphans true",
                     "setMorphMirroring 0", "addMorph Round", "createMorphs Chair false true"}));
}

TEST_P(LoadCalls, leave_the_attenuation_alone_without_a_map_whatever_the_strength)
{
    load.mapPath.clear();
    for (const float strength : {-1.0f, 0.0f, 1.0f}) {
        load.strength = strength;
        noting::calls.clear();
        for (const std::string& call : run())
            EXPECT_EQ(call.find("setAttenuate"), std::string::npos) << call;
        EXPECT_EQ(noting::calls.back(), "createMorphs Vera false true");
    }
}

TEST_P(LoadCalls, hand_over_options_that_read_positions_only_and_ask_nothing)
{
    EXPECT_EQ(options(), nlohmann::json::parse(R"({"IncludeVT": false, "IncludeG": false,
        "IncludeUsemtl": false, "IncludeMtllib": false, "RunSilent": 1})"));
}

TEST_P(LoadCalls, hand_over_the_options_given_but_for_these_five)
{
    load.json = R"({"Scale": 2.5, "LatAxis": "Z", "IncludeVT": true, "IncludeF": true, "RunSilent": 0})";
    EXPECT_EQ(options(), nlohmann::json::parse(R"({"Scale": 2.5, "LatAxis": "Z", "IncludeF": true,
        "IncludeVT": false, "IncludeG": false, "IncludeUsemtl": false, "IncludeMtllib": false,
        "RunSilent": 1})"));
}

TEST_P(LoadCalls, end_with_the_mode_when_it_does_not_suit)
{
    noting::isModeSuitable = false;
    EXPECT_EQ(MessageOf([this] { run(); }), GetParam().prefix + "incompatible load mode");
    EXPECT_EQ(noting::calls, Calls{"setLoadMode 3 Vera"});
}

TEST_P(LoadCalls, give_the_loaders_report_to_those_who_use_the_script_alone)
{
    EXPECT_EQ(GetParam().run(load), GetParam().result);
}

} // namespace
