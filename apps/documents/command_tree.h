// What a program understands, as pages of its manual and completion in shells tell it.
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
} // namespace CLI

namespace documents {

/// What can stand behind an option, or alone. Shells complete all but plain text.
struct Value {
    enum class Kind {
        Nothing, ///< of a flag
        Text,
        Word,        ///< one of the words
        WordList,    ///< some of the words, with commas between them
        WordAndText, ///< one of the words, "=" and a text
        File,
        Folder,
        FileOrFolder,
        NamedFile, ///< a text, "=" and a file
    };
    Kind kind = Kind::Nothing;
    std::string placeholder; ///< "FILE.duf|FILE.obj"
    std::string least, most; ///< of a number; may be empty
    std::vector<std::string> words;
    std::vector<std::string> endings; ///< of files, without the dot: "duf", "csv.gz"; none: files of any name
};

/// An option, or with an empty list of names something that stands alone.
struct Argument {
    std::vector<std::string> names; ///< "-h", "--help"
    std::string positional;         ///< its name in the help
    Value value;
    std::string description;
    std::string defaultText; ///< empty: none is told
    bool isRequired = false;
    bool canRepeat = false;                   ///< each with its own value
    bool takesSeveral = false;                ///< values one behind the other
    std::vector<std::string> needs, excludes; ///< names of options
    std::vector<std::string> oneOf;           ///< exactly one of these has to be given; this is one of them
};

struct Command {
    std::string name, description;
    std::string example; ///< lines of a shell; may be empty
    std::vector<Argument> options, positionals;
    std::vector<Command> subcommands; ///< without those that are hidden
};

/// Reads it off the parser itself, so that nothing here can differ from the help.
Command ReadCommand(const CLI::App& app);

} // namespace documents
