// What comes with the programs is found beside them, and in an installation.
// SPDX-License-Identifier: MIT

#include "program_folders.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

namespace fs = std::filesystem;

class ProgramFolders : public testing::Test {
protected:
    fs::path has(const char* name) const
    {
        fs::create_directories(root / name);
        return root / name;
    }

    QTemporaryDir folder;
    const fs::path root = folder.path().toStdString();
    const fs::path program = has(GANTREL_PROGRAM_FOLDER);
};

TEST_F(ProgramFolders, begin_with_that_of_the_program)
{
    EXPECT_EQ(app::ProgramFolder(), fs::canonical("/proc/self/exe").parent_path());
}

TEST_F(ProgramFolders, lie_beside_the_program_in_a_build)
{
    const fs::path plugins = has(GANTREL_PROGRAM_FOLDER "/plugins"),
                   documentation = has(GANTREL_PROGRAM_FOLDER "/documentation");
    has(GANTREL_PLUGIN_FOLDER);
    has(GANTREL_DOCUMENTATION_FOLDER);
    EXPECT_EQ(app::PluginFolder(program), plugins);
    EXPECT_EQ(app::DocumentationFolder(program), documentation);
}

TEST_F(ProgramFolders, lie_below_the_same_folder_in_an_installation)
{
    const fs::path plugins = has(GANTREL_PLUGIN_FOLDER), documentation = has(GANTREL_DOCUMENTATION_FOLDER);
    EXPECT_EQ(app::PluginFolder(program), plugins);
    EXPECT_EQ(app::DocumentationFolder(program), documentation);
}

TEST_F(ProgramFolders, are_wanted_beside_the_program_when_they_are_nowhere)
{
    EXPECT_EQ(app::PluginFolder(program), program / "plugins");
    EXPECT_EQ(app::DocumentationFolder(program), program / "documentation");
}

} // namespace
