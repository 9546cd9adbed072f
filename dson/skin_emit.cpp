// Writing skins.
// SPDX-License-Identifier: MIT

#include "dson/uri.h"
#include "emit.h"
#include "kept_parts.h"

namespace dson {

namespace {

Json EmitAxes(const std::array<WeightMap, 3>& axes)
{
    Json json;
    for (std::size_t axis = 0; axis < axes.size(); ++axis)
        json[std::string(1, "xyz"[axis])] = EmitWeights(axes[axis].vertices, axes[axis].weights);
    return json;
}

const char* BindingMode(const SkinBinding& skin)
{
    if (skin.turning == SkinBinding::Turning::ByAxis)
        return "Local";
    return skin.turning == SkinBinding::Turning::Mixed || skin.dualQuaternionShares ? "Blended" : "General";
}

} // namespace

Json EmitSkin(const SkinBinding& skin, const std::string& figureId, const std::string& geometryId,
              const std::vector<std::pair<std::string, std::string>>& selectionMap)
{
    Json joints = Json::array(), mappings = Json::array();
    for (const JointBinding& joint : skin.joints) {
        joints.push_back({{"id", joint.node}, {"node", "#" + EncodeFragment(joint.node)}});
        if (!joint.isMeanOfAxes)
            joints.back()["node_weights"] = EmitWeights(joint.vertices, joint.weights);
        if (!joint.scale.vertices.empty())
            joints.back()["scale_weights"] = EmitWeights(joint.scale.vertices, joint.scale.weights);
        if (joint.axes)
            joints.back()["local_weights"] = EmitAxes(*joint.axes);
        AddKept(joints.back(), joint.kept);
        if (selectionMap.empty())
            mappings.push_back(Json::array({joint.node, joint.node}));
    }
    for (const auto& pair : selectionMap)
        mappings.push_back(Json::array({pair.first, pair.second}));
    // Without the settings the host loads the binding but does not deform by it.
    const bool usesScaleMaps = skin.scaling == SkinBinding::Scaling::ByScaleMaps;
    Json settings{{"type", "skin_settings"},
                  {"auto_normalize_general", skin.normalizing.general},
                  {"auto_normalize_local", skin.normalizing.local},
                  {"auto_normalize_scale", skin.normalizing.scale},
                  {"binding_mode", BindingMode(skin)},
                  {"general_map_mode", skin.dualQuaternion ? "DualQuat" : "Linear"},
                  {"scale_mode", usesScaleMaps ? "ScaleMaps" : "BindingMaps"}};
    const bool mixesAxes = skin.turning == SkinBinding::Turning::Mixed;
    if (mixesAxes || skin.dualQuaternionShares) {
        const WeightMap& shares = mixesAxes ? skin.generalShares : *skin.dualQuaternionShares;
        settings["blend_mode"] = mixesAxes ? "BlendLocalGeneral" : "BlendLinearDualQuat";
        settings["blend_vertex_count"] = skin.vertexCount;
        settings["blend_weights"] = EmitWeights(shares.vertices, shares.weights);
    }
    return Json{
        {"id", skin.id},
        {"name", skin.id},
        {"parent", "#" + EncodeFragment(geometryId)},
        {"skin",
         {{"node", "#" + EncodeFragment(figureId)},
          {"geometry", "#" + EncodeFragment(geometryId)},
          {"vertex_count", skin.vertexCount},
          {"joints", std::move(joints)},
          {"selection_map", Json::array({Json{{"id", "Bones"}, {"mappings", std::move(mappings)}}})}}},
        {"extra", Json::array({settings})}};
}

} // namespace dson
