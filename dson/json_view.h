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

using Element = simdjson::dom::element;

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

inline std::string Text(const Element& object, std::string_view key, std::string_view fallback = {})
{
    const auto found = Find(object, key);
    return std::string(found && found->is_string() ? found->get_string().value_unsafe() : fallback);
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

inline std::optional<double> Number(const Element& object, std::string_view key)
{
    const auto found = Find(object, key);
    return found ? AsNumber(*found) : std::nullopt;
}

/// A count; what is no whole number that 32 bits hold reads as the fallback.
inline std::int64_t Count(const Element& object, std::string_view key, std::int64_t fallback)
{
    const double number = Number(object, key).value_or(static_cast<double>(fallback));
    const bool isCount = number == std::floor(number) && std::abs(number) <= 4294967295.0;
    return isCount ? static_cast<std::int64_t>(number) : fallback;
}

inline bool Flag(const Element& object, std::string_view key, bool fallback)
{
    return Number(object, key).value_or(fallback ? 1.0 : 0.0) != 0.0;
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

/// Calls visit(row) for each row of a `{count, values}` list, or of a bare array.
template <class Visit>
void ForEachValue(const Element& object, std::string_view key, Visit visit)
{
    const auto found = Find(object, key);
    if (!found)
        return;
    if (found->is_object())
        ForEach(*found, "values", visit);
    else
        ForEach(object, key, visit);
}

} // namespace dson
