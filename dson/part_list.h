// Lists of things, also where a file has something else in their place.
// SPDX-License-Identifier: MIT

#pragma once

#include "json_view.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace dson {

/// What was met in place of lists of things. Counts each kind and keeps the first few names.
class OddLists {
public:
    enum Kind { OneThing, Object, List, Repeated, Nested, NoThing, Senseless };

    void add(Kind kind, std::string_view name);
    /// One for each kind that was met.
    std::vector<std::string> phrases() const;

private:
    struct Tally {
        std::size_t count = 0;
        std::vector<std::string> names;
    };
    std::array<Tally, Senseless + 1> _tallies;
};

/// The objects of a list. One thing counts as a list of it, an object of things as the list of these, and of
/// several lists of the name all count.
std::vector<Element> PartsOf(const Element& owner, std::string_view name, OddLists& met);
struct KeyedPart {
    Element part;
    std::string_view key; ///< where the list is an object of things; else empty
};
std::vector<KeyedPart> KeyedPartsOf(const Element& owner, std::string_view name, OddLists& met); ///< likewise
/// The scenes of a file: a list counts as several, and so do members of the same name.
std::vector<Element> ScenesOf(const Element& root, OddLists& met);

} // namespace dson
