// Colours where a terminal shows them.
// SPDX-License-Identifier: MIT

#include "color.h"

#include <atomic>
#include <cstdlib>
#include <string_view>

#include <unistd.h>

namespace cli {

namespace {

std::atomic<ColorUse> colorUse{ColorUse::Auto};

std::string_view Environment(const char* name)
{
    const char* const value = std::getenv(name);
    return value ? value : "";
}

/// ECMA-48: select graphic rendition.
const char* Begin(Color color)
{
    switch (color) {
    case Color::Error:
        return "\x1b[1;31m";
    case Color::Warning:
        return "\x1b[1;33m";
    case Color::Heading:
        break;
    }
    return "\x1b[1m";
}

} // namespace

void UseColor(ColorUse use)
{
    colorUse = use;
}

bool HasColor(Stream stream)
{
    if (colorUse != ColorUse::Auto)
        return colorUse == ColorUse::Always;
    return Environment("NO_COLOR").empty() && Environment("TERM") != "dumb" &&
           isatty(stream == Stream::Output ? STDOUT_FILENO : STDERR_FILENO) == 1;
}

std::string Colored(const std::string& text, Color color, Stream stream)
{
    return HasColor(stream) ? Begin(color) + text + "\x1b[0m" : text;
}

std::string ProgramPrefix(Color color)
{
    return Colored("gantrel:", color, Stream::Errors) + ' ';
}

} // namespace cli
