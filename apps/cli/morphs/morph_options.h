// The options of a conversion of single morphs, wherever they are given.
// SPDX-License-Identifier: MIT

#pragma once

#include "morphs/morph_conversion.h"
#include "save_options.h"

#include <string>
#include <vector>

namespace CLI {
class App;
} // namespace CLI

namespace cli {

/// The arguments as they stand on the command line; its own defaults are those of the options.
struct ConvertMorphsArguments : SaveArguments {
    std::vector<std::string> content, patterns;
    std::string source, target, list, path, suffix, resolution = "base", page;
    double value = 1.0;
    bool controllers = false, correctives = false;
};

/// Adds them in the order in which help lists them.
void AddConvertMorphsOptions(CLI::App& command, ConvertMorphsArguments& arguments);

/// Those alone that conversions of characters have not, for several conversions that say the rest themselves.
void AddMorphDefaults(CLI::App& command, ConvertMorphsArguments& arguments);

/// @throws UsageError  they cannot be meant; tells nothing of what files hold
MorphConversionRequest MakeRequest(const ConvertMorphsArguments& arguments);

} // namespace cli
