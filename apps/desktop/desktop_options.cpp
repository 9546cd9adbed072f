// What the desktop application is started with.
// SPDX-License-Identifier: MIT

#include "desktop_options.h"

#include "error_sentence.h"

#include <ostream>

#include <CLI/CLI.hpp>

namespace desktop {

namespace {

const int wrongUse = 2;

std::string RefuseEmpty(const std::string& name)
{
    return name.empty() ? "the name is empty" : std::string();
}

} // namespace

void DescribeProgram(CLI::App& program, Options& options)
{
    program.name("gantrel-desktop");
    program.description("Gantrel's desktop application: figures, their dials and the plug-in in one window.");
    program.footer("Example:\n"
                   "  gantrel-desktop --content ~/library \\\n"
                   "      \"$HOME/library/People/Genesis 9/Genesis 9.duf\"");
    program.set_version_flag("--version", "gantrel-desktop " GANTREL_VERSION, "Print the version");
    program
        .add_option("--content", options.contentFolders,
                    "Content folder, once for each; without it the remembered ones are used")
        ->type_name("DIR")
        ->allow_extra_args(false)
        ->check(RefuseEmpty);
    program
        .add_option("--plugins", options.pluginFolder,
                    "Folder of the plug-ins to load; without it those that come with the program")
        ->type_name("DIR")
        ->check(RefuseEmpty);
    program
        .add_option("--allow-files", options.scriptFolders,
                    "Folder that scripts may read and write in besides content folders, once for each")
        ->type_name("DIR")
        ->allow_extra_args(false)
        ->check(RefuseEmpty);
    program.add_flag("--allow-processes", options.scriptProcesses,
                     "Scripts may start programs, such as one that shows an address");
    program.add_flag("--right-to-left", options.rightToLeft,
                     "Mirror the windows, for languages that are written from right to left");
    program.add_option("files", options.files, "Files to open")->type_name("FILE")->check(RefuseEmpty);
}

std::optional<int> ParseOptions(int argc, const char* const* argv, Options& options, std::ostream& out,
                                std::ostream& err)
{
    CLI::App program;
    DescribeProgram(program, options);
    try {
        program.parse(argc, argv);
        return std::nullopt;
    } catch (const CLI::Success& request) {
        return program.exit(request, out, err);
    } catch (const CLI::ParseError& error) {
        err << "gantrel-desktop: " << app::ErrorSentence(error.what()) << '\n';
        return wrongUse;
    }
}

} // namespace desktop
