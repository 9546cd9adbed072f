// Objects that say something twice.
// SPDX-License-Identifier: MIT

#pragma once

#include "json_view.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace dson {

/// Hears of the names of a text in their order and counts those that their object has already. Lists of
/// things are not among them: all of the name are read.
class RepeatedNames {
public:
    void open() { _open.emplace_back(); } ///< an object
    void close() { _open.pop_back(); }
    /// @param name  in strict JSON, without its quotes
    /// @param at    where it stands
    void add(std::string_view name, std::size_t at);

    /// With the lines of the first few; empty for none.
    std::string phrase(std::string_view text) const;

private:
    struct Repeated {
        std::string name;
        std::size_t at;
    };
    std::vector<std::unordered_set<std::string>> _open;
    std::size_t _count = 0;
    std::vector<Repeated> _first;
};

/// Whether there are any, wherever objects are read. Quick: lists of numbers are not gone through.
bool HasRepeatedNames(const Element& element);

} // namespace dson
