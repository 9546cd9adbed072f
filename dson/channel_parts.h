// Turning the members of a DSON file into values: channels and vectors of them.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/reader.h"
#include "json_view.h"

#include <optional>
#include <string>
#include <string_view>

namespace dson {

constexpr const char* axisIds[3] = {"x", "y", "z"};

/// Whether it is neither a number nor left open.
inline bool IsSpoiltNumber(const Element& element)
{
    const ReadingTally unheard;
    return !element.is_null() && !AsNumber(element);
}

/// Calls visit(axis, value) for a vector member given as channel objects or as plain numbers. Numbers for
/// other axes than three, and objects for none, are tallied; what is neither is left to the visitor.
template <class Visit>
void ForEachAxis(const Element& owner, std::string_view member, Visit visit)
{
    int index = 0, plain = 0, spoilt = 0;
    bool hasOthers = false;
    ForEach(owner, member, [&](const Element& item) {
        if (item.is_object()) {
            const std::string_view id = QuietText(item, "id");
            bool isAxis = false;
            for (int axis = 0; axis < 3; ++axis)
                if (id == axisIds[axis]) {
                    visit(axis, item);
                    isAxis = true;
                }
            hasOthers = hasOthers || !isAxis;
        } else {
            if (index < 3)
                visit(index, item);
            ++(index < 3 && IsSpoiltNumber(item) ? spoilt : plain);
        }
        ++index;
    });
    if (hasOthers || (plain > 0 && plain + spoilt != 3))
        ReadingTally::addOdd(owner, member, OddMembers::Wanted::Axes);
}

/// Whether channels of the type have a value that is one number.
bool IsOneNumber(std::string_view type);
/// Likewise; those of unknown types may.
bool MayHoldNumber(std::string_view type);
/// The present value of a channel, else its default; a plain number stands for itself. Nothing where it says
/// none; what is no number but should be is tallied.
std::optional<double> GivenValue(const Element& channelOrNumber);
double ValueOf(const Element& channelOrNumber, double fallback);

Channel ParseChannel(const Element& json);
/// What a channel spells out besides its value.
ChannelChange ParseChannelChange(const Element& channel);

} // namespace dson
