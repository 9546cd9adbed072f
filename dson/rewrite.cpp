// Rewriting a file without losing what others put into it.
// SPDX-License-Identifier: MIT

#include "rewrite.h"

#include "base/errors.h"
#include "dson/file_text.h"
#include "parsed_text.h"

#include <algorithm>
#include <set>
#include <string_view>

namespace dson {

namespace {

/// Members that are left out when they have their default, so that an old one must not come back.
const std::set<std::string_view> knownMembers{
    "label",
    "visible",
    "locked",
    "auto_follow",
    "current_value",
    "min",
    "max",
    "clamped",
    "step_size",
    "enum_values",
    "target_channel",
    "region",
    "hd_url",
    "display_as_percent",
    "hd_checksum",
};

Json Raw(const Element& element)
{
    const std::string text = simdjson::minify(element);
    return Json::binary(Json::binary_t::container_type(text.begin(), text.end()));
}

Json Merge(Json fresh, const Element& old);

bool HasSameId(const Json& fresh, const Element& old)
{
    const auto id = fresh.find("id");
    return id != fresh.end() && id->is_string() && id->get_ref<const std::string&>() == Text(old, "id");
}

/// A list of things with ids: the new ones in place of the old of the same id, the others kept.
Json MergeById(const Json& fresh, const Element& old)
{
    Json merged = Json::array();
    std::vector<bool> isTaken(fresh.size());
    for (const Element item : Items(old)) {
        std::size_t same = 0;
        while (same < fresh.size() && (isTaken[same] || !HasSameId(fresh[same], item)))
            ++same;
        merged.push_back(same < fresh.size() ? Merge(fresh[same], item) : Raw(item));
        if (same < fresh.size())
            isTaken[same] = true;
    }
    for (std::size_t i = 0; i < fresh.size(); ++i)
        if (!isTaken[i])
            merged.push_back(fresh[i]);
    return merged;
}

bool IsListOfIds(const Json& json)
{
    return json.is_array() && !json.empty() &&
           std::all_of(json.begin(), json.end(), [](const Json& item) { return item.contains("id"); });
}

/// The old members in their order, each with its new value if there is one; new members behind the one that
/// they come behind.
Json MergeObjects(const Json& fresh, const Element& old)
{
    Json merged = Json::object();
    auto next = fresh.begin();
    const auto takeNew = [&] {
        for (; next != fresh.end() && (merged.contains(next.key()) || !Find(old, next.key())); ++next)
            if (!merged.contains(next.key()))
                merged[next.key()] = next.value();
    };
    takeNew();
    for (const auto member : Members(old)) {
        const std::string key(member.key);
        const auto found = fresh.find(key);
        if (merged.contains(key) || (found == fresh.end() && knownMembers.count(member.key)))
            continue;
        merged[key] = found != fresh.end() ? Merge(*found, member.value) : Raw(member.value);
        takeNew();
    }
    return merged;
}

Json Merge(Json fresh, const Element& old)
{
    if (fresh.is_object() && old.is_object())
        return MergeObjects(fresh, old);
    if (IsListOfIds(fresh) && old.is_array())
        return MergeById(fresh, old);
    // An empty text says nothing: a description that somebody wrote stays.
    const bool isEmptyText = fresh.is_string() && fresh.get_ref<const std::string&>().empty();
    return isEmptyText && old.is_string() ? Raw(old) : fresh;
}

} // namespace

Json KeepUnknown(Json fresh, const std::filesystem::path& present)
{
    std::error_code error;
    if (!std::filesystem::is_regular_file(present, error))
        return fresh;
    try {
        const ParsedText old(ReadText(present), present.string());
        return Find(old.root(), "asset_info") ? Merge(std::move(fresh), old.root()) : fresh;
    } catch (const base::Error&) {
        return fresh;
    }
}

} // namespace dson
