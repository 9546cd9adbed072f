// What is told of a text that had to be mended.
// SPDX-License-Identifier: MIT

#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace dson {

enum class Oddity {
    StrayComma,
    MissingComma,
    NoValue,
    Comment,
    NotFinite,
    Rounded,
    Notation,
    DecimalComma,
    SingleQuotes,
    BareName,
    TooDeep,
    HalfCharacter,
    ControlCharacter,
    Backslash,
    ForeignByte,
    PaddingBehindEnd,
    TextBehindEnd
};

/// Counts each kind and keeps its first place.
class Oddities {
public:
    void add(Oddity kind, std::size_t at);
    /// One for each kind that was met, in the order of their first places.
    std::vector<std::string> phrases(std::string_view text) const;

private:
    struct Tally {
        std::size_t count = 0, first = 0;
    };
    std::array<Tally, static_cast<std::size_t>(Oddity::TextBehindEnd) + 1> _tallies;
};

} // namespace dson
