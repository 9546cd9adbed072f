// Turning the members of a DSON file into values: grafts.
// SPDX-License-Identifier: MIT

#include "base/counted.h"
#include "json_rows.h"
#include "parts.h"

#include <fmt/format.h>

namespace dson {

namespace {

/// Calls visit(row) for each row of a list, which may be missing; what is no list is one strange entry.
template <class Visit>
void ForEachEntry(const Element& graft, std::string_view key, std::size_t& strange, Visit visit)
{
    const auto list = Find(graft, key);
    strange += list && !list->is_array() && !list->is_object();
    ForEachValue(graft, key, visit);
}

} // namespace

geometry::Graft ParseGraft(const Element& json, const std::string& id, ParseContext& context)
{
    geometry::Graft graft;
    const auto member = Find(json, "graft");
    if (!member)
        return graft;
    if (!member->is_object()) {
        context.warn(id, "has a graft that is no object and is left out");
        return graft;
    }
    graft.vertexCount = ParseCount(*member, "vertex_count", id, context);
    graft.faceCount = ParseCount(*member, "poly_count", id, context);
    std::size_t strange = 0;
    ForEachEntry(*member, "vertex_pairs", strange, [&](const Element& row) {
        double pair[2];
        if (IsRow(row, pair, 2) && IsIndex(pair[0], unlimited) && IsIndex(pair[1], unlimited))
            graft.vertexPairs.push_back(
                {static_cast<std::uint32_t>(pair[0]), static_cast<std::uint32_t>(pair[1])});
        else
            ++strange;
    });
    ForEachEntry(*member, "hidden_polys", strange, [&](const Element& item) {
        const double face = AsNumber(item).value_or(NAN);
        if (IsIndex(face, unlimited))
            graft.hiddenFaces.push_back(static_cast<std::uint32_t>(face));
        else
            ++strange;
    });
    if (strange > 0)
        context.warn(id, fmt::format("{} of the graft that are no numbers of vertices or faces, left out",
                                     base::Counted(strange, "entry", "entries")));
    if (graft.vertexPairs.empty() && !graft.hiddenFaces.empty())
        context.warn(id, "has a graft that hides faces but joins no vertices; nothing is hidden");
    return graft;
}

} // namespace dson
