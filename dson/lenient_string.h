// Strings of JSON texts that others wrote.
// SPDX-License-Identifier: MIT

#pragma once

#include "oddities.h"

#include <string>
#include <string_view>

namespace dson {

/// Appends a string with its quotes, in strict JSON.
/// @param at  the opening quote, double or single; afterwards behind the closing one
/// @return false when it has no end
bool MendString(std::string_view text, std::size_t& at, std::string& result, Oddities& oddities);

} // namespace dson
