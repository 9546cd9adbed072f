// Members that are of other kinds than they should be.
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include <simdjson.h>

namespace dson {

struct ParseContext;

using Element = simdjson::dom::element;

/// Told once for each name of a member and what it should be.
class OddMembers {
public:
    enum class Wanted {
        Text,
        Number,
        Flag,
        NoWord,
        Object,
        Texts,
        Pairs,
        Objects,
        Axes,
        Ordered,
        Within,
        Whole
    };

    /// Counts the owner's member of that name once, however often it is looked at.
    void add(const Element& owner, std::string_view name, Wanted wanted);
    /// Whether that is one of them and counts for nothing.
    /// @param name  the document's own copy
    bool hasUnread(std::string_view name) const;
    void tell(ParseContext& context) const;

private:
    struct Tally {
        std::size_t count = 0;
        std::string example; ///< id of the first part that has one
    };
    std::map<std::pair<std::string, Wanted>, Tally> _tallies;
    std::map<const char*, Wanted> _met; ///< names where the document has them
};

/// While it lives, what is read belongs to this part of the document: its id is told with what is odd.
class PartBeingRead {
public:
    explicit PartBeingRead(const Element& part);
    ~PartBeingRead();
    PartBeingRead(const PartBeingRead&) = delete;
    PartBeingRead& operator=(const PartBeingRead&) = delete;

    /// Empty for none.
    static std::string id();

private:
    Element _part;
    PartBeingRead* _outer;
};

/// What programs and people write for a boolean.
std::optional<bool> FlagInWord(std::string_view text);

} // namespace dson
