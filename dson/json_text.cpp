// JSON as DSON files write it: members in the order they were added, floats in single precision.
// SPDX-License-Identifier: MIT

#include "json_text.h"

#include "base/cancellation.h"
#include "geometry/deltas.h"
#include "number_text.h"

#include <algorithm>
#include <cstring>

namespace dson {

namespace {

constexpr Json::binary_t::subtype_type deltaRows = 1;

struct DeltaRow {
    std::uint32_t vertex;
    geometry::Vec3f delta;
};
static_assert(sizeof(DeltaRow) == 16);

std::string Dump(const Json& json)
{
    // A name that is not UTF-8 keeps its readable part rather than spoiling the file.
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

bool IsRow(const Json& json)
{
    return std::all_of(json.begin(), json.end(),
                       [](const Json& item) { return item.is_primitive() && !item.is_binary(); });
}

void AppendPrimitive(std::string& text, const Json& json)
{
    if (json.is_number_float())
        AppendNumber(text, json.get<float>(), NumberStyle::ListEntry);
    else if (json.is_number_unsigned())
        text += std::to_string(json.get<std::uint64_t>());
    else
        text += Dump(json);
}

void AppendRow(std::string& text, const Json& row)
{
    text += '[';
    for (std::size_t i = 0; i < row.size(); ++i) {
        if (i > 0)
            text += ',';
        AppendPrimitive(text, row[i]);
    }
    text += ']';
}

void Append(std::string& text, const Json& json, int indent);

void AppendItems(std::string& text, const Json& json, int indent)
{
    const std::string margin(static_cast<std::size_t>(indent + 1), '\t');
    bool first = true;
    for (auto item = json.begin(); item != json.end(); ++item) {
        text += first ? "\n" : ",\n";
        first = false;
        text += margin;
        if (json.is_object())
            text += Dump(Json(item.key())) + " : ";
        Append(text, *item, indent + 1);
    }
    text += '\n';
    text.append(static_cast<std::size_t>(indent), '\t');
}

void AppendDeltaRows(std::string& text, const Json::binary_t& bytes, int indent)
{
    const std::string margin(static_cast<std::size_t>(indent + 1), '\t');
    text += '[';
    for (std::size_t at = 0; at < bytes.size(); at += sizeof(DeltaRow)) {
        base::ThrowIfCancelled();
        DeltaRow row;
        std::memcpy(&row, bytes.data() + at, sizeof row);
        text += at > 0 ? ",\n" : "\n";
        text += margin;
        text += '[';
        text += std::to_string(row.vertex);
        for (const float value : {row.delta.x, row.delta.y, row.delta.z}) {
            text += ',';
            AppendNumber(text, value, NumberStyle::ListEntry);
        }
        text += ']';
    }
    if (!bytes.empty()) {
        text += '\n';
        text.append(static_cast<std::size_t>(indent), '\t');
    }
    text += ']';
}

void Append(std::string& text, const Json& json, int indent)
{
    base::ThrowIfCancelled();
    if (json.is_object() && !json.empty()) {
        text += '{';
        AppendItems(text, json, indent);
        text += '}';
    } else if (json.is_array() && IsRow(json)) {
        AppendRow(text, json);
    } else if (json.is_array()) {
        text += '[';
        AppendItems(text, json, indent);
        text += ']';
    } else if (json.is_binary() && json.get_binary().has_subtype()) {
        AppendDeltaRows(text, json.get_binary(), indent);
    } else if (json.is_binary()) {
        text.append(json.get_binary().begin(), json.get_binary().end());
    } else {
        AppendPrimitive(text, json);
    }
}

} // namespace

std::string ToText(const Json& json)
{
    std::string text;
    Append(text, json, 0);
    text += '\n';
    return text;
}

Json RawText(const std::string& json)
{
    return Json::binary(Json::binary_t::container_type(json.begin(), json.end()));
}

Json DeltaRows(const geometry::SparseDeltas& deltas)
{
    Json::binary_t::container_type bytes(deltas.size() * sizeof(DeltaRow));
    for (std::size_t i = 0; i < deltas.size(); ++i) {
        const DeltaRow row{deltas.vertices[i], deltas.deltas[i]};
        std::memcpy(bytes.data() + i * sizeof row, &row, sizeof row);
    }
    return Json::binary(std::move(bytes), deltaRows);
}

} // namespace dson
