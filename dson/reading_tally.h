// What reading a document meets all over it.
// SPDX-License-Identifier: MIT

#pragma once

#include "odd_members.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace dson {

struct ParseContext;

/// Of numbers and lists, which are read all over a document, so that its tally is not handed around: the
/// youngest one of a thread hears of all that the thread reads.
class ReadingTally {
public:
    ReadingTally();
    ~ReadingTally();
    ReadingTally(const ReadingTally&) = delete;
    ReadingTally& operator=(const ReadingTally&) = delete;

    static void addText(std::string_view text); ///< is a number
    /// @param channel  whose value should be a number and is none
    static void addSpoilt(std::string_view channel);
    /// @param member  that should be a list and is none
    static void addNoList(std::string_view member);
    /// @param owner  an object that has the member
    static void addOdd(const Element& owner, std::string_view member, OddMembers::Wanted wanted);
    /// Whether a member has been tallied as one that counts for nothing.
    /// @param name  the document's own copy
    static bool isUnread(std::string_view name);

    void tell(ParseContext& context) const;

private:
    struct Kind {
        std::size_t count = 0;
        std::string example, part; ///< of the first one

        void add(std::string_view what);
    };

    void tellSpoilt(ParseContext& context) const;

    Kind _texts, _spoilt;
    std::set<std::string, std::less<>> _noLists, _partsWithNoLists;
    OddMembers _odd;
    ReadingTally* _outer;
};

/// The number that a text is, but for spaces around it, which is tallied; nothing where it is none.
std::optional<double> NumberInText(std::string_view text);

} // namespace dson
