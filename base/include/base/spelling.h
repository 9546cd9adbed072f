// Words that are meant by others.
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace base {

/// Levenshtein's number of insertions, deletions and replacements that turn `wanted` into the candidate, or
/// into the part of it that is most like it.
std::size_t EditDistance(const std::string& wanted, const std::string& candidate, bool isPartEnough);

/// What somebody who misspelt a word may have meant: one that differs in a third of its letters at most, or
/// begins with it. Empty where there is none.
std::string LikelyMeant(const std::string& word, const std::vector<std::string>& candidates);

} // namespace base
