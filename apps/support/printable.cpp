// Texts from anywhere, for a terminal.
// SPDX-License-Identifier: MIT

#include "printable.h"

#include <fmt/format.h>

namespace app {

namespace {

std::string Escape(unsigned char c)
{
    return c == '\n' ? "\\n" : c == '\t' ? "\\t" : c == '\r' ? "\\r" : fmt::format("\\x{:02x}", c);
}

/// U+0080 to U+009F, which terminals may take for the beginning of a command.
bool IsSecondHalfOfControl(const std::string& text, std::size_t at)
{
    const auto c = static_cast<unsigned char>(text[at]);
    return at > 0 && static_cast<unsigned char>(text[at - 1]) == 0xC2 && c >= 0x80 && c < 0xA0;
}

} // namespace

std::string Printable(const std::string& text)
{
    std::string printable;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const auto c = static_cast<unsigned char>(text[at]);
        if (IsSecondHalfOfControl(text, at)) {
            printable.pop_back();
            printable += Escape(c);
        } else {
            printable += c < 0x20 || c == 0x7f ? Escape(c) : std::string(1, text[at]);
        }
    }
    return printable;
}

} // namespace app
