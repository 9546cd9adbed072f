// Scenes that one run saves and another one loads.
// SPDX-License-Identifier: MIT

#include "cli_expectations.h"
#include "cli_workspace.h"
#include "tests/plugin/mini_library.h"

namespace {

/// Prints what a scene looks like, to the last digit.
const char* const describe =
    "function describe() {\n"
    "  for (var i = 0; i < Scene.getNumNodes(); ++i) {\n"
    "    var node = Scene.getNode(i), parent = node.getNodeParent();\n"
    "    print(node.getName(), node.getLabel(), parent ? parent.getLabel() : '-');\n"
    "    for (var p = 0; p < node.getNumProperties(); ++p)\n"
    "      print(node.getProperty(p).getName(), node.getProperty(p).getDoubleValue());\n"
    "    var object = node.getObject(), box = node.getWSBoundingBox();\n"
    "    for (var m = 0; object && m < object.getNumModifiers(); ++m)\n"
    "      if (object.getModifier(m).inherits('DzMorph'))\n"
    "        print(object.getModifier(m).getName(),\n"
    "              object.getModifier(m).getValueControl().getDoubleValue());\n"
    "    print(box.min.x, box.min.y, box.min.z, box.max.x, box.max.y, box.max.z);\n"
    "  }\n"
    "}\n";

} // namespace

TEST(SavedScene, looks_the_same_in_another_run)
{
    const Workspace workspace;
    WriteMiniLibrary(workspace.path("lib"));
    const std::string saver = workspace.write(
        "save.js", std::string(describe) +
                       "var m = App.getContentMgr();\n"
                       "m.openFile(m.getAbsolutePath('People/Genesis 9/Genesis 9.duf', true), true);\n"
                       "var figure = Scene.getPrimarySelection();\n"
                       "figure.getXPosControl().setValue(12.5);\n"
                       "var bone = figure.getNodeChild(0);\n"
                       "bone.getZRotControl().setValue(33.3);\n"
                       "var morph = new DzMorph();\n"
                       "morph.setName('Made Here');\n"
                       "figure.getObject().addModifier(morph);\n"
                       "morph.getValueControl().setValue(0.25);\n"
                       "var group = new DzNode();\n"
                       "group.setName('Group'); group.setLabel('Group');\n"
                       "bone.addNodeChild(group);\n"
                       "group.getYRotControl().setValue(45);\n"
                       "print(Scene.saveScene(getArguments()[0]));\n"
                       "describe();\n");
    const std::string loader = workspace.write(
        "load.js",
        std::string(describe) + "print(Scene.loadScene(getArguments()[0], DzScene.OpenNew));\ndescribe();\n");
    const std::string scene = workspace.path("Scene.duf");
    const ProgramResult written = RunProgram(
        {"script", saver, scene, "--content", workspace.path("lib"), "--allow-files", workspace.path("")});
    ExpectSuccess(written);
    EXPECT_EQ(written.out.substr(0, 2), "0\n");
    EXPECT_NE(written.out.find("Made Here 0.25"), std::string::npos) << written.out;
    EXPECT_NE(written.out.find("Group Group "), std::string::npos) << written.out;
    const ProgramResult read = RunProgram({"script", loader, scene, "--content", workspace.path("lib")});
    ExpectSuccess(read);
    EXPECT_EQ(read.out, written.out);
}

TEST(SavedScene, is_shown_by_other_commands)
{
    const Workspace workspace;
    WriteMiniLibrary(workspace.path("lib"));
    const std::string saver = workspace.write(
        "save.js", "var m = App.getContentMgr();\n"
                   "m.openFile(m.getAbsolutePath('People/Genesis 9/Genesis 9.duf', true), true);\n"
                   "var manager = App.getAssetIOMgr(), options = new DzFileIOSettings();\n"
                   "options.setBoolValue('RunSilent', true);\n"
                   "options.setBoolValue('CompressOutput', false);\n"
                   "var filter = manager.getFilter(manager.findFilter('DzSceneSubsetAssetFilter'));\n"
                   "print(filter.getDescription(),\n"
                   "      manager.doSaveWithOptions(filter, options, false, getArguments()[0], '', ''));\n"
                   "var own = new DzPoseAssetFilter();\n"
                   "print(own.doSave(options, getArguments()[0] + ' pose', ''));\n"
                   "print(manager.doSaveWithOptions(filter, options, false, '', '', ''));\n");
    const std::string scene = workspace.path("Part.duf");
    const ProgramResult written = RunProgram(
        {"script", saver, scene, "--content", workspace.path("lib"), "--allow-files", workspace.path("")});
    ExpectSuccess(written);
    EXPECT_EQ(written.out, "Scene Subset 0\n0\n1\n");
    EXPECT_TRUE(workspace.has("Part.duf pose.duf"));
    const ProgramResult inspected = RunProgram({"inspect", scene, "--content", workspace.path("lib")});
    ExpectSuccess(inspected);
    EXPECT_NE(inspected.out.find("Genesis 9"), std::string::npos) << inspected.out;
}
