// A lenient look into parsed JSON: what is absent or of another type reads as a default.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/cancellation.h"
#include "reading_tally.h"

#include <cassert>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

#include <simdjson.h>

namespace dson {

/// The items of an array, which the element must be. By value: iterating over a temporary result would
/// dangle.
inline simdjson::dom::array Items(const Element& element)
{
    simdjson::dom::array items;
    const simdjson::error_code error = element.get(items);
    assert(error == simdjson::SUCCESS);
    (void)error;
    return items;
}

/// The members of an object, which the element must be.
inline simdjson::dom::object Members(const Element& element)
{
    simdjson::dom::object members;
    const simdjson::error_code error = element.get(members);
    assert(error == simdjson::SUCCESS);
    (void)error;
    return members;
}

/// A member that is null counts as absent.
inline std::optional<Element> Find(const Element& object, std::string_view key)
{
    Element found;
    if (!object.is_object() || Members(object).at_key(key).get(found) != simdjson::SUCCESS || found.is_null())
        return std::nullopt;
    return found;
}

/// Empty for what is no text.
inline std::string_view TextOf(const Element& element)
{
    return element.is_string() ? element.get_string().value_unsafe() : std::string_view();
}

/// What is no text is tallied.
inline std::string Text(const Element& object, std::string_view key, std::string_view fallback = {})
{
    const auto found = Find(object, key);
    if (found && !found->is_string())
        ReadingTally::addOdd(object, key, OddMembers::Wanted::Text);
    return std::string(found && found->is_string() ? TextOf(*found) : fallback);
}

/// Likewise, where nothing needs to be told.
inline std::string_view QuietText(const Element& object, std::string_view key)
{
    const auto found = Find(object, key);
    return found ? TextOf(*found) : std::string_view();
}

/// What is no object is tallied.
inline std::optional<Element> FindObject(const Element& object, std::string_view key)
{
    const auto found = Find(object, key);
    if (!found || found->is_object())
        return found;
    ReadingTally::addOdd(object, key, OddMembers::Wanted::Object);
    return std::nullopt;
}

/// What single precision cannot hold would turn infinite in the scene.
inline bool FitsDial(double number)
{
    return std::abs(number) <= static_cast<double>(std::numeric_limits<float>::max());
}

/// Numbers of any kind, also in texts, and booleans as 0 and 1. What no dial can hold counts as no number.
inline std::optional<double> AsNumber(const Element& element)
{
    double number = 0.0;
    if (element.get(number) == simdjson::SUCCESS)
        return FitsDial(number) ? std::optional<double>(number) : std::nullopt;
    std::string_view text;
    if (element.get(text) == simdjson::SUCCESS)
        return NumberInText(text);
    bool flag = false;
    if (element.get(flag) == simdjson::SUCCESS)
        return flag ? 1.0 : 0.0;
    return std::nullopt;
}

/// What is no number is tallied.
inline std::optional<double> Number(const Element& object, std::string_view key)
{
    const auto found = Find(object, key);
    const auto number = found ? AsNumber(*found) : std::nullopt;
    if (found && !number)
        ReadingTally::addOdd(object, key, OddMembers::Wanted::Number);
    return number;
}

/// A count; what is no whole number that 32 bits hold reads as the fallback.
inline std::int64_t Count(const Element& object, std::string_view key, std::int64_t fallback)
{
    const auto found = Find(object, key);
    const double number = found ? AsNumber(*found).value_or(NAN) : NAN;
    const bool isCount = number == std::floor(number) && std::abs(number) <= 4294967295.0;
    return isCount ? static_cast<std::int64_t>(number) : fallback;
}

/// A number other than 0 says yes. Words for it, and what says neither, are tallied.
inline std::optional<bool> GivenFlag(const Element& object, std::string_view key)
{
    const auto found = Find(object, key);
    if (!found)
        return std::nullopt;
    if (const auto number = AsNumber(*found))
        return *number != 0.0;
    const std::optional<bool> word = FlagInWord(TextOf(*found));
    ReadingTally::addOdd(object, key, word ? OddMembers::Wanted::NoWord : OddMembers::Wanted::Flag);
    return word;
}

inline bool Flag(const Element& object, std::string_view key, bool fallback)
{
    return GivenFlag(object, key).value_or(fallback);
}

/// Calls visit(element) for each item of an array member; a single object counts as an array of one.
template <class Visit>
void ForEach(const Element& object, std::string_view key, Visit visit)
{
    const auto found = Find(object, key);
    if (!found)
        return;
    if (!found->is_array()) {
        if (found->is_object())
            visit(*found);
        else
            ReadingTally::addNoList(key);
        return;
    }
    for (const Element item : Items(*found)) {
        base::ThrowIfCancelled();
        visit(item);
    }
}

/// Likewise for each of those that are objects; others are tallied.
template <class Visit>
void ForEachObject(const Element& object, std::string_view key, Visit visit)
{
    bool hasOthers = false;
    ForEach(object, key, [&](const Element& item) {
        if (item.is_object())
            visit(item);
        else
            hasOthers = hasOthers || !item.is_null();
    });
    if (hasOthers)
        ReadingTally::addOdd(object, key, OddMembers::Wanted::Objects);
}

/// Calls visit(row) for each row of a `{count, values}` list, or of a bare array.
template <class Visit>
void ForEachValue(const Element& object, std::string_view key, Visit visit)
{
    const auto found = Find(object, key);
    if (!found)
        return;
    if (!found->is_object())
        return ForEach(object, key, visit);
    if (!Find(*found, "values") && Members(*found).size() > (Find(*found, "count") ? 1u : 0u))
        ReadingTally::addNoList(key);
    ForEach(*found, "values", visit);
}

/// Likewise visit(text) for a list of texts; what is none is tallied and empty.
template <class Visit>
void ForEachText(const Element& object, std::string_view key, Visit visit)
{
    bool hasOthers = false;
    ForEachValue(object, key, [&](const Element& item) {
        hasOthers = hasOthers || !item.is_string();
        visit(TextOf(item));
    });
    if (hasOthers)
        ReadingTally::addOdd(object, key, OddMembers::Wanted::Texts);
}

} // namespace dson
