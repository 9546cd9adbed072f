// Compressed files.
// SPDX-License-Identifier: MIT

#include "dson/gzip.h"

#include "base/errors.h"
#include "fuzz/target.h"

namespace {

std::vector<std::string> Seeds()
{
    const std::string twice = dson::Compress("{\"a\": 1}") + dson::Compress(std::string(5000, ' '));
    return {dson::Compress(""), dson::Compress("{\"file_version\": \"0.6.0.0\"}"), twice,
            twice.substr(0, twice.size() - 3), "\x1f\x8b\x08\x1c" + std::string(40, 'n')};
}

void Feed(std::string_view bytes)
{
    constexpr std::size_t limit = 1 << 20;
    try {
        fuzz::Demand(dson::Decompress(bytes, "input", limit).size() <= limit, "the limit holds");
    } catch (const base::FormatError&) {
    }
    fuzz::Demand(dson::Decompress(dson::Compress(bytes), "input", bytes.size()) == bytes,
                 "what was compressed comes back");
}

const fuzz::Registration registration({"gzip", Seeds, Feed});

} // namespace
