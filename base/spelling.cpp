// Words that are meant by others.
// SPDX-License-Identifier: MIT

#include "base/spelling.h"

#include <algorithm>
#include <numeric>

namespace base {

std::size_t EditDistance(const std::string& wanted, const std::string& candidate, bool isPartEnough)
{
    std::vector<std::size_t> row(candidate.size() + 1, 0);
    if (!isPartEnough)
        std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t j = 0; j < candidate.size(); ++j) {
            const std::size_t replaced = diagonal + (wanted[i] == candidate[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({row[j] + 1, diagonal + 1, replaced});
        }
    }
    return isPartEnough ? *std::min_element(row.begin(), row.end()) : row.back();
}

std::string LikelyMeant(const std::string& word, const std::vector<std::string>& candidates)
{
    constexpr std::size_t longestWord =
        64; // what is longer is none of ours, and the comparison takes its square
    constexpr std::size_t shortestBeginning = 3;
    if (word.size() > longestWord)
        return {};
    std::string best;
    std::size_t least = word.size();
    for (const std::string& candidate : candidates) {
        const bool isBeginning =
            word.size() >= shortestBeginning && candidate.compare(0, word.size(), word) == 0;
        const std::size_t distance = isBeginning ? 1 : EditDistance(word, candidate, false);
        if (distance < least && 3 * distance <= candidate.size()) {
            best = candidate;
            least = distance;
        }
    }
    return best;
}

} // namespace base
