// Leaving out of a text what is read later.
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

namespace dson {

/// Empties the lists of displacements of a JSON text that hold nothing but rows of numbers; they are most of
/// a morph's file. What is in them is not looked at. Nothing where there are none.
/// @return false when the text has none, and `shorter` is left alone
bool SkipDeltas(const std::string& text, std::string& shorter);

} // namespace dson
