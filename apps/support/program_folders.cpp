// Where the programs find what comes with them.
// SPDX-License-Identifier: MIT

#include "program_folders.h"

namespace app {

namespace fs = std::filesystem;

namespace {

/// @param installed  where an installation has it, seen from the program
fs::path BesideOrInstalled(const fs::path& program, const char* name, const char* installed)
{
    const fs::path beside = program / name;
    const fs::path other = (program / installed).lexically_normal();
    std::error_code error;
    return !fs::is_directory(beside, error) && fs::is_directory(other, error) ? other : beside;
}

} // namespace

fs::path ProgramFolder()
{
    return fs::read_symlink("/proc/self/exe").parent_path();
}

fs::path PluginFolder(const fs::path& program)
{
    return BesideOrInstalled(program, "plugins", GANTREL_INSTALLED_PLUGINS);
}

fs::path DocumentationFolder(const fs::path& program)
{
    return BesideOrInstalled(program, "documentation", GANTREL_INSTALLED_DOCUMENTATION);
}

} // namespace app
