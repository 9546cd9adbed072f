// A lenient look into parsed JSON: what is absent or of another type reads as a default.
// SPDX-License-Identifier: MIT

#pragma once

#include <cassert>
#include <optional>
#include <string>
#include <string_view>

#include <simdjson.h>

namespace dson {

using Element = simdjson::dom::element;

/// The items of an array, which the element must be. By value: iterating over a temporary result would dangle.
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

inline std::optional<Element> Find(const Element& object, std::string_view key)
{
    Element found;
    if (!object.is_object() || Members(object).at_key(key).get(found) != simdjson::SUCCESS)
        return std::nullopt;
    return found;
}

inline std::string Text(const Element& object, std::string_view key, std::string_view fallback = {})
{
    const auto found = Find(object, key);
    return std::string(found && found->is_string() ? found->get_string().value_unsafe() : fallback);
}

/// Numbers of any kind, and booleans as 0 and 1.
inline std::optional<double> AsNumber(const Element& element)
{
    double number = 0.0;
    if (element.get(number) == simdjson::SUCCESS)
        return number;
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
        return;
    }
    for (const Element item : Items(*found))
        visit(item);
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
