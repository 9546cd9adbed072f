// What belongs together in a saved scene.
// SPDX-License-Identifier: MIT

#include "scene_units.h"

#include "channel_export.h"
#include "dson/uri.h"
#include "dzapp.h"
#include "dzbone.h"
#include "dzcontentmgr.h"
#include "dzdform.h"
#include "dzdformbase.h"
#include "dzdformzone.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dzobject.h"
#include "dzshape.h"
#include "dzskeleton.h"
#include "library/asset_origin.h"
#include "library/content_paths.h"
#include "scene/node_walk.h"

#include <map>

namespace openhost {

namespace {

/// Asks the content directories once for each file.
class DataFiles {
public:
    /// The decoded path of the address's data file; empty if there is none to be found.
    std::string pathOf(const DzUri& uri)
    {
        const std::string path = dson::ParseUri(uri.toString().toStdString()).path;
        if (!IsDataFile(path))
            return {};
        const auto known = _isThere.find(path);
        const bool isThere = known != _isThere.end() ? known->second : look(path);
        return isThere ? path : std::string();
    }

private:
    bool look(const std::string& path)
    {
        const DzContentMgr& content = *dzApp->getContentMgr();
        return _isThere[path] = !content.getAbsolutePath(QString::fromStdString(path), false).isEmpty();
    }

    std::map<std::string, bool> _isThere;
};

class UnitCollector {
public:
    void addTree(DzNode* top)
    {
        add(top);
        WalkBelow(*top, [this](DzNode& node) {
            add(&node);
            return Walk::On;
        });
    }

    SceneUnits take()
    {
        for (SceneUnit& unit : _result.units)
            collectDials(unit);
        return std::move(_result);
    }

private:
    void add(DzNode* node)
    {
        const auto parent = _result.unitOf.find(node->getNodeParent());
        const bool isPart = parent != _result.unitOf.end() && isPartOf(*node, _result.units[parent->second]);
        if (!isPart)
            _result.units.push_back({node, definingFile(*node), {}, {}});
        const std::size_t unit = isPart ? parent->second : _result.units.size() - 1;
        _result.units[unit].nodes.push_back(node);
        _result.unitOf[node] = unit;
        _result.nodes.push_back(node);
    }

    /// Empty also for a node that has been given another mesh than its file's.
    std::string definingFile(const DzNode& root)
    {
        const DzObject* const object = root.getObject();
        const bool hasOtherMesh = object && object->getCurrentShape() && AssetUriOf(*object).isEmpty();
        return hasOtherMesh ? std::string() : _files.pathOf(root.getAssetUri());
    }

    bool isPartOf(const DzNode& node, const SceneUnit& unit)
    {
        if (qobject_cast<const DzSkeleton*>(&node))
            return false;
        const std::string path = _files.pathOf(node.getAssetUri());
        if (unit.isDescribedWhole())
            return qobject_cast<const DzBone*>(&node) && qobject_cast<const DzSkeleton*>(unit.root) &&
                   (path.empty() || path == _files.pathOf(unit.root->getAssetUri()));
        // The same prop once more is no part of the prop.
        return PathKey(path) == PathKey(unit.path) &&
               node.getAssetUri().getId() != unit.root->getAssetUri().getId();
    }

    void collectDials(SceneUnit& unit)
    {
        const DzObject* const object = unit.root->getObject();
        for (int i = 0; object && i < object->getNumModifiers(); ++i)
            if (const auto* const morph = qobject_cast<const DzMorph*>(object->getModifier(i)))
                addDial(unit, *morph->getValueControl(), morph, unit.root, morph->getAssetUri());
        for (const DzNode* const node : unit.nodes)
            for (int i = 0; i < node->getNumProperties(); ++i) {
                const auto* const property = qobject_cast<const DzNumericProperty*>(node->getProperty(i));
                if (property && property->getOwner() == node && !IsOwnChannel(*node, *property))
                    addDial(unit, *property, nullptr, node, AssetUriOf(*property));
            }
    }

    void addDial(SceneUnit& unit, const DzNumericProperty& property, const DzMorph* morph,
                 const DzNode* owner, const DzUri& uri)
    {
        // A file is asked for only where that decides whether the dial has to be described.
        const bool isTold = HasOwnValue(property);
        const bool isKnown =
            !unit.isDescribedWhole() && !uri.isEmpty() && (!isTold || !_files.pathOf(uri).empty());
        unit.dials.push_back(
            {&property, morph, owner, isKnown ? uri.toString().toStdString() : std::string()});
    }

    DataFiles _files;
    SceneUnits _result;
};

} // namespace

bool IsOfDFormer(const DzNode& node)
{
    return qobject_cast<const DzDForm*>(&node) || qobject_cast<const DzDFormBase*>(&node) ||
           qobject_cast<const DzDFormZone*>(&node);
}

SceneUnits CollectUnits(const std::vector<DzNode*>& roots)
{
    UnitCollector collector;
    for (DzNode* const root : roots)
        collector.addTree(root);
    return collector.take();
}

} // namespace openhost
