// Objects that say something twice.
// SPDX-License-Identifier: MIT

#include "repeated_names.h"

#include "base/cancellation.h"
#include "base/counted.h"
#include "dson/reader.h"
#include "lenient_json.h"

#include <algorithm>
#include <array>

#include <fmt/format.h>

namespace dson {

namespace {

bool IsListOfThings(std::string_view name)
{
    constexpr std::string_view names[] = {
        "geometry_library", "node_library", "modifier_library", "uv_set_library", "scene", "nodes",
        "modifiers",        "animations",   "geometries",       "joints"};
    return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

std::string Decoded(std::string_view name)
{
    if (name.find('\\') == name.npos)
        return std::string(name);
    simdjson::dom::parser parser;
    std::string_view decoded;
    const bool isRead = parser.parse('"' + std::string(name) + '"').get(decoded) == simdjson::SUCCESS;
    return std::string(isRead ? decoded : name);
}

/// Few names are compared with each other, many are looked up.
class NamesOfObject {
public:
    bool add(std::string_view name)
    {
        if (_count < _few.size()) {
            const auto end = _few.begin() + static_cast<std::ptrdiff_t>(_count);
            const bool isNew = std::find(_few.begin(), end, name) == end;
            _few[_count++] = name;
            return isNew;
        }
        if (_many.empty())
            _many.insert(_few.begin(), _few.end());
        return _many.insert(name).second;
    }

private:
    std::array<std::string_view, 16> _few;
    std::size_t _count = 0;
    std::unordered_set<std::string_view> _many;
};

bool HasRepeatedNamesInObject(const Element& object)
{
    NamesOfObject names;
    for (const simdjson::dom::key_value_pair member : Members(object)) {
        const bool isNew = names.add(member.key);
        if ((!isNew && !IsListOfThings(member.key)) || HasRepeatedNames(member.value))
            return true;
    }
    return false;
}

bool IsRowOfNumbers(const Element& item)
{
    return item.is_array() && Items(item).size() > 0 && (*Items(item).begin()).is_number();
}

bool HasRepeatedNamesInList(const Element& list)
{
    bool holdsThings = false;
    for (const Element item : Items(list)) {
        // Lists of numbers or of rows of them are most of a file.
        if (!holdsThings && (item.is_number() || IsRowOfNumbers(item)))
            return false;
        if (HasRepeatedNames(item))
            return true;
        holdsThings = holdsThings || item.is_object();
    }
    return false;
}

} // namespace

void RepeatedNames::add(std::string_view name, std::size_t at)
{
    constexpr std::size_t most = 3;
    std::string decoded = Decoded(name);
    if (_open.back().insert(decoded).second || IsListOfThings(decoded))
        return;
    if (_count++ < most)
        _first.push_back({std::move(decoded), at});
}

std::string RepeatedNames::phrase(std::string_view text) const
{
    if (_count == 0)
        return {};
    std::vector<std::string> places;
    for (const Repeated& repeated : _first)
        places.push_back(fmt::format("\"{}\" in line {}", repeated.name, PlaceOf(text, repeated.at).line));
    return fmt::format("has {} more than once; the first counts: {}",
                       base::Counted(_count, "member", "members"), fmt::join(places, ", "));
}

bool HasRepeatedNames(const Element& element)
{
    base::ThrowIfCancelled();
    if (element.is_object())
        return HasRepeatedNamesInObject(element);
    return element.is_array() && HasRepeatedNamesInList(element);
}

} // namespace dson
