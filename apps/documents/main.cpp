// Writes pages of the manual and completion for both programs: documents FOLDER VERSION DATE. They come to
// lie in FOLDER/command-line and FOLDER/desktop as below a system's folder "share". SPDX-License-Identifier:
// MIT

#include "command.h"
#include "command_tree.h"
#include "completion.h"
#include "desktop_options.h"
#include "man_page.h"
#include "program.h"

#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include <CLI/CLI.hpp>

namespace {

namespace fs = std::filesystem;

void Write(const fs::path& file, const std::string& text)
{
    fs::create_directories(file.parent_path());
    std::ofstream out(file, std::ios::binary);
    out << text;
    out.close();
    if (!out)
        throw std::runtime_error("cannot write " + file.string());
}

void WriteAll(const fs::path& share, const documents::Command& program, const documents::PageFacts& facts)
{
    const fs::path pages = share / "man/man1";
    Write(pages / (program.name + ".1"), documents::ProgramPage(program, facts));
    for (const documents::Command& command : program.subcommands)
        Write(pages / (program.name + '-' + command.name + ".1"),
              documents::SubcommandPage(command, program, facts));
    Write(share / "bash-completion/completions" / program.name, documents::BashCompletion(program));
    Write(share / "zsh/site-functions" / ('_' + program.name), documents::ZshCompletion(program));
    Write(share / "fish/vendor_completions.d" / (program.name + ".fish"), documents::FishCompletion(program));
}

void WriteDocuments(const fs::path& folder, documents::PageFacts facts)
{
    cli::CommandContext context;
    CLI::App commandLine;
    cli::DescribeProgram(commandLine, context);
    facts.program = commandLine.get_name();
    WriteAll(folder / "command-line", documents::ReadCommand(commandLine), facts);
    desktop::Options options;
    CLI::App application;
    desktop::DescribeProgram(application, options);
    WriteAll(folder / "desktop", documents::ReadCommand(application), facts);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 4) {
        std::fputs("usage: documents FOLDER VERSION DATE\n", stderr);
        return 2;
    }
    try {
        WriteDocuments(argv[1], {argv[2], argv[3], {}});
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "documents: %s\n", error.what());
        return 1;
    }
}
