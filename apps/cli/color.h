// Colours where a terminal shows them.
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

namespace cli {

enum class ColorUse { Auto, Always, Never };
enum class Stream { Output, Errors };
enum class Color { Error, Warning, Heading };

/// From now on, for the whole process. Auto, which it is from the start, means on a terminal that knows
/// colours, unless the environment has a NO_COLOR that is not empty.
void UseColor(ColorUse use);
bool HasColor(Stream stream);

/// The text as it is where there are no colours.
std::string Colored(const std::string& text, Color color, Stream stream);
/// What each sentence on standard error begins with.
std::string ProgramPrefix(Color color);

} // namespace cli
