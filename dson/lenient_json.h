// JSON as it ought not to be written, made strict.
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dson {

class RepeatedNames;

/// A place in a text; both count from 1, columns in characters.
struct TextPlace {
    std::size_t line = 1, column = 1;
};

/// @param at  a byte of the text, or its size
TextPlace PlaceOf(std::string_view text, std::size_t at);

/// A text of one value, and what was done to it.
struct MendedJson {
    std::string text; ///< strict JSON in UTF-8, unless there is an error
    /// One short lower-case phrase for each kind of oddity, with count and first place.
    std::vector<std::string> oddities;
    std::optional<std::size_t>
        error; ///< the byte at which no sense can be made of the text; its size at its end
};

/// Reads on where other readers do: stray and missing commas, comments, numbers that are not finite or too
/// large or in other notations, quotes that are single or missing, characters and bytes that no string should
/// hold, what follows the end. A value that cannot be told and what is nested deeper than the parser goes
/// become null. The time is in proportion to the text's length.
/// @param names  hears of the names of all objects, at their places in the text; null for nobody
MendedJson Mend(std::string_view text, RepeatedNames* names = nullptr);

} // namespace dson
