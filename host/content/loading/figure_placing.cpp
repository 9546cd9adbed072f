// Figures, props and their parts at their places.
// SPDX-License-Identifier: MIT

#include "figure_placing.h"

#include "app/texts.h"
#include "base/errors.h"
#include "dznode.h"
#include "dznumericproperty.h"
#include "dzobject.h"
#include "instance_order.h"
#include "instance_values.h"

#include <algorithm>

#include <fmt/format.h>

namespace openhost {

namespace {

/// What a figure is made of whose instance leaves it open; empty for other nodes.
std::string GeometryLeftOpen(const DefinitionTree& definition, const std::string& id, LoadReport& report)
{
    const dson::Document& document = *definition.document();
    for (const dson::SkinDefinition& skin : document.skins)
        if (skin.node == id)
            return skin.geometry;
    const dson::Node* const node = definition.find(id);
    if (!node || node->type != "figure" || document.geometries.size() != 1)
        return {};
    report.warn(fmt::format("{} names no geometry and gets the only one of its file", id));
    return document.geometries.front().id;
}

/// Where several definitions stand in one file, the instance says which geometry is the node's.
std::optional<std::string> GeometryOf(const dson::NodeInstance& instance, const dson::Uri& url,
                                      const DefinitionTree& definition, LoadReport& report)
{
    if (!url.path.empty())
        return std::nullopt;
    return instance.geometries.empty() ? GeometryLeftOpen(definition, url.id, report)
                                       : dson::ParseUri(instance.geometries.front().url).id;
}

/// A bone that hangs on another node of its file is a part of a figure.
bool IsBone(const DefinitionTree& definition, const std::string& id)
{
    const dson::Node* const node = definition.findMeant(id);
    return node && node->type == "bone" && definition.isPart(*node);
}

/// The bone without its figure: neither the other bones of its file nor meshes and skins are its own.
std::shared_ptr<const DefinitionTree> BoneAlone(const DefinitionTree& definition, const std::string& id)
{
    auto document = std::make_shared<dson::Document>();
    document->file = definition.document()->file;
    document->nodes.push_back(*definition.findMeant(id));
    document->nodes.back().parent.clear();
    return std::make_shared<DefinitionTree>(std::move(document));
}

/// Whether a reference means the geometry that a figure has got, by id or by name.
bool IsGeometry(const std::string& url, const DefinitionTree& definition, const std::string& id)
{
    const std::string wanted = dson::ParseUri(url).id;
    const std::vector<dson::Geometry>& all = definition.document()->geometries;
    const auto own = std::find_if(all.begin(), all.end(),
                                  [&id](const dson::Geometry& geometry) { return geometry.id == id; });
    return wanted.empty() || FoldCase(wanted) == FoldCase(id) ||
           (own != all.end() && FoldCase(wanted) == FoldCase(own->name));
}

/// A node that nothing but its instance describes.
std::shared_ptr<const DefinitionTree> GroupOf(const dson::NodeInstance& instance)
{
    auto document = std::make_shared<dson::Document>();
    document->nodes.push_back(dson::MakeNode(instance.id, instance.label, "node"));
    document->nodes.back().dform = instance.dform;
    return std::make_shared<DefinitionTree>(std::move(document));
}

} // namespace

FigurePlacing::FigurePlacing(SceneLoad& load) : _load(load), _sources(load.sources) {}

void FigurePlacing::placeAll()
{
    const InstanceOrder order(_sources.document(),
                              [this](const dson::NodeInstance& instance) { return isBone(instance); });
    _cut.insert(order.circular().begin(), order.circular().end());
    std::vector<std::string> circular;
    for (const dson::NodeInstance* const instance : order.circular())
        circular.push_back(instance->id);
    if (circular.size() == 1)
        _load.report.warnLeftOut(fmt::format("{} is below itself; its parent is left out", circular.front()));
    else if (!circular.empty())
        _load.report.warnLeftOut(fmt::format("{} nodes are below themselves; their parents are left out{}",
                                             circular.size(), Examples(circular)));
    std::vector<const dson::NodeInstance*> homeless;
    for (const dson::NodeInstance* const instance : order.instances())
        if (!place(*instance, order.isRepeated(*instance)))
            homeless.push_back(instance);
    placeHomeless(std::move(homeless), order);
}

/// Bones come last, with what hangs on them: whatever they may belong to is there then.
void FigurePlacing::placeHomeless(std::vector<const dson::NodeInstance*> homeless, const InstanceOrder& order)
{
    std::unordered_set<std::string> ids;
    for (const dson::NodeInstance* const instance : homeless)
        ids.insert(instance->id);
    std::stable_partition(homeless.begin(), homeless.end(), [&](const dson::NodeInstance* instance) {
        return !isBone(*instance) && ids.count(dson::ParseUri(parentOf(*instance)).id) == 0;
    });
    for (const dson::NodeInstance* const instance : homeless)
        placeHomeless(*instance, order.isRepeated(*instance));
}

std::string FigurePlacing::parentOf(const dson::NodeInstance& instance) const
{
    return _cut.count(&instance) > 0 ? std::string() : instance.parent;
}

std::shared_ptr<const DefinitionTree> FigurePlacing::definitionOf(const dson::NodeInstance& instance)
{
    try {
        return instance.url.empty() ? nullptr : _sources.treeOf(dson::ParseUri(instance.url));
    } catch (const base::Error&) {
        return nullptr; // told when it is to be made
    }
}

bool FigurePlacing::isBone(const dson::NodeInstance& instance)
{
    const std::shared_ptr<const DefinitionTree> definition = definitionOf(instance);
    return definition && IsBone(*definition, dson::ParseUri(instance.url).id);
}

bool FigurePlacing::isLostWithFigure(const dson::NodeInstance& instance)
{
    const dson::Uri url = dson::ParseUri(instance.url);
    if (_failed.count(dson::ParseUri(parentOf(instance)).id) == 0 || url.path.empty() ||
        _failedFiles.count(_sources.pathOf(url)) == 0)
        return false;
    const std::shared_ptr<const DefinitionTree> definition = definitionOf(instance);
    return !definition || !definition->findMeant(url.id);
}

bool FigurePlacing::place(const dson::NodeInstance& instance, bool isRepeated)
{
    const dson::Uri url = dson::ParseUri(instance.url);
    const std::string reference = parentOf(instance);
    const Place* const parent = reference.empty() ? nullptr : _load.figures.placeOf(reference);
    if (parent && overlay(instance, url, parent->figure, isRepeated))
        return true;
    if (!parent && isLostWithFigure(instance)) {
        fail(instance);
        return true;
    }
    DzNode* const above = parent ? parent->node : _load.selectedNode(reference);
    const bool isElsewhere = reference.empty() || NamesSelection(dson::ParseUri(reference));
    if (!above && (!isElsewhere || isBone(instance)))
        return false;
    make(instance, url, above);
    return true;
}

void FigurePlacing::placeHomeless(const dson::NodeInstance& instance, bool isRepeated)
{
    const std::string reference = parentOf(instance);
    // Its parent may have been without a home itself.
    if (_load.figures.placeOf(reference)) {
        place(instance, isRepeated);
        return;
    }
    const dson::Uri url = dson::ParseUri(instance.url);
    if (isBone(instance)) {
        make(instance, url, nullptr);
        return;
    }
    const std::optional<Place> bone = _load.figures.boneOf(dson::ParseUri(reference).id);
    if (bone)
        _load.report.addUnlistedBone(dson::ParseUri(reference).id);
    if (make(instance, url, bone ? bone->node : nullptr) && !bone)
        _load.report.addWithoutParent(instance.label.empty() ? instance.id : instance.label);
}

bool FigurePlacing::placeStray(const dson::NodeInstance& instance, const dson::Uri& url)
{
    if (_failed.count(dson::ParseUri(parentOf(instance)).id) > 0)
        return false; // its own figure is known, and is not there
    const std::optional<Place> place = _load.figures.onlyUnplaced(_sources.pathOf(url), url.id);
    if (!place)
        return false;
    _load.report.addStrayBone(url.id);
    applyInstance(instance, *place->node, place->figure);
    return true;
}

bool FigurePlacing::make(const dson::NodeInstance& instance, const dson::Uri& url, DzNode* above)
{
    const bool isMade = instantiate(instance, url, above);
    if (isMade)
        _load.figures.all().back().isTop =
            !above && !(_load.selected && NamesSelection(dson::ParseUri(instance.conformTarget)));
    return isMade;
}

void FigurePlacing::fail(const dson::NodeInstance& instance)
{
    if (!instance.id.empty())
        _failed.insert(instance.id);
    if (const dson::Uri url = dson::ParseUri(instance.url); !url.path.empty())
        _failedFiles.insert(_sources.pathOf(url));
}

bool FigurePlacing::overlay(const dson::NodeInstance& instance, const dson::Uri& url, std::size_t figure,
                            bool isRepeated)
{
    const FigureAssembly& assembly = _load.figures.all()[figure].assembly;
    DzNode* const node = assembly.findNode(url.id);
    if (!assembly.isNamedBy(_sources.pathOf(url)) || node == &assembly.root())
        return false;
    // A file may define many things, and one that hangs on another is none of its parts.
    if (!node && (url.path.empty() || _sources.treeOf(url)->findMeant(url.id)))
        return false;
    if (!node)
        _load.report.addUnknownBone(url.id);
    else if (!isRepeated || !_load.figures.isPlaced(*node))
        applyInstance(instance, *node, figure);
    else if (!placeStray(instance, url))
        _load.report.addRepeatedBone(url.id);
    return true;
}

bool FigurePlacing::instantiate(const dson::NodeInstance& instance, const dson::Uri& url, DzNode* parent)
{
    try {
        const bool isDefined = !instance.url.empty();
        const std::shared_ptr<const DefinitionTree> definition =
            isDefined ? _sources.treeOf(url) : GroupOf(instance);
        if (!definition) {
            fail(instance);
            return false;
        }
        const bool isBone = IsBone(*definition, url.id);
        if (isBone && placeStray(instance, url))
            return false;
        FigureAssembly assembly =
            isBone ? makeBoneAlone(instance, url, *definition)
                   : FigureAssembly(definition, isDefined ? _sources.pathOf(url) : std::string(),
                                    isDefined ? url.id : definition->document()->nodes.front().id,
                                    GeometryOf(instance, url, *definition, _load.report));
        if (!isBone)
            _sources.addMorphs(assembly);
        if (!instance.geometries.empty() && assembly.root().getObject() &&
            !IsGeometry(instance.geometries.front().url, *definition, assembly.geometryId()))
            _load.report.addOtherGeometry(instance.geometries.front().url);
        DzNode& root = assembly.root();
        _load.figures.all().push_back({std::move(assembly), &instance, &root, parent});
        applyInstance(instance, root, _load.figures.all().size() - 1);
        const dson::Node* const node = definition->find(url.id);
        if (instance.repeatsNode || (node && node->repeatsNode))
            _load.report.addRepeating(root.getLabel().toStdString());
        return true;
    } catch (const base::Error& error) {
        _load.report.warnLeftOut(error, _sources.find(_sources.pathOf(url)));
        fail(instance);
        return false;
    }
}

FigureAssembly FigurePlacing::makeBoneAlone(const dson::NodeInstance& instance, const dson::Uri& url,
                                            const DefinitionTree& definition)
{
    _load.report.addLoneBone(url.id);
    // What hangs on it is no part of another figure either.
    if (!instance.id.empty())
        _failed.insert(instance.id);
    return FigureAssembly(BoneAlone(definition, url.id), _sources.pathOf(url), url.id, std::string());
}

void FigurePlacing::applyInstance(const dson::NodeInstance& instance, DzNode& node, std::size_t figure)
{
    _load.figures.enter(instance, figure, node);
    FigureAssembly& assembly = _load.figures.all()[figure].assembly;
    assembly.addNodeId(instance.id, node);
    assembly.addFormulas(instance.formulas, _sources.sharedDocument());
    _load.noteBeyondLimits(ApplyInstance(instance, node, [&](DzNumericProperty& property, double value) {
        _load.setValue(_load.figures.all()[figure].assembly, property, value);
    }));
    _load.kept.enter(instance, node);
    const bool hasMesh = node.getObject() != nullptr;
    for (std::size_t i = 0; i < instance.geometries.size(); ++i)
        if (!hasMesh)
            _load.report.addGeometryWithoutMesh(instance.geometries[i].id);
        else if (i > 0)
            _load.report.addFurtherGeometry(instance.geometries[i].id);
    if (!instance.favorites.empty())
        _withFavorites.emplace_back(&instance, Place{figure, &node});
}

void FigurePlacing::markFavorites() const
{
    for (const auto& [instance, place] : _withFavorites) {
        const LoadedFigure& figure = _load.figures.all()[place.figure];
        for (const std::string& name : instance->favorites) {
            DzProperty* property = place.node->findProperty(ToQ(name));
            if (!property)
                property = figure.assembly.findDial(name, *place.node);
            if (property)
                property->setIsFavorite(true);
        }
    }
}

} // namespace openhost
