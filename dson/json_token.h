// Words and numbers of JSON texts that others wrote.
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>

namespace dson {

/// What a word outside of strings means.
struct JsonToken {
    enum class Kind {
        Plain,     ///< as it should be
        Renamed,   ///< a number or literal in a notation of another language
        Rounded,   ///< a whole number that 64 bits do not hold
        NotFinite, ///< infinite, too large for a double, or no number
        Unknown
    };
    Kind kind = Kind::Unknown;
    std::string text; ///< strict JSON; nothing for an unknown word
};

JsonToken ReadToken(std::string_view word);

/// Characters that such words are made of.
bool IsTokenCharacter(char c);

} // namespace dson
