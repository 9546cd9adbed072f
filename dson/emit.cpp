// DSON values as JSON, members in their documented order.
// SPDX-License-Identifier: MIT

#include "emit.h"

#include "base/cancellation.h"
#include "base/counted.h"
#include "base/errors.h"
#include "dson/uri.h"
#include "kept_parts.h"
#include "number_text.h"
#include "uv.h"

#include <algorithm>
#include <cmath>
#include <ctime>

namespace dson {

namespace {

float Finite(double value, const char* what, std::size_t index)
{
    const auto single = static_cast<float>(value);
    if (!std::isfinite(single))
        throw base::FormatError("{} {} is not a finite number", what, index);
    return single;
}

Json Styled(double value, NumberStyle style)
{
    std::string text;
    AppendNumber(text, value, style);
    return Json::binary(std::vector<std::uint8_t>(text.begin(), text.end()));
}

Json Number(double value)
{
    return Styled(value, NumberStyle::Setting);
}

Json List(Json values)
{
    const std::size_t count = values.size();
    return Json{{"count", count}, {"values", std::move(values)}};
}

std::string Timestamp()
{
    const std::time_t now = std::time(nullptr);
    std::tm utc{};
    gmtime_r(&now, &utc);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &utc);
    return text;
}

Json ChannelValue(const Channel& channel, double value)
{
    if (channel.type == "bool")
        return value != 0.0;
    if (channel.type == "string")
        return channel.text;
    return Number(value);
}

Json EmitChannel(const Channel& channel)
{
    Json json{{"id", channel.id}, {"type", channel.type}, {"name", channel.name}};
    if (!channel.label.empty())
        json["label"] = channel.label;
    if (channel.type == "alias") {
        json["visible"] = channel.visible;
        json["target_channel"] = channel.targetChannel;
        return json;
    }
    if (!channel.visible)
        json["visible"] = false;
    if (channel.locked)
        json["locked"] = true;
    if (channel.autoFollow)
        json["auto_follow"] = true;
    json["value"] = ChannelValue(channel, channel.value);
    if (channel.currentValue)
        json["current_value"] = ChannelValue(channel, *channel.currentValue);
    if (channel.min)
        json["min"] = Number(*channel.min);
    if (channel.max)
        json["max"] = Number(*channel.max);
    if (channel.clamped)
        json["clamped"] = true;
    if (channel.displayAsPercent)
        json["display_as_percent"] = true;
    if (channel.type == "float" || channel.type == "int")
        json["step_size"] = Number(channel.stepSize);
    if (!channel.enumValues.empty())
        json["enum_values"] = channel.enumValues;
    return json;
}

Json EmitVector(const std::array<Channel, 3>& channels)
{
    Json json = Json::array();
    for (const Channel& channel : channels)
        json.push_back(EmitChannel(channel));
    return json;
}

Json EmitRigVector(const std::array<double, 3>& values, const char* suffix)
{
    static const char* const axes[3] = {"x", "y", "z"};
    static const char* const letters[3] = {"X", "Y", "Z"};
    std::array<Channel, 3> channels;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        channels[axis].id = axes[axis];
        channels[axis].name = std::string(letters[axis]) + suffix;
        channels[axis].label = std::string(letters[axis]) + " " + suffix;
        channels[axis].value = values[axis];
        channels[axis].min = -10000.0;
        channels[axis].max = 10000.0;
        channels[axis].stepSize = 0.01;
    }
    return EmitVector(channels);
}

Json EmitPresentation(const std::string& type, const std::string& label)
{
    return Json{{"type", type},
                {"label", label},
                {"description", ""},
                {"icon_large", ""},
                {"colors", {{0.3529412f, 0.3529412f, 0.3529412f}, {1.0f, 1.0f, 1.0f}}}};
}

const char* OperationName(Operation::Kind kind)
{
    using Kind = Operation::Kind;
    switch (kind) {
    case Kind::PushUrl:
    case Kind::PushValue:
    case Kind::PushKnot:
        return "push";
    case Kind::Add:
        return "add";
    case Kind::Sub:
        return "sub";
    case Kind::Mult:
        return "mult";
    case Kind::Div:
        return "div";
    case Kind::Inv:
        return "inv";
    case Kind::Neg:
        return "neg";
    case Kind::SplineLinear:
        return "spline_linear";
    case Kind::SplineConstant:
        return "spline_constant";
    case Kind::SplineTcb:
        return "spline_tcb";
    }
    return "push";
}

/// @param knotLength  numbers in a knot: in and out, and three more for splines with tension
Json EmitOperation(const Operation& operation, std::size_t knotLength)
{
    Json json{{"op", OperationName(operation.kind)}};
    if (operation.kind == Operation::Kind::PushUrl)
        json["url"] = operation.url;
    if (operation.kind == Operation::Kind::PushValue)
        json["val"] = ExactNumber(operation.value);
    if (operation.kind == Operation::Kind::PushKnot)
        for (std::size_t i = 0; i < knotLength; ++i)
            json["val"].push_back(ExactNumber(operation.knot[i]));
    return json;
}

Json EmitNames(const std::vector<std::string>& names, const char* fallback)
{
    return List(names.empty() ? Json::array({fallback}) : Json(names));
}

Json EmitPolygons(const geometry::Topology& topology)
{
    Json rows = Json::array();
    for (std::size_t f = 0; f < topology.faceCount(); ++f) {
        base::ThrowIfCancelled();
        const auto corners = topology.face(f);
        if (corners.size() > 4)
            throw base::FormatError("face {} has {} corners; a figure's faces have three or four", f,
                                    corners.size());
        Json row = Json::array();
        row.push_back(topology.faceGroups.empty() ? 0u : topology.faceGroups[f]);
        row.push_back(topology.faceSurfaces.empty() ? 0u : topology.faceSurfaces[f]);
        for (const std::uint32_t vertex : corners)
            row.push_back(vertex);
        rows.push_back(std::move(row));
    }
    return List(std::move(rows));
}

Json EmitPositions(const std::vector<geometry::Vec3f>& positions)
{
    Json rows = Json::array();
    for (std::size_t v = 0; v < positions.size(); ++v) {
        base::ThrowIfCancelled();
        rows.push_back({Finite(positions[v].x, "vertex", v), Finite(positions[v].y, "vertex", v),
                        Finite(positions[v].z, "vertex", v)});
    }
    return List(std::move(rows));
}

/// The dials of the mesh's resolution.
Json EmitResolutionChannels(int level)
{
    Channel view;
    view.id = view.name = "SubDIALevel";
    view.type = "int";
    view.label = "View SubD Level";
    view.value = level;
    view.min = 0.0;
    view.max = 5.0;
    Channel render = view;
    render.id = render.name = "SubDRenderLevel";
    render.label = "Render SubD Level (Minimum)";
    render.value = 2;
    Json channels = Json::array();
    for (const Channel& channel : {view, render})
        channels.push_back({{"channel", EmitChannel(channel)}, {"group", "/General/Mesh Resolution"}});
    return Json{
        {"type", "studio_geometry_channels"}, {"version", "0.1.8"}, {"channels", std::move(channels)}};
}

Json EmitCreases(const std::vector<geometry::Crease>& creases)
{
    Json values = Json::array();
    for (const geometry::Crease& crease : creases)
        values.push_back(Json::array({crease.a, crease.b, crease.sharpness}));
    return {{"count", creases.size()}, {"values", std::move(values)}};
}

} // namespace

Json ExactNumber(double value)
{
    return Styled(value, NumberStyle::Exact);
}

Json EmitFormulas(const std::vector<Formula>& formulas)
{
    Json list = Json::array();
    for (const Formula& formula : formulas) {
        Json json{{"output", formula.output}};
        if (formula.stage == Formula::Stage::Multiply)
            json["stage"] = "mult";
        json["operations"] = Json::array();
        const bool hasTension =
            std::any_of(formula.operations.begin(), formula.operations.end(), [](const Operation& operation) {
                return operation.kind == Operation::Kind::SplineTcb;
            });
        for (const Operation& operation : formula.operations)
            json["operations"].push_back(EmitOperation(operation, hasTension ? 5 : 2));
        list.push_back(std::move(json));
    }
    return list;
}

Json EmitWeights(const std::vector<std::uint32_t>& vertices, const std::vector<float>& weights)
{
    if (vertices.size() != weights.size())
        throw base::FormatError("weight map has {} but {}", base::CountedVertices(vertices.size()),
                                base::Counted(weights.size(), "weight", "weights"));
    Json rows = Json::array();
    for (std::size_t i = 0; i < vertices.size(); ++i)
        rows.push_back(Json::array({vertices[i], Finite(weights[i], "weight", i)}));
    return List(std::move(rows));
}

Json EmitAssetInfo(const AssetInfo& info)
{
    return Json{{"id", EncodePath(info.id)},
                {"type", info.type},
                {"contributor", {{"author", info.author}, {"email", info.email}, {"website", info.website}}},
                {"revision", info.revision},
                {"modified", info.modified.empty() ? Timestamp() : info.modified}};
}

Json EmitFileHead(const AssetInfo& info)
{
    return Json{{"file_version", "0.6.0.0"}, {"asset_info", EmitAssetInfo(info)}};
}

/// The file format's way to say that there is none is an object without members.
Json EmitGraft(const geometry::Graft& graft)
{
    if (graft.empty())
        return Json::object();
    Json pairs = Json::array();
    for (const std::array<std::uint32_t, 2>& pair : graft.vertexPairs)
        pairs.push_back({pair[0], pair[1]});
    return Json{{"vertex_count", graft.vertexCount},
                {"poly_count", graft.faceCount},
                {"vertex_pairs", {{"count", graft.vertexPairs.size()}, {"values", std::move(pairs)}}},
                {"hidden_polys", {{"count", graft.hiddenFaces.size()}, {"values", graft.hiddenFaces}}}};
}

Json EmitGeometry(const Geometry& geometry)
{
    const geometry::Topology& topology = *geometry.mesh.topology;
    Json json{{"id", geometry.id},
              {"name", geometry.name},
              {"label", geometry.label.empty() ? geometry.name : geometry.label},
              {"type", geometry.subdivisionSurface ? "subdivision_surface" : "polygon_mesh"},
              {"edge_interpolation_mode", geometry.edgeInterpolation},
              {"vertices", EmitPositions(geometry.mesh.positions)},
              {"polygon_groups", EmitNames(topology.groupNames, "default")},
              {"polygon_material_groups", EmitNames(topology.surfaceNames, "Default")},
              {"polylist", EmitPolygons(topology)}};
    if (!geometry.lines.empty())
        json["polyline_list"] = EmitPolylines(geometry.lines);
    if (!geometry.creases.empty())
        json["edge_weights"] = EmitCreases(geometry.creases);
    if (!geometry.defaultUvSet.empty())
        json["default_uv_set"] = geometry.defaultUvSet;
    json["graft"] = EmitGraft(geometry.graft);
    json["extra"] = Json::array();
    if (geometry.subdivisionSurface)
        json["extra"].push_back(EmitResolutionChannels(geometry.subdivisionLevel));
    AddKept(json, geometry.kept);
    return json;
}

Json EmitNode(const Node& node)
{
    Json json{{"id", node.id}, {"name", node.name}, {"type", node.type}, {"label", node.label}};
    if (!node.parent.empty())
        json["parent"] = "#" + EncodeFragment(node.parent);
    json["rotation_order"] = node.rotationOrder;
    json["inherits_scale"] = node.inheritsScale;
    json["center_point"] = EmitRigVector(node.centerPoint, "Origin");
    json["end_point"] = EmitRigVector(node.endPoint, "End");
    json["orientation"] = EmitRigVector(node.orientation, "Orientation");
    json["rotation"] = EmitVector(node.rotation);
    json["translation"] = EmitVector(node.translation);
    json["scale"] = EmitVector(node.scale);
    json["general_scale"] = EmitChannel(node.generalScale);
    if (!node.presentationType.empty())
        json["presentation"] =
            KeptOr(node.kept, "presentation", EmitPresentation(node.presentationType, node.label));
    if (!node.formulas.empty())
        json["formulas"] = EmitFormulas(node.formulas);
    if (node.dform)
        json["extra"] = Json::array({EmitDFormPart(*node.dform)});
    AddKept(json, node.kept);
    return json;
}

Json EmitModifier(const Modifier& modifier)
{
    Json json{{"id", modifier.id},
              {"name", modifier.name},
              {"parent", modifier.parent},
              {"presentation",
               KeptOr(modifier.kept, "presentation", EmitPresentation(modifier.presentationType, ""))}};
    if (modifier.hasChannel)
        json["channel"] = EmitChannel(modifier.channel);
    if (!modifier.region.empty())
        json["region"] = modifier.region;
    json["group"] = modifier.group;
    if (!modifier.formulas.empty())
        json["formulas"] = EmitFormulas(modifier.formulas);
    if (modifier.morph) {
        const geometry::SparseDeltas& deltas = modifier.morph->deltas;
        for (std::size_t i = 0; i < deltas.size(); ++i)
            for (const float value : {deltas.deltas[i].x, deltas.deltas[i].y, deltas.deltas[i].z})
                Finite(value, "delta", i);
        json["morph"] = Json{{"vertex_count", modifier.morph->vertexCount},
                             {"deltas", {{"count", deltas.size()}, {"values", DeltaRows(deltas)}}}};
        if (!modifier.morph->hdUrl.empty())
            json["morph"]["hd_url"] = modifier.morph->hdUrl;
        if (!modifier.morph->hdChecksum.empty())
            json["morph"]["hd_checksum"] = modifier.morph->hdChecksum;
    }
    if (modifier.effect)
        AddEffect(json, *modifier.effect);
    AddKept(json, modifier.kept);
    return json;
}

Json EmitDForm(const DFormAsset& dform)
{
    return Json{{"id", dform.name},
                {"name", dform.name},
                {"parent", "name://@selection:"},
                {"dform",
                 {{"influence_vertex_count", dform.vertexCount},
                  {"influence_weights", EmitWeights(dform.vertices, dform.weights)}}}};
}

} // namespace dson
