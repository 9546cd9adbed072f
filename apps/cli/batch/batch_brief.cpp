// What is kept of the result of a row for a page about all of them.
// SPDX-License-Identifier: MIT

#include "batch/batch_brief.h"

#include <algorithm>
#include <filesystem>

namespace cli {

namespace {

/// Null where there is none of the type.
const Json& Find(const Json& object, const char* key, bool (Json::*isRight)() const noexcept)
{
    static const Json none;
    const auto found = object.find(key);
    return object.is_object() && found != object.end() && ((*found).*isRight)() ? *found : none;
}

const Json& FindText(const Json& object, const char* key)
{
    return Find(object, key, &Json::is_string);
}

void AddIfThere(Json& brief, const char* key, const Json& value)
{
    if (!value.is_null())
        brief[key] = value;
}

/// A row of characters is called as its morphs, or as the figure.
std::string NameOf(const RowResult& result, const Json& report)
{
    if (const Json& name = FindText(result, "name"); !name.is_null())
        return name.get<std::string>();
    const Json& figures = Find(report, "figures", &Json::is_object);
    const Json& label = FindText(Find(figures, "source", &Json::is_object), "label");
    if (!label.is_null())
        return label.get<std::string>();
    const Json& source = FindText(result, "source");
    return source.is_null() ? std::string()
                            : std::filesystem::u8path(source.get<std::string>()).stem().u8string();
}

Json TextsOf(const Json& list)
{
    Json texts = Json::array();
    for (const Json& item : list)
        if (item.is_string())
            texts.push_back(item);
    return texts;
}

void AddReport(Json& brief, const Json& report)
{
    AddIfThere(brief, "kind", FindText(report, "kind"));
    for (const char* const key : {"created_morphs", "created"})
        if (const Json& made = Find(report, key, &Json::is_array); !made.is_null())
            brief["morphs"] = made.size();
    if (const Json& skipped = Find(report, "skipped", &Json::is_array); !skipped.empty())
        brief["left_out"] = skipped.size();
    const Json& distance = Find(report, "surface_distance_mm", &Json::is_object);
    for (const char* const key : {"mean", "p95", "max"})
        if (const Json& value = Find(distance, key, &Json::is_number); !value.is_null())
            brief["distance"][key] = value;
    AddIfThere(brief, "page", FindText(report, "report"));
    if (const Json& warnings = Find(report, "warnings", &Json::is_array); !warnings.empty())
        brief["warnings"] = TextsOf(warnings);
}

} // namespace

Json BriefOf(const RowResult& result)
{
    const Json& report = Find(result, "report", &Json::is_object);
    Json brief{{"name", NameOf(result, report)}};
    AddReport(brief, report);
    for (const char* const key : {"seconds", "peak_memory_mib"})
        AddIfThere(brief, key, Find(result, key, &Json::is_number));
    AddIfThere(brief, "picture", FindText(result, "picture"));
    // Warnings of a row that failed come beside its error.
    if (const Json& warnings = Find(result, "warnings", &Json::is_array); !warnings.empty())
        brief["warnings"] = TextsOf(warnings);
    return brief;
}

} // namespace cli
