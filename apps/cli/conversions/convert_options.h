// The options of a conversion, wherever they are given.
// SPDX-License-Identifier: MIT

#pragma once

#include "conversions/conversion.h"
#include "save_options.h"

#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
} // namespace CLI

namespace cli {

/// The jobs of a conversion that names none, as `--jobs` has them.
std::string DefaultJobs();

/// The arguments as they stand on the command line; its own defaults are those of the options.
struct ConvertArguments : SaveArguments {
    std::vector<std::string> content, dials, bases;
    std::string source, target, jobs = DefaultJobs(), path = GNT_DEFAULT_MORPH_PATH;
    std::string resolution = "base", exportObj, pictures, page;
    std::optional<std::string> name;
    std::optional<int> subdLevel;
    bool adjustRig = false, registers = false, acceptMissing = false, keepTemporary = false;
};

enum class OptionUse {
    Whole,   ///< of one conversion, which they say all of
    Defaults ///< for several conversions, each of which says the rest itself
};

/// Adds them in the order in which help lists them.
void AddConvertOptions(CLI::App& command, ConvertArguments& arguments, OptionUse use);

/// @throws UsageError  they cannot be meant; tells nothing of what files hold
ConversionRequest MakeRequest(const ConvertArguments& arguments);

} // namespace cli
