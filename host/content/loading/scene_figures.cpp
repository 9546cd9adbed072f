// The figures and props of a file on their way into the scene.
// SPDX-License-Identifier: MIT

#include "scene_figures.h"

#include "app/texts.h"
#include "base/errors.h"
#include "dznode.h"
#include "dznumericproperty.h"
#include "dzobject.h"
#include "dzscene.h"
#include "dzskeleton.h"
#include "dzskinbinding.h"
#include "figure/file_effect.h"
#include "figure/fitting.h"
#include "figure/pipeline.h"
#include "instance_order.h"
#include "instance_values.h"
#include "loading/channel_properties.h"
#include "openhost/diagnostics.h"
#include "preset_target.h"
#include "scene_dforms.h"
#include "selection_effects.h"

#include <algorithm>
#include <optional>

#include <fmt/format.h>

namespace openhost {

namespace {

bool NamesSelection(const dson::Uri& uri)
{
    return uri.node.compare(0, 12, "//@selection") == 0;
}

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

bool FollowsInTheEnd(const DzSkeleton& figure, const DzSkeleton& followed)
{
    std::set<const DzSkeleton*> met;
    const DzSkeleton* next = &figure;
    while (next && next != &followed && met.insert(next).second)
        next = next->getFollowTarget();
    return next == &followed;
}

/// Files that users save may be overwritten while the scene still needs the morphs in them.
std::shared_ptr<const dson::Document> WithOwnDeltas(std::shared_ptr<const dson::Document> document)
{
    const bool hasMorphs = std::any_of(document->modifiers.begin(), document->modifiers.end(),
                                       [](const dson::Modifier& modifier) { return bool(modifier.morph); });
    if (!hasMorphs)
        return document;
    auto whole = std::make_shared<const dson::Document>(dson::ReadDocument(document->file));
    for (const base::Diagnostic& met : whole->diagnostics) {
        const auto& told = document->diagnostics;
        if (std::find(told.begin(), told.end(), met) == told.end())
            Report(met);
    }
    return whole;
}

DzSkinBinding* SkinOf(const DzNode& figure)
{
    const DzObject* const object = figure.getObject();
    for (int i = 0; object && i < object->getNumModifiers(); ++i)
        if (auto* const skin = qobject_cast<DzSkinBinding*>(object->getModifier(i)))
            return skin;
    return nullptr;
}

} // namespace

SceneFigures::SceneFigures(AssetLibrary& library, std::shared_ptr<const dson::Document> document,
                           DzNode* selected)
    : _library(library), _document(WithOwnDeltas(std::move(document))), _selected(selected),
      _report(_document->file.string()), _kept(*_document)
{
}

void SceneFigures::prepare()
{
    placeAll();
    for (const dson::ModifierInstance& instance : _document->modifierInstances)
        dial(instance);
    markFavorites();
    if (!_beyondLimits.empty())
        _report.warn(dson::Counted(_beyondLimits.size(),
                                   "value is beyond the limits of its dial, which holds it",
                                   "values are beyond the limits of their dials, which hold them") +
                     Examples(_beyondLimits));
    for (const LoadedFigure& figure : _figures.all())
        _report.addDuplicates(figure.assembly.duplicateOutputs());
    if (const std::string idle = _kept.idleParts(); !idle.empty() && !isEmpty())
        _report.warn("kept for saving and without effect here: " + idle);
    _report.tell(_document->leftOut, isEmpty());
}

std::vector<DzNode*> SceneFigures::enter()
{
    std::vector<DzNode*> tops = enterScene();
    for (const LoadedFigure& figure : _figures.all())
        fit(figure);
    for (const LoadedFigure& figure : _figures.all())
        tellGraft(*figure.node);
    dialSelection();
    if (!_numbersInTexts.empty())
        _report.warn(fmt::format("has {} as texts, read as what they say, such as \"{}\"",
                                 dson::Counted(_numbersInTexts.size(), "number", "numbers"),
                                 _numbersInTexts.front()));
    for (const std::string& left : ConnectDFormers(_figures))
        _report.warn(left);
    animate();
    _report.handOver(isEmpty());
    _kept.handOver();
    return tops;
}

std::string SceneFigures::pathOf(const dson::Uri& uri) const
{
    return uri.path.empty() ? _library.paths().relativePath(_document->file)
                            : _library.addressOf(uri.path, _document->file);
}

std::shared_ptr<const dson::Document> SceneFigures::documentOf(const dson::Uri& uri)
{
    if (uri.path.empty())
        return _document;
    const std::filesystem::path file = _library.find(uri.path, _document->file);
    if (file.empty()) {
        _report.addMissing(uri.path);
        return nullptr;
    }
    return _library.read(file);
}

std::shared_ptr<const DefinitionTree>
SceneFigures::treeOf(const std::shared_ptr<const dson::Document>& document)
{
    if (!document)
        return nullptr;
    std::shared_ptr<const DefinitionTree>& tree = _trees[document.get()];
    if (!tree)
        tree = std::make_shared<DefinitionTree>(document);
    return tree;
}

DzNode* SceneFigures::selectedNode(const std::string& reference) const
{
    const dson::Uri uri = dson::ParseUri(reference);
    if (!NamesSelection(uri) || !_selected)
        return nullptr;
    DzNode& figure = FigureOf(*_selected);
    DzNode* const part = FindByPath(figure, uri.node);
    return part ? part : &figure;
}

void SceneFigures::placeAll()
{
    const InstanceOrder order(*_document,
                              [this](const dson::NodeInstance& instance) { return isBone(instance); });
    _cut = order.circular();
    std::vector<std::string> circular;
    for (const dson::NodeInstance* const instance : _cut)
        circular.push_back(instance->id);
    if (circular.size() == 1)
        _report.warnLeftOut(fmt::format("{} is below itself; its parent is left out", circular.front()));
    else if (!circular.empty())
        _report.warnLeftOut(fmt::format("{} nodes are below themselves; their parents are left out{}",
                                        circular.size(), Examples(circular)));
    std::vector<const dson::NodeInstance*> homeless;
    for (const dson::NodeInstance* const instance : order.instances())
        if (!place(*instance, order.isRepeated(*instance)))
            homeless.push_back(instance);
    // Whatever they may belong to is there now.
    for (const dson::NodeInstance* const instance : homeless)
        placeHomeless(*instance, order.isRepeated(*instance));
}

std::string SceneFigures::parentOf(const dson::NodeInstance& instance) const
{
    const bool isCut = std::find(_cut.begin(), _cut.end(), &instance) != _cut.end();
    return isCut ? std::string() : instance.parent;
}

bool SceneFigures::isBone(const dson::NodeInstance& instance)
{
    try {
        const dson::Uri url = dson::ParseUri(instance.url);
        const std::shared_ptr<const DefinitionTree> definition =
            instance.url.empty() ? nullptr : treeOf(documentOf(url));
        return definition && IsBone(*definition, url.id);
    } catch (const base::Error&) {
        return false; // told when it is to be made
    }
}

bool SceneFigures::place(const dson::NodeInstance& instance, bool isRepeated)
{
    const dson::Uri url = dson::ParseUri(instance.url);
    const std::string reference = parentOf(instance);
    const Place* const parent = reference.empty() ? nullptr : _figures.placeOf(reference);
    if (parent && overlay(instance, url, parent->figure, isRepeated))
        return true;
    // The bones of a figure that could not be loaded are no figures of their own.
    const bool hangsOnMissing = !parent && _failed.count(dson::ParseUri(reference).id) > 0;
    if (hangsOnMissing && (isBone(instance) || (!url.path.empty() && _failedFiles.count(pathOf(url)) > 0))) {
        fail(instance);
        return true;
    }
    DzNode* const above = parent ? parent->node : selectedNode(reference);
    const bool isElsewhere = reference.empty() || NamesSelection(dson::ParseUri(reference));
    if (!above && (!isElsewhere || isBone(instance)))
        return false;
    make(instance, url, above);
    return true;
}

void SceneFigures::placeHomeless(const dson::NodeInstance& instance, bool isRepeated)
{
    const std::string reference = parentOf(instance);
    // Its parent may have been without a home itself.
    if (_figures.placeOf(reference)) {
        place(instance, isRepeated);
        return;
    }
    const dson::Uri url = dson::ParseUri(instance.url);
    if (isBone(instance)) {
        placeStray(instance, url);
        return;
    }
    const std::optional<Place> bone = _figures.boneOf(dson::ParseUri(reference).id);
    if (bone)
        _report.addUnlistedBone(dson::ParseUri(reference).id);
    else
        _report.addWithoutParent(instance.label.empty() ? instance.id : instance.label);
    make(instance, url, bone ? bone->node : nullptr);
}

void SceneFigures::make(const dson::NodeInstance& instance, const dson::Uri& url, DzNode* above)
{
    if (instantiate(instance, url, above))
        _figures.all().back().isTop =
            !above && !(_selected && NamesSelection(dson::ParseUri(instance.conformTarget)));
}

void SceneFigures::fail(const dson::NodeInstance& instance)
{
    if (!instance.id.empty())
        _failed.insert(instance.id);
    if (const dson::Uri url = dson::ParseUri(instance.url); !url.path.empty())
        _failedFiles.insert(pathOf(url));
}

bool SceneFigures::overlay(const dson::NodeInstance& instance, const dson::Uri& url, std::size_t figure,
                           bool isRepeated)
{
    const FigureAssembly& assembly = _figures.all()[figure].assembly;
    DzNode* const node = assembly.findNode(url.id);
    if (!assembly.isNamedBy(pathOf(url)) || node == &assembly.root())
        return false;
    // A file may define many things, and one that hangs on another is none of its parts.
    if (!node && (url.path.empty() || treeOf(documentOf(url))->find(url.id)))
        return false;
    if (!node)
        _report.addUnknownBone(url.id);
    else if (isRepeated && _figures.isPlaced(*node))
        placeStray(instance, url);
    else
        applyInstance(instance, *node, figure);
    return true;
}

void SceneFigures::placeStray(const dson::NodeInstance& instance, const dson::Uri& url)
{
    const std::optional<Place> place = _figures.onlyUnplaced(pathOf(url), url.id);
    if (!place) {
        _report.addLostBone(url.id);
        return;
    }
    _report.addStrayBone(url.id);
    applyInstance(instance, *place->node, place->figure);
}

bool SceneFigures::instantiate(const dson::NodeInstance& instance, const dson::Uri& url, DzNode* parent)
{
    try {
        const bool isDefined = !instance.url.empty();
        const std::shared_ptr<const DefinitionTree> definition =
            isDefined ? treeOf(documentOf(url)) : GroupOf(instance);
        if (!definition) {
            fail(instance);
            return false;
        }
        if (IsBone(*definition, url.id)) {
            placeStray(instance, url);
            return false;
        }
        FigureAssembly assembly(definition, isDefined ? pathOf(url) : std::string(),
                                isDefined ? url.id : definition->document()->nodes.front().id,
                                GeometryOf(instance, url, *definition, _report));
        assembly.addMorphsOnDisk(_library);
        DzNode& root = assembly.root();
        _figures.all().push_back({std::move(assembly), &instance, &root, parent});
        applyInstance(instance, root, _figures.all().size() - 1);
        return true;
    } catch (const base::Error& error) {
        _report.warnLeftOut(error, _library.find(pathOf(url), _document->file));
        fail(instance);
        return false;
    }
}

void SceneFigures::applyInstance(const dson::NodeInstance& instance, DzNode& node, std::size_t figure)
{
    _figures.enter(instance, figure, node);
    FigureAssembly& assembly = _figures.all()[figure].assembly;
    assembly.addNodeId(instance.id, node);
    assembly.addFormulas(instance.formulas, _document);
    noteBeyondLimits(ApplyInstance(instance, node, [&](DzNumericProperty& property, double value) {
        setValue(_figures.all()[figure].assembly, property, value);
    }));
    _kept.enter(instance, node);
    if (!instance.favorites.empty())
        _withFavorites.emplace_back(&instance, Place{figure, &node});
}

void SceneFigures::setValue(const FigureAssembly& assembly, DzNumericProperty& property, double value)
{
    if (assembly.isAlias(property))
        _values.setAlias(property, value);
    else
        _values.set(property, value);
}

std::optional<SceneFigures::Place> SceneFigures::placeOfParent(const dson::ModifierInstance& instance)
{
    if (const Place* const place = _figures.placeOf(instance.parent))
        return *place;
    const dson::Uri parent = dson::ParseUri(instance.parent);
    if (const std::optional<Place> bone = boneOf(parent, uriOf(instance))) {
        _report.addUnlistedBone(parent.id);
        return bone;
    }
    const std::optional<Place> open = parent.path.empty() ? _figures.withoutGeometry() : std::nullopt;
    if (!open || parent.id.empty())
        return std::nullopt;
    const FigureAssembly& assembly = _figures.all()[open->figure].assembly;
    if (parent.id == assembly.geometryId())
        return open;
    const dson::Uri url = uriOf(instance);
    if (!assembly.hasDialOf(url) && !assembly.hasSkin(url))
        return std::nullopt;
    _report.addGuessedParent(parent.id, open->node->getLabel().toStdString());
    return open;
}

std::optional<SceneFigures::Place> SceneFigures::boneOf(const dson::Uri& parent, const dson::Uri& dial) const
{
    if (!parent.path.empty() || NamesSelection(parent))
        return std::nullopt;
    const std::optional<Place> withDial = _figures.boneOf(
        parent.id, [&dial](const FigureAssembly& assembly) { return assembly.hasDialOf(dial); });
    return withDial ? withDial : _figures.boneOf(parent.id);
}

void SceneFigures::dial(const dson::ModifierInstance& instance)
{
    const std::optional<Place> place = placeOfParent(instance);
    if (!place) {
        if (_selected && NamesSelection(dson::ParseUri(instance.parent)))
            _onSelection.push_back(&instance);
        else
            _report.addHomeless(instance.url);
        return;
    }
    FigureAssembly& assembly = _figures.all()[place->figure].assembly;
    assembly.addFormulas(instance.formulas, _document);
    const dson::Uri url = uriOf(instance);
    // Every figure has one; it would be looked for among all dials by all that they are called.
    if (assembly.hasSkin(url))
        return keep(instance, assembly, url, nullptr);
    DzNumericProperty* const property = findDial(assembly, url, *place->node);
    if (instance.effect)
        assembly.applyEffect(instance, url.path);
    keep(instance, assembly, url, property);
    if (!property) {
        if (DzModifier* const effect = assembly.findEffect(url))
            FileEffect::of(*effect)->setOwnChannel(instance.channelText);
        else if (instance.value && !url.id.empty())
            assembly.loseShape(url, _library.whyMissing(url, _document->file), *instance.value);
        return;
    }
    if (!assembly.hasDialOf(url) && _library.find(url.path, _document->file).empty())
        _report.addReplaced(url.path);
    _figures.enterDial(instance.id, *property);
    ApplyChange(*property, instance.change);
    if (!instance.group.empty())
        property->setPath(ToQ(instance.group));
    if (instance.value)
        setValue(assembly, *property, *instance.value);
    noteOddValue(instance);
    if (const DzNumericProperty& turned = AliasEnd(*property); IsHeldByLimits(turned))
        noteBeyondLimits({turned.getLabel().toStdString()});
}

/// Of what a dial stands for.
void SceneFigures::noteOddValue(const dson::ModifierInstance& instance)
{
    if (!instance.value && !instance.channelText.empty())
        _report.warn(instance.id + ": is set to what is no number that a dial can hold; it stays as it is");
    if (!instance.numberText.empty())
        _numbersInTexts.push_back(instance.numberText);
}

void SceneFigures::noteBeyondLimits(const std::vector<std::string>& labels)
{
    _beyondLimits.insert(_beyondLimits.end(), labels.begin(), labels.end());
}

void SceneFigures::keep(const dson::ModifierInstance& instance, const FigureAssembly& assembly,
                        const dson::Uri& url, DzNumericProperty* dial)
{
    QObject* owner = assembly.hasSkin(url) ? SkinOf(assembly.root()) : nullptr;
    if (!owner)
        owner = assembly.findEffect(url);
    if (!owner)
        owner = dial;
    if (owner)
        _kept.enter(instance, *owner);
    else
        _kept.enterMissing(instance);
}

void SceneFigures::dialSelection()
{
    if (!_selected || _onSelection.empty())
        return;
    const PresetTarget target(FigureOf(*_selected));
    std::vector<std::string> missing;
    for (const dson::ModifierInstance* const instance : _onSelection) {
        if (IsEffect(*_document, *instance)) {
            ApplyEffectTo(target.node(), *_document, *instance);
            continue;
        }
        DzNumericProperty* const property =
            target.findDial(dson::ParseUri(instance->parent).node, dson::ParseUri(instance->url).id);
        if (!property)
            missing.push_back(instance->url);
        else if (instance->value && !AliasEnd(*property).isLocked())
            AliasEnd(*property).setDoubleRawValue(*instance->value);
        if (property)
            noteOddValue(*instance);
    }
    if (!missing.empty())
        _report.warnLeftOut(
            dson::Counted(missing.size(),
                          "shape or control is set on what is selected, which has none of its name",
                          "shapes and controls are set on what is selected, which has none of them") +
            Examples(missing));
}

dson::Uri SceneFigures::uriOf(const dson::ModifierInstance& instance) const
{
    dson::Uri url = dson::ParseUri(instance.url);
    url.path = pathOf(url);
    return url;
}

bool SceneFigures::isThisFile(const dson::Uri& url) const
{
    return PathKey(url.path) == PathKey(pathOf(dson::Uri()));
}

bool SceneFigures::isDefinedHere(const dson::Uri& url) const
{
    const std::vector<dson::Modifier>& all = _document->modifiers;
    return isThisFile(url) && std::any_of(all.begin(), all.end(), [&url](const dson::Modifier& modifier) {
               return modifier.id == url.id;
           });
}

DzNumericProperty* SceneFigures::findDial(FigureAssembly& assembly, const dson::Uri& url, const DzNode& node)
{
    DzNumericProperty* const present = isDefinedHere(url) ? nullptr : assembly.findDial(url, &node);
    if (present)
        return present;
    addShapeFile(assembly, url);
    return assembly.findDial(url, &node);
}

void SceneFigures::addShapeFile(FigureAssembly& assembly, const dson::Uri& url)
{
    try {
        const bool isHere = isThisFile(url);
        if (const std::shared_ptr<const dson::Document> file = isHere ? _document : documentOf(url))
            assembly.addModifier(file, url.path, url.id);
    } catch (const base::Error& error) {
        _report.warnLeftOut(error, _library.find(url.path, _document->file));
    }
}

std::vector<DzNode*> SceneFigures::enterScene()
{
    const PropertyResolver elsewhere = [this](const std::string& uri) { return _figures.resolve(uri); };
    for (LoadedFigure& figure : _figures.all())
        figure.assembly.connectFormulas(elsewhere);
    _values.apply(_report);
    std::vector<DzNode*> tops;
    for (LoadedFigure& figure : _figures.all()) {
        std::unique_ptr<DzNode> root = figure.assembly.takeRoot();
        if (figure.parent)
            figure.parent->addNodeChild(root.get(), figure.instance->inPlace);
        else if (!dzScene->addNode(root.get()))
            throw base::Error(root->getLabel().toStdString() + " cannot be added to the scene");
        if (figure.isTop)
            tops.push_back(root.get());
        root.release();
    }
    return tops;
}

void SceneFigures::markFavorites() const
{
    for (const auto& [instance, place] : _withFavorites) {
        const LoadedFigure& figure = _figures.all()[place.figure];
        for (const std::string& name : instance->favorites) {
            DzProperty* property = place.node->findProperty(ToQ(name));
            if (!property)
                property = figure.assembly.findDial(name, *place.node);
            if (property)
                property->setIsFavorite(true);
        }
    }
}

DzNode* SceneFigures::fitTarget(const std::string& reference) const
{
    if (const Place* const place = _figures.placeOf(reference))
        return place->node;
    if (DzNode* const selected = selectedNode(reference))
        return selected;
    // An id without its mark.
    const Place* const place = _figures.placeOf("#" + reference);
    return place ? place->node : nullptr;
}

void SceneFigures::fit(const LoadedFigure& figure)
{
    const std::string& reference = figure.instance->conformTarget;
    if (reference.empty())
        return;
    const std::string label = figure.node->getLabel().toStdString();
    auto* const follower = qobject_cast<DzSkeleton*>(figure.node);
    const DzNode* const node = fitTarget(reference);
    DzSkeleton* const target = node ? node->getSkeleton() : nullptr;
    if (!follower)
        _report.warnLeftOut(fmt::format("{} is no figure that could be fitted to anything", label));
    else if (!target || IsBelow(*target, *follower))
        _report.warnLeftOut(fmt::format("there is nothing that {} can be fitted to", label));
    else if (FollowsInTheEnd(*target, *follower))
        _report.warnLeftOut(
            fmt::format("{} is to be fitted to {}, which is fitted to it; it is left as it is", label,
                        target->getLabel().toStdString()));
    else
        FitTo(*follower, *target);
    if (follower && target && node != target)
        _report.warn(fmt::format("{} is to be fitted to {}; the figure that has it is taken", label,
                                 node->getLabel().toStdString()));
}

void SceneFigures::tellGraft(const DzNode& node) const
{
    DzObject* const object = node.getObject();
    if (!object || !qobject_cast<const DzSkeleton*>(&node))
        return;
    object->pipeline().graft();
    const std::string& problem = object->pipeline().graftProblem();
    if (!problem.empty())
        _report.tellLogged(node.getLabel().toStdString() + " " + problem);
}

void SceneFigures::animate()
{
    if (_figures.empty())
        return;
    DzNode& figure = *_figures.all().front().node;
    const PresetTarget first(figure);
    std::vector<std::string> missing;
    for (const dson::AnimatedValue& value : _document->animations) {
        const dson::Uri uri = dson::ParseUri(value.url);
        DzNumericProperty* const property =
            NamesSelection(uri) ? first.find(uri) : _figures.resolve(value.url);
        if (property)
            AliasEnd(*property).setDoubleRawValue(value.value);
        else if (!IsOfMaterial(uri))
            missing.push_back(value.url);
        _kept.enter(value, property, figure);
    }
    if (!missing.empty())
        _report.warnLeftOut(fmt::format("{} of {} animated values {} nothing that is there{}", missing.size(),
                                        _document->animations.size(), missing.size() == 1 ? "names" : "name",
                                        Examples(missing)));
}

} // namespace openhost
