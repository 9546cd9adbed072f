// What a finished conversion tells in words.
// SPDX-License-Identifier: MIT

#include "gnt_outcome-texts.h"

#include "ks_string.h"

#include <vector>

#include <fmt/format.h>

// The doubled list items are part of the text that the success dialog shows.
std::string GntMissingNote(const GntMissingMorphs& missing)
{
    if (missing.empty())
        return std::string();
    std::vector<std::string> items;
    for (const auto& morph : missing)
        items.push_back(fmt::format("<li>{} ({:03.1f}%)</li>", morph.first, morph.second * 100.0f));
    return fmt::format("<p><b>Note:</b> The following morphs had non-zero values in the source figure but "
                       "could not be found in the target figure created by the Transfer "
                       "Utility:</p><ul><li>{}</li></ul>",
                       kst::str::Implode("</li><li>", items));
}

std::string GntElapsedText(std::int64_t milliseconds)
{
    return kst::str::FormatSecondsElapsed(static_cast<std::uint64_t>(milliseconds / 1000));
}
