// What reading the numbers of a document meets.
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace dson {

struct ParseContext;

/// Numbers are read all over a document, so that its tally is not handed around: the youngest one of a thread
/// hears of all that the thread reads.
class NumberTally {
public:
    NumberTally();
    ~NumberTally();
    NumberTally(const NumberTally&) = delete;
    NumberTally& operator=(const NumberTally&) = delete;

    static void addText(std::string_view text); ///< is a number
    /// @param channel  whose value should be a number and is none
    static void addSpoilt(std::string_view channel);

    void tell(ParseContext& context) const;

private:
    struct Kind {
        std::size_t count = 0;
        std::string example;

        void add(std::string_view what);
    };

    Kind _texts, _spoilt;
    NumberTally* _outer;
};

/// The number that a text is, but for spaces around it, which is tallied; nothing where it is none.
std::optional<double> NumberInText(std::string_view text);

} // namespace dson
