// Nodes of the scene as file content.
// SPDX-License-Identifier: MIT

#include "scene_export.h"

#include "base/counted.h"
#include "channel_export.h"
#include "dson/reader.h"
#include "dson/uri.h"
#include "dzcontroller.h"
#include "dzdform.h"
#include "dzdformmodifier.h"
#include "dzfacetmesh.h"
#include "dzfacetshape.h"
#include "dzintproperty.h"
#include "dzmorph.h"
#include "dznode.h"
#include "dznumericcontroller.h"
#include "dznumericproperty.h"
#include "dzobject.h"
#include "dzpresentation.h"
#include "dzskeleton.h"
#include "dzskinbinding.h"
#include "effect_export.h"
#include "kept_export.h"
#include "library/asset_origin.h"
#include "link_export.h"
#include "loading/channel_properties.h"
#include "openhost/diagnostics.h"
#include "unit_export.h"

#include <algorithm>
#include <set>

#include <fmt/format.h>

namespace openhost {

namespace {

std::string Reference(const std::string& id)
{
    return "#" + dson::EncodeFragment(id);
}

/// Marked dials of the node and, on a figure, of its morphs; sorted, so that saving again gives the same
/// file.
std::vector<std::string> FavoritesOf(const SceneUnit& unit, const DzNode& node)
{
    std::set<std::string> names;
    if (&node == unit.root)
        for (const UnitDial& dial : unit.dials)
            if (dial.morph && dial.property->isFavorite())
                names.insert(dial.morph->getName().toStdString());
    for (int i = 0; i < node.getNumProperties(); ++i)
        if (node.getProperty(i)->isFavorite())
            names.insert(node.getProperty(i)->getName().toStdString());
    return {names.begin(), names.end()};
}

class SceneDescriber {
public:
    SceneDescriber(const std::vector<DzNode*>& roots, const std::string& type, const DzSkeleton* wearer)
        : _wearer(wearer), _scene(CollectUnits(roots)), _kept(_ids, type),
          _namedProperties(_scene.units.size())
    {
    }

    dson::SceneAsset describe()
    {
        for (const SceneUnit& unit : _scene.units)
            ExpectUnitIds(_ids, unit);
        for (const SceneUnit& unit : _scene.units)
            _unitIds.push_back(TakeUnitIds(_ids, unit));
        for (std::size_t u = 0; u < _scene.units.size(); ++u)
            nameProperties(u);
        for (const DzNode* const node : _scene.nodes)
            _instanceIds[node] = _ids.take(node->getName().toStdString());
        describeInstances();
        for (std::size_t u = 0; u < _scene.units.size(); ++u)
            describeUnit(u);
        _kept.addTo(_asset);
        report();
        return std::move(_asset);
    }

private:
    struct PropertyName {
        std::size_t unit;
        std::string uri;
    };

    struct DialInstance {
        dson::SceneModifier instance;
        const DzNumericProperty* property;
    };

    /// Its file says more of it than what can be set.
    static bool saysMore(const QObject& owner)
    {
        const KeptModifier* const kept = KeptOfModifier(owner);
        return kept && !kept->members.empty();
    }

    std::string nodeId(std::size_t unit, const DzNode& node) const
    {
        return _scene.units[unit].isDescribedWhole() ? _unitIds[unit].nodes.at(&node)
                                                     : node.getAssetUri().getId().toStdString();
    }

    /// What a person will miss after loading.
    void report() const
    {
        const auto tell = [](std::size_t count, const char* one, const char* many) {
            if (count > 0)
                Report({base::Severity::Warning,
                        {},
                        {},
                        base::Counted(count, one, many) + " cannot be kept in a file"});
        };
        tell(_lostLinks, "link between properties", "links between properties");
        tell(_lostFormers, "D-Former that is no part of it", "D-Formers that are no part of it");
    }

    /// A D-Former acts from where its nodes stand.
    bool isWithoutFormer(const DzModifier& modifier) const
    {
        const auto* const forming = qobject_cast<const DzDFormModifier*>(&modifier);
        return forming && forming->getDForm() && _scene.unitOf.count(forming->getDForm()) == 0;
    }

    /// URI of the node's definition.
    std::string nodeUrl(std::size_t unit, const DzNode& node) const
    {
        return dson::MakeUri(_scene.units[unit].path, nodeId(unit, node));
    }

    void nameProperties(std::size_t u)
    {
        const SceneUnit& unit = _scene.units[u];
        for (const DzNode* const node : unit.nodes)
            for (const char* const member :
                 {"translation", "rotation", "scale", "center_point", "end_point", "orientation"})
                for (const char* const axis : axisIds)
                    nameChannel(u, *node, std::string(member) + "/" + axis);
        for (const DzNode* const node : unit.nodes)
            nameChannel(u, *node, "scale/general");
        for (const UnitDial& dial : unit.dials) {
            const dson::Uri uri = dson::ParseUri(dial.uri);
            const std::string id = dial.uri.empty() ? _unitIds[u].dials.at(dial.property) : uri.id;
            enterName(u, *dial.property,
                      dson::MakePropertyUri(unit.root->getName().toStdString(), uri.path, id, "value"));
        }
    }

    void nameChannel(std::size_t u, const DzNode& node, const std::string& channel)
    {
        const DzNumericProperty* const property = FindNodeChannel(node, channel);
        enterName(u, *property,
                  dson::MakePropertyUri(node.getName().toStdString(), _scene.units[u].path, nodeId(u, node),
                                        channel));
    }

    void enterName(std::size_t unit, const DzNumericProperty& property, std::string uri)
    {
        _propertyNames[&property] = {unit, std::move(uri)};
        _namedProperties[unit].push_back(&property);
    }

    void describeInstances()
    {
        for (const DzNode* const node : _scene.nodes) {
            const std::size_t unit = _scene.unitOf.at(node);
            dson::SceneNode instance;
            instance.id = _instanceIds.at(node);
            instance.url = nodeUrl(unit, *node);
            instance.name = node->getName().toStdString();
            instance.label = node->getLabel().toStdString();
            instance.parent = parentOf(*node);
            instance.conformTarget = conformTargetOf(*node);
            DescribeInstanceChannels(*node, instance);
            if (node == _scene.units[unit].root)
                instance.geometry = describeGeometryInstance(unit);
            if (!instance.geometry)
                _kept.enterGeometry(*node, {});
            instance.favorites = FavoritesOf(_scene.units[unit], *node);
            _instances[node] = _asset.sceneNodes.size();
            _kept.enterNode(*node, _asset.sceneNodes.size(), instance.id,
                            _scene.units[unit].isDescribedWhole());
            _asset.sceneNodes.push_back(std::move(instance));
        }
    }

    std::string parentOf(const DzNode& node) const
    {
        const DzNode* const parent = node.getNodeParent();
        const auto inFile = _instanceIds.find(parent);
        if (inFile != _instanceIds.end())
            return Reference(inFile->second);
        if (!parent || !_wearer || parent->getSkeleton() != _wearer)
            return {};
        return parent == _wearer
                   ? "name://@selection:"
                   : "name://@selection/" + dson::EncodeFragment(parent->getName().toStdString()) + ":";
    }

    std::string conformTargetOf(const DzNode& node) const
    {
        const auto* const skeleton = qobject_cast<const DzSkeleton*>(&node);
        const DzSkeleton* const target = skeleton ? skeleton->getFollowTarget() : nullptr;
        const auto inFile = _instanceIds.find(target);
        if (inFile != _instanceIds.end())
            return Reference(inFile->second);
        return target && target == _wearer ? "name://@selection:" : "";
    }

    std::optional<dson::SceneGeometry> describeGeometryInstance(std::size_t u)
    {
        const SceneUnit& unit = _scene.units[u];
        const std::optional<dson::Geometry> geometry = DescribeGeometry(unit, _unitIds[u].geometry);
        if (!geometry)
            return std::nullopt;
        const DzObject& object = *unit.root->getObject();
        dson::SceneGeometry instance;
        instance.url =
            unit.isDescribedWhole() ? Reference(geometry->id) : AssetUriOf(object).toString().toStdString();
        instance.id = _ids.take(dson::ParseUri(instance.url).id);
        instance.name = geometry->name;
        instance.label = geometry->label;
        instance.subdivisionSurface = geometry->subdivisionSurface;
        instance.edgeInterpolation = geometry->edgeInterpolation;
        const auto& shape = *qobject_cast<DzFacetShape*>(object.getCurrentShape());
        if (const DzIntProperty* const level = shape.getSubDLevelControl())
            instance.subdivisionLevel = level->getValue();
        for (int i = 0; i < shape.getNumProperties(); ++i) {
            const auto* const property = qobject_cast<const DzNumericProperty*>(shape.getProperty(i));
            if (!property)
                continue;
            if (const auto change = DescribeChange(*property, property->getName().toStdString()))
                instance.resolution.push_back(*change);
        }
        _geometryIds[unit.root] = instance.id;
        _kept.enterGeometry(*unit.root, instance.id);
        return instance;
    }

    void describeUnit(std::size_t u)
    {
        const SceneUnit& unit = _scene.units[u];
        const UnitIds& ids = _unitIds[u];
        std::vector<dson::Node> nodes;
        if (unit.isDescribedWhole()) {
            if (auto geometry = DescribeGeometry(unit, ids.geometry)) {
                _kept.enterGeometryDefinition(*unit.root, _asset.geometries.size());
                _asset.geometries.push_back(std::move(*geometry));
            }
            nodes = DescribeUnitNodes(unit, ids);
        }
        describeSkin(u);
        describeDials(u);
        describeEffects(u);
        std::vector<dson::Formula> formulas = formulasOf(u);
        if (unit.isDescribedWhole())
            nodes.front().formulas = std::move(formulas);
        else
            _asset.sceneNodes[_instances.at(unit.root)].formulas = std::move(formulas);
        for (std::size_t i = 0; i < nodes.size(); ++i)
            _kept.enterDefinition(*unit.nodes[i], _asset.nodes.size() + i);
        std::move(nodes.begin(), nodes.end(), std::back_inserter(_asset.nodes));
    }

    /// Modifiers hang on the geometry's instance; on the node's where there is none.
    std::string modifierParent(const SceneUnit& unit) const
    {
        const auto geometry = _geometryIds.find(unit.root);
        return Reference(geometry != _geometryIds.end() ? geometry->second : _instanceIds.at(unit.root));
    }

    void describeSkin(std::size_t u)
    {
        const SceneUnit& unit = _scene.units[u];
        const DzSkinBinding* const skin = SkinOf(unit);
        if (!skin)
            return;
        if (unit.isDescribedWhole()) {
            _kept.enterSkinDefinition(*skin, _asset.skins.size());
            _asset.skins.push_back(DescribeSkin(unit, _unitIds[u]));
        }
        const std::string id = unit.isDescribedWhole() ? _unitIds[u].skin : skin->getName().toStdString();
        addModifier(
            {_ids.take(id + "-1"), dson::MakeUri(unit.path, id), modifierParent(unit), {}, {}, {}, {}}, skin);
    }

    /// @param owner  what the scene has of it
    void addModifier(dson::SceneModifier instance, const QObject* owner)
    {
        _kept.enterModifier(*owner, _asset.sceneModifiers.size(), instance.id);
        _asset.sceneModifiers.push_back(std::move(instance));
    }

    void describeDials(std::size_t u)
    {
        const SceneUnit& unit = _scene.units[u];
        std::vector<DialInstance> ofFiles;
        for (const UnitDial& dial : unit.dials)
            if (!dial.uri.empty())
                addInstance(unit, dial, dial.uri, ofFiles);
        // Saving a scene that was loaded gives the same file, in whatever order its dials were made.
        std::sort(ofFiles.begin(), ofFiles.end(),
                  [](const auto& a, const auto& b) { return a.instance.url < b.instance.url; });
        for (auto& [instance, property] : ofFiles) {
            instance.id = _ids.take(dson::ParseUri(instance.url).id);
            addModifier(std::move(instance), property);
        }
        for (const UnitDial& dial : unit.dials)
            if (dial.uri.empty())
                describeDial(u, dial);
    }

    void addInstance(const SceneUnit& unit, const UnitDial& dial, const std::string& url,
                     std::vector<DialInstance>& instances) const
    {
        dson::SceneModifier instance;
        instance.url = url;
        instance.parent = modifierParent(unit);
        instance.channel = DescribeChange(*dial.property, "value");
        if (!instance.channel && !saysMore(*dial.property))
            return;
        if (HasChanged(*dial.property))
            instance.group = dial.property->getPath().toStdString();
        instances.push_back({std::move(instance), dial.property});
    }

    void describeDial(std::size_t u, const UnitDial& dial)
    {
        const SceneUnit& unit = _scene.units[u];
        const std::string& id = _unitIds[u].dials.at(dial.property);
        const bool hangsOnGeometry = unit.isDescribedWhole() && dial.morph;
        const std::string parent =
            hangsOnGeometry ? Reference(_unitIds[u].geometry) : nodeUrl(u, *dial.owner);
        dson::Modifier modifier = DescribeDial(dial, id, parent, unit);
        if (const DzProperty* const target = dial.property->getAliasTarget()) {
            modifier.channel.type = "alias";
            modifier.channel.targetChannel = nameIn(u, *target);
        }
        _kept.enterModifierDefinition(*dial.property, _asset.modifiers.size());
        _asset.modifiers.push_back(std::move(modifier));
        dson::SceneModifier instance{_ids.take(id), Reference(id), modifierParent(unit), {}, {}, {}, {}};
        instance.channel = DescribeChange(*dial.property, "value");
        addModifier(std::move(instance), dial.property);
    }

    void describeEffects(std::size_t u)
    {
        const SceneUnit& unit = _scene.units[u];
        for (const DzModifier* const modifier : EffectsOf(unit)) {
            if (isWithoutFormer(*modifier)) {
                ++_lostFormers;
                continue;
            }
            dson::SceneModifier instance;
            instance.parent = modifierParent(unit);
            const bool isDefined = !IsDefinedElsewhere(*modifier, unit);
            if (isDefined) {
                const std::string id = _ids.take(modifier->getName().toStdString());
                const std::string parent =
                    unit.isDescribedWhole() ? Reference(_unitIds[u].geometry) : nodeUrl(u, *unit.root);
                _kept.enterModifierDefinition(*modifier, _asset.modifiers.size());
                _asset.modifiers.push_back(DescribeEffect(*modifier, id, parent));
                instance.url = Reference(id);
            } else {
                instance.url = AssetUriOf(*modifier).toString().toStdString();
            }
            instance.id = _ids.take(dson::ParseUri(instance.url).id);
            DescribeEffectInstance(*modifier, isDefined, instance);
            if (isDefined || instance.channel || instance.effect || saysMore(*modifier) ||
                !IsFoundWithFigure(*modifier, unit))
                addModifier(std::move(instance), modifier);
        }
    }

    /// What formulas of the unit call the property; empty for one of another figure.
    std::string nameIn(std::size_t unit, const DzProperty& property) const
    {
        const auto name = _propertyNames.find(&property);
        return name != _propertyNames.end() && name->second.unit == unit ? name->second.uri : std::string();
    }

    /// The links that no data file brings along.
    std::vector<dson::Formula> formulasOf(std::size_t u)
    {
        std::vector<dson::Formula> formulas;
        const PropertyNamer nameOf = [this, u](const DzProperty& property) { return nameIn(u, property); };
        for (const DzNumericProperty* const property : _namedProperties[u]) {
            const PropertyName& name = _propertyNames.at(property);
            for (int i = 0; name.unit == u && i < property->getNumControllers(); ++i) {
                const auto* const link = qobject_cast<const DzNumericController*>(property->getController(i));
                if (!link || !link->getSaveWithOutput() || isBroughtAlong(*link, _scene.units[u]))
                    continue;
                const auto formula = DescribeLink(*link, name.uri, nameOf);
                if (formula)
                    formulas.push_back(*formula);
                else
                    ++_lostLinks;
            }
        }
        return formulas;
    }

    static bool isBroughtAlong(const DzNumericController& link, const SceneUnit& unit)
    {
        return !unit.isDescribedWhole() && IsFromDataFile(link);
    }

    const DzSkeleton* _wearer;
    SceneUnits _scene;
    FileIds _ids;
    KeptExport _kept;
    std::vector<UnitIds> _unitIds;
    std::unordered_map<const DzNode*, std::string> _instanceIds;
    std::unordered_map<const DzNode*, std::string> _geometryIds;
    std::unordered_map<const DzNode*, std::size_t> _instances; ///< indices of scene nodes
    std::unordered_map<const DzProperty*, PropertyName> _propertyNames;
    std::vector<std::vector<const DzNumericProperty*>> _namedProperties; ///< by unit, in order
    dson::SceneAsset _asset;
    std::size_t _lostLinks = 0, _lostFormers = 0;
};

void AddPlace(const DzNode& node, const std::string& url, std::vector<dson::AnimatedValue>& values)
{
    for (const char* const member : transformMembers)
        for (const char* const axis : axisIds) {
            const std::string channel = std::string(member) + "/" + axis;
            values.push_back(
                {url + "?" + channel + "/value", FindNodeChannel(node, channel)->getDoubleRawValue()});
        }
    values.push_back(
        {url + "?general_scale/value", FindNodeChannel(node, "general_scale")->getDoubleRawValue()});
}

bool IsPoseDial(const DzPresentation* presentation)
{
    return presentation && presentation->getType().startsWith(QLatin1String("Modifier/Pose"));
}

void AddPoseDials(const SceneUnit& unit, std::vector<dson::AnimatedValue>& values)
{
    for (const UnitDial& dial : unit.dials) {
        const DzPresentation* const presentation =
            dial.morph ? dial.morph->getPresentation() : dial.property->getPresentation();
        if (!IsPoseDial(presentation) || dial.property->getAliasTarget())
            continue;
        const QString name = dial.morph ? dial.morph->getName() : dial.property->getName();
        const std::string owner = dial.owner == unit.root
                                      ? std::string()
                                      : "/" + dson::EncodeFragment(dial.owner->getName().toStdString());
        values.push_back(
            {"name://@selection" + owner + "#" + dson::EncodeFragment(name.toStdString()) + ":?value/value",
             dial.property->getDoubleRawValue()});
    }
}

} // namespace

dson::SceneAsset DescribeNodes(const std::vector<DzNode*>& roots, const std::string& type,
                               const DzSkeleton* wearer)
{
    return SceneDescriber(roots, type, wearer).describe();
}

dson::SceneAsset DescribePose(DzNode& figure)
{
    const SceneUnits scene = CollectUnits({&figure});
    const SceneUnit& unit = scene.units.front();
    dson::SceneAsset pose;
    AddPoseDials(unit, pose.animations);
    for (const DzNode* const node : unit.nodes) {
        const std::string name = dson::EncodeFragment(node->getName().toStdString());
        AddPlace(*node, node == &figure ? "name://@selection:" : "name://@selection/" + name + ":",
                 pose.animations);
    }
    return pose;
}

} // namespace openhost
