// Characters as UTF-8 has them.
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace dson {

/// @param code  of a character, not of half a surrogate pair
void AppendUtf8(std::string& text, std::uint32_t code);

/// Bytes of the character at that place; 0 where there is no well-formed one.
std::size_t Utf8Length(std::string_view text, std::size_t at);

} // namespace dson
