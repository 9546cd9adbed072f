// Where the programs find what comes with them.
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>

namespace app {

/// The folder that the program's file lies in; known before there is an application, too.
/// @throws std::filesystem::filesystem_error  the system does not tell
std::filesystem::path ProgramFolder();

/// Of the modules that come with the program. A build has them beside it; in an installation the way from the
/// program to them is always the same, wherever the whole was put.
/// @param program  the folder of the program
/// @return the one beside the program, unless only the other is there
std::filesystem::path PluginFolder(const std::filesystem::path& program = ProgramFolder());
/// Likewise, of the manuals of plug-ins.
std::filesystem::path DocumentationFolder(const std::filesystem::path& program = ProgramFolder());

} // namespace app
