// Files that a figure or a scene is loaded without.
// SPDX-License-Identifier: MIT

#include "dzscene.h"
#include "tests/host/foreign_fixture.h"

namespace {

using namespace doll;

using LeftOutFiles = ForeignTest;

} // namespace

TEST_F(LeftOutFiles, whose_names_differ_in_case_alone_from_others_are_named)
{
    writeShape("Up", Morph("Up", 1, 1.0));
    writeShape("up", Morph("up", 1, 50.0));
    ASSERT_NE(openDoll(), nullptr);
    EXPECT_TRUE(logged("/data/Nord/Doll/Doll.dsf: 1 morph file differs in case alone from another beside it "
                       "and is left out, such as "))
        << log().toStdString();
    EXPECT_FALSE(logged("more than one content library"));
}

TEST_F(LeftOutFiles, that_are_missing_are_one_line_however_many)
{
    std::string modifiers;
    for (int i = 0; i < 50; ++i)
        modifiers += (i ? ", " : "") +
                     (R"({"id": "m)" + std::to_string(i) + R"(", "url": "/data/Nord/Doll/Morphs/Gone)" +
                      std::to_string(i) +
                      R"(.dsf#Gone", "parent": "#Doll-1", "channel": {"id": "value", "current_value": 1}})");
    const std::string nodes =
        Instance() + R"(, {"id": "hat", "url": "/data/Nord/Hat.dsf#Hat", "parent": "#Doll"},
        {"id": "brim", "url": "/data/Nord/Hat.dsf#Brim", "parent": "#hat"})";
    ASSERT_TRUE(load("People/Gaps.duf", Scene(nodes, ", \"modifiers\": [" + modifiers + "]")));
    EXPECT_EQ(timesLogged("is in no content library"), 0);
    EXPECT_EQ(
        timesLogged("Gaps.duf: 51 files are in no content library, such as /data/Nord/Doll/Morphs/Gone0.dsf"),
        1)
        << log().toStdString();
    EXPECT_EQ(dzScene->getNumNodes(), 3);
}
