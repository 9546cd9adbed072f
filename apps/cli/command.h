// What every subcommand of the command line has in common.
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace CLI {
class App;
} // namespace CLI

namespace cli {

/// The arguments are wrong in a way that parsing them cannot tell; ends with the exit code of wrong use.
/// The text is a short lower-case phrase without a full stop, as those of all errors.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// All that there was to say has been said: the program ends with this code.
struct ExitRequest {
    int code;
};

/// What `main` and the subcommands share. Lives as long as the program.
///
/// A subcommand is registered by a function of this shape, declared in its own header:
/// `void AddTransferCommand(CLI::App& program, CommandContext& context);`
/// It adds the subcommand with its options and, in CLI11's callback, sets `work`. The work runs after all
/// arguments have been understood; it returns on success and throws otherwise.
struct CommandContext {
    bool verbose = false; ///< the host's log goes to stderr
    bool quiet = false;   ///< neither progress nor what people are told beside results and errors
    int threads = 0;      ///< processors to keep busy; 0 for all
    std::vector<std::string>
        arguments; ///< as they were given, with settings in place of options that were not
    std::function<void()> work;
};

/// The file name as an argument gave it, in UTF-8, for messages and reports.
inline std::string FileText(const std::filesystem::path& file)
{
    return file.u8string();
}

} // namespace cli
