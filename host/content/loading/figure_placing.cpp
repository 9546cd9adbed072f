// Figures, props and their parts at their places.
// SPDX-License-Identifier: MIT

#include "figure_placing.h"

#include "app/texts.h"
#include "base/errors.h"
#include "dznode.h"
#include "dznumericproperty.h"
#include "instance_order.h"
#include "instance_values.h"

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
    const dson::Node* const node = definition.find(id);
    return node && node->type == "bone" && definition.isPart(*node);
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
    // Whatever they may belong to is there now.
    for (const dson::NodeInstance* const instance : homeless)
        placeHomeless(*instance, order.isRepeated(*instance));
}

std::string FigurePlacing::parentOf(const dson::NodeInstance& instance) const
{
    return _cut.count(&instance) > 0 ? std::string() : instance.parent;
}

bool FigurePlacing::isBone(const dson::NodeInstance& instance)
{
    try {
        const dson::Uri url = dson::ParseUri(instance.url);
        const std::shared_ptr<const DefinitionTree> definition =
            instance.url.empty() ? nullptr : _sources.treeOf(url);
        return definition && IsBone(*definition, url.id);
    } catch (const base::Error&) {
        return false; // told when it is to be made
    }
}

bool FigurePlacing::place(const dson::NodeInstance& instance, bool isRepeated)
{
    const dson::Uri url = dson::ParseUri(instance.url);
    const std::string reference = parentOf(instance);
    const Place* const parent = reference.empty() ? nullptr : _load.figures.placeOf(reference);
    if (parent && overlay(instance, url, parent->figure, isRepeated))
        return true;
    // The bones of a figure that could not be loaded are no figures of their own.
    const bool hangsOnMissing = !parent && _failed.count(dson::ParseUri(reference).id) > 0;
    if (hangsOnMissing &&
        (isBone(instance) || (!url.path.empty() && _failedFiles.count(_sources.pathOf(url)) > 0))) {
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
        placeStray(instance, url);
        return;
    }
    const std::optional<Place> bone = _load.figures.boneOf(dson::ParseUri(reference).id);
    if (bone)
        _load.report.addUnlistedBone(dson::ParseUri(reference).id);
    else
        _load.report.addWithoutParent(instance.label.empty() ? instance.id : instance.label);
    make(instance, url, bone ? bone->node : nullptr);
}

void FigurePlacing::placeStray(const dson::NodeInstance& instance, const dson::Uri& url)
{
    const std::optional<Place> place = _load.figures.onlyUnplaced(_sources.pathOf(url), url.id);
    if (!place) {
        _load.report.addLostBone(url.id);
        return;
    }
    _load.report.addStrayBone(url.id);
    applyInstance(instance, *place->node, place->figure);
}

void FigurePlacing::make(const dson::NodeInstance& instance, const dson::Uri& url, DzNode* above)
{
    if (instantiate(instance, url, above))
        _load.figures.all().back().isTop =
            !above && !(_load.selected && NamesSelection(dson::ParseUri(instance.conformTarget)));
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
    if (!node && (url.path.empty() || _sources.treeOf(url)->find(url.id)))
        return false;
    if (!node)
        _load.report.addUnknownBone(url.id);
    else if (isRepeated && _load.figures.isPlaced(*node))
        placeStray(instance, url);
    else
        applyInstance(instance, *node, figure);
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
        if (IsBone(*definition, url.id)) {
            placeStray(instance, url);
            return false;
        }
        FigureAssembly assembly(definition, isDefined ? _sources.pathOf(url) : std::string(),
                                isDefined ? url.id : definition->document()->nodes.front().id,
                                GeometryOf(instance, url, *definition, _load.report));
        _sources.addMorphs(assembly);
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
    for (std::size_t i = 1; i < instance.geometries.size(); ++i)
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
