// Loading content files into the scene.
// SPDX-License-Identifier: MIT

#include "loading/scene_loader.h"

#include "app/current_attendant.h"
#include "base/errors.h"
#include "dson/uri.h"
#include "dzfacetshape.h"
#include "dzintproperty.h"
#include "dznode.h"
#include "dznumericproperty.h"
#include "dzobject.h"
#include "dzscene.h"
#include "dzskeleton.h"
#include "figure/fitting.h"
#include "figure_assembly.h"
#include "instance_order.h"
#include "loading/channel_properties.h"
#include "openhost/diagnostics.h"
#include "openhost/events.h"
#include "preset_loader.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <set>
#include <unordered_map>
#include <unordered_set>

#include <QPointer>

#include <fmt/format.h>

namespace openhost {

namespace {

namespace fs = std::filesystem;

QStringList ToList(const std::set<std::string>& texts)
{
    QStringList list;
    for (const std::string& text : texts)
        list.append(QString::fromStdString(text));
    return list;
}

bool NamesSelection(const dson::Uri& uri)
{
    return uri.node.compare(0, 12, "//@selection") == 0;
}

/// One character or scene file on its way into the scene.
class SceneLoader {
public:
    /// @param selected  what references to the selection mean; null for nothing
    SceneLoader(AssetLibrary& library, std::shared_ptr<const dson::Document> document, DzNode* selected)
        : _library(library), _document(std::move(document)), _selected(selected)
    {
    }

    /// Makes everything and tells what is missing; the scene is as it was.
    void prepare()
    {
        const InstanceOrder order(*_document);
        if (const dson::NodeInstance* const instance = order.circular())
            warnLeftOut(fmt::format("{} is below itself; its parent is left out", instance->id));
        for (const dson::NodeInstance* const instance : order.instances())
            place(*instance);
        for (const dson::ModifierInstance& instance : _document->modifierInstances)
            dial(instance);
        for (const Loaded& figure : _figures)
            markFavorites(figure);
        report();
    }

    /// Whether nothing could be made.
    bool isEmpty() const { return _figures.empty(); }

    /// Hands it all to the scene.
    /// @return what is to be selected: what neither hangs on anything nor is worn by what is selected
    std::vector<DzNode*> enter()
    {
        std::vector<DzNode*> tops = enterScene();
        for (const Loaded& figure : _figures)
            fit(figure);
        handOver();
        animate();
        return tops;
    }

private:
    struct Loaded {
        FigureAssembly assembly;
        const dson::NodeInstance* instance;
        DzNode* node;
        DzNode* parent = nullptr; ///< in another figure of the file or in the scene; null for a root
        bool isTop = true;        ///< neither hangs on anything nor is worn by what is selected
    };
    /// What an instance id stands for.
    struct Place {
        std::size_t figure; ///< index into _figures
        DzNode* node;
    };

    void warn(const std::string& what)
    {
        _diagnostics.push_back({base::Severity::Warning, _document->file.string(), {}, what});
    }

    /// Of something that the scene will lack.
    void warnLeftOut(const std::string& what)
    {
        warn(what);
        tellLeftOut(QString::fromStdString(what));
    }

    void warnLeftOut(const base::Error& error, const fs::path& file)
    {
        _diagnostics.push_back(base::FromSentence(base::Severity::Warning, file.string(), error.what()));
        tellLeftOut(QString::fromUtf8(error.what()));
    }

    void tellLeftOut(const QString& what) const
    {
        emit Events().contentLeftOut(QString::fromStdString(_document->file.string()), what);
    }

    /// Without any figure, what was met is why nothing could be loaded.
    void handOver()
    {
        for (base::Diagnostic& diagnostic : _diagnostics) {
            if (isEmpty())
                diagnostic.severity = base::Severity::Error;
            Report(diagnostic);
        }
        _diagnostics.clear();
    }

    /// Path of a URL's file as the URL spells it; this file's own for "#id".
    std::string pathOf(const dson::Uri& uri) const
    {
        return uri.path.empty() ? _library.paths().relativePath(_document->file) : uri.path;
    }

    std::shared_ptr<const dson::Document> documentOf(const dson::Uri& uri)
    {
        if (uri.path.empty())
            return _document;
        const fs::path file = _library.find(uri.path, _document->file);
        if (file.empty()) {
            _missing.insert(uri.path);
            return nullptr;
        }
        return _library.read(file);
    }

    const Place* placeOf(const std::string& reference) const
    {
        return placeOfId(dson::ParseUri(reference).id);
    }

    const Place* placeOfId(const std::string& id) const
    {
        const auto found = _places.find(id);
        return found == _places.end() ? nullptr : &found->second;
    }

    /// What a reference to the selection means in the scene; null for other references.
    DzNode* selectedNode(const std::string& reference) const
    {
        const dson::Uri uri = dson::ParseUri(reference);
        if (!NamesSelection(uri) || !_selected)
            return nullptr;
        DzNode& figure = FigureOf(*_selected);
        DzNode* const part = FindByPath(figure, uri.node);
        return part ? part : &figure;
    }

    void place(const dson::NodeInstance& instance)
    {
        const dson::Uri url = dson::ParseUri(instance.url);
        const Place* const parent = instance.parent.empty() ? nullptr : placeOf(instance.parent);
        if (parent && overlay(instance, url, parent->figure))
            return;
        // The bones of a figure that could not be loaded are no figures of their own.
        const bool hangsOnMissing = _failed.count(dson::ParseUri(instance.parent).id) > 0;
        DzNode* const above = parent ? parent->node : selectedNode(instance.parent);
        const bool isMade = !hangsOnMissing && instantiate(instance, url, above);
        if (isMade)
            _figures.back().isTop =
                !above && !(_selected && NamesSelection(dson::ParseUri(instance.conformTarget)));
        else if (!instance.id.empty())
            _failed.insert(instance.id);
    }

    /// True when the instance is a part of a figure that is there already. A root of the same file is another
    /// figure.
    bool overlay(const dson::NodeInstance& instance, const dson::Uri& url, std::size_t figure)
    {
        const FigureAssembly& assembly = _figures[figure].assembly;
        DzNode* const node = assembly.findNode(url.id);
        if (!assembly.isNamedBy(pathOf(url)) || node == &assembly.root())
            return false;
        // A file that defines things of its own may define many.
        if (!node && url.path.empty())
            return false;
        if (node)
            applyInstance(instance, *node, figure);
        return true;
    }

    bool instantiate(const dson::NodeInstance& instance, const dson::Uri& url, DzNode* parent)
    {
        try {
            const bool isDefined = !instance.url.empty();
            const std::shared_ptr<const dson::Document> definition =
                isDefined ? documentOf(url) : groupOf(instance);
            if (!definition)
                return false;
            if (IsBone(*definition, url.id)) {
                ++_lostBones;
                return false;
            }
            FigureAssembly assembly(definition, isDefined ? pathOf(url) : std::string(),
                                    isDefined ? url.id : definition->nodes.front().id,
                                    geometryOf(instance, url));
            assembly.addMorphsOnDisk(_library);
            DzNode& root = assembly.root();
            _figures.push_back({std::move(assembly), &instance, &root, parent});
            applyInstance(instance, root, _figures.size() - 1);
            return true;
        } catch (const base::Error& error) {
            warnLeftOut(error, _library.find(pathOf(url), _document->file));
            return false;
        }
    }

    /// Where several definitions stand in one file, the instance says which geometry is the node's.
    std::optional<std::string> geometryOf(const dson::NodeInstance& instance, const dson::Uri& url) const
    {
        if (!url.path.empty())
            return std::nullopt;
        return instance.geometries.empty() ? std::string()
                                           : dson::ParseUri(instance.geometries.front().url).id;
    }

    /// A bone that hangs on another node of its file is a part of a figure.
    static bool IsBone(const dson::Document& definition, const std::string& id)
    {
        for (const dson::Node& node : definition.nodes)
            if (node.id == id)
                return node.type == "bone" && !node.parent.empty();
        return false;
    }

    /// A node that nothing but its instance describes.
    static std::shared_ptr<const dson::Document> groupOf(const dson::NodeInstance& instance)
    {
        auto document = std::make_shared<dson::Document>();
        document->nodes.push_back(dson::MakeNode(instance.id, instance.label, "node"));
        return document;
    }

    void enterPlace(const std::string& id, std::size_t figure, DzNode& node)
    {
        if (!id.empty())
            _places.emplace(id, Place{figure, &node});
    }

    void applyInstance(const dson::NodeInstance& instance, DzNode& node, std::size_t figure)
    {
        enterPlace(instance.id, figure, node);
        FigureAssembly& assembly = _figures[figure].assembly;
        assembly.addNodeId(instance.id, node);
        assembly.addFormulas(instance.formulas, _document);
        const QString name = QString::fromStdString(instance.name);
        if (!name.isEmpty() && name != node.getName())
            node.setName(name);
        if (!instance.label.empty())
            node.setLabel(QString::fromStdString(instance.label));
        DzRotationOrder order;
        if (!instance.rotationOrder.empty() &&
            order.fromString(QString::fromStdString(instance.rotationOrder)))
            node.setRotationOrder(order);
        if (instance.inheritsScale)
            node.setInheritsScale(*instance.inheritsScale);
        applyChannels(instance, node);
        for (const dson::GeometryInstance& geometry : instance.geometries) {
            enterPlace(geometry.id, figure, node);
            applyGeometry(geometry, node);
        }
    }

    static void applyChannels(const dson::NodeInstance& instance, const DzNode& node)
    {
        for (const auto& channel : instance.channels)
            if (DzNumericProperty* const property = FindNodeChannel(node, channel.first))
                property->setDoubleRawValue(channel.second);
        for (const auto& change : instance.changes)
            if (DzNumericProperty* const property = FindNodeChannel(node, change.first))
                ApplyChange(*property, change.second);
        for (const auto& entry : instance.properties)
            if (auto* const property =
                    qobject_cast<DzNumericProperty*>(node.findProperty(QString::fromStdString(entry.first))))
                property->setDoubleRawValue(entry.second);
    }

    static void applyGeometry(const dson::GeometryInstance& geometry, const DzNode& node)
    {
        const DzObject* const object = node.getObject();
        const auto* const shape = object ? qobject_cast<DzFacetShape*>(object->getCurrentShape()) : nullptr;
        if (!shape)
            return;
        DzIntProperty* const level = shape->getSubDLevelControl();
        if (level && geometry.subdivisionLevel)
            level->setValue(*geometry.subdivisionLevel);
        for (const auto& channel : geometry.channels)
            if (auto* const property = qobject_cast<DzNumericProperty*>(
                    shape->findProperty(QString::fromStdString(channel.first))))
                property->setDoubleValue(channel.second);
    }

    void dial(const dson::ModifierInstance& instance)
    {
        const Place* const place = placeOf(instance.parent);
        if (!place)
            return;
        FigureAssembly& assembly = _figures[place->figure].assembly;
        assembly.addFormulas(instance.formulas, _document);
        const dson::Uri url = uriOf(instance);
        DzNumericProperty* property = assembly.findDial(url);
        if (!property) {
            addShapeFile(assembly, url);
            property = assembly.findDial(url);
        }
        if (!property) {
            if (instance.value && !url.id.empty())
                assembly.loseShape(url, _library.whyMissing(url, _document->file), *instance.value);
            return;
        }
        _dials.emplace(instance.id, property);
        ApplyChange(*property, instance.change);
        if (!instance.group.empty())
            property->setPath(QString::fromStdString(instance.group));
        if (instance.value)
            property->setDoubleRawValue(*instance.value);
    }

    /// The URL of the definition, with this file's path where it has none.
    dson::Uri uriOf(const dson::ModifierInstance& instance) const
    {
        dson::Uri url = dson::ParseUri(instance.url);
        if (url.path.empty())
            url.path = pathOf(url);
        return url;
    }

    /// A shape that lies outside the figure's own folders, or in this file.
    void addShapeFile(FigureAssembly& assembly, const dson::Uri& url)
    {
        try {
            const bool isHere = url.path == pathOf(dson::Uri());
            if (const std::shared_ptr<const dson::Document> file = isHere ? _document : documentOf(url))
                assembly.addModifier(file, url.path, url.id);
        } catch (const base::Error& error) {
            warnLeftOut(error, _library.find(url.path, _document->file));
        }
    }

    /// What a person should know before the figures appear.
    void report()
    {
        if (_missing.size() == 1)
            warnLeftOut(fmt::format("{} is in no content library", *_missing.begin()));
        else if (!_missing.empty())
            warnLeftOut(fmt::format("{} files are in no content library, such as {}", _missing.size(),
                                    *_missing.begin()));
        if (_lostBones > 0)
            warnLeftOut(fmt::format("{} bones hang on no figure and are left out", _lostBones));
        if (!_document->leftOut.empty())
            warnLeftOut(fmt::format("left out: {}", fmt::join(_document->leftOut, ", ")));
        std::set<std::string> duplicates;
        for (const Loaded& figure : _figures)
            duplicates.merge(figure.assembly.duplicateOutputs());
        if (!duplicates.empty())
            warn(fmt::format("formulas drive {} properties in the same way more than once, such as {}",
                             duplicates.size(), *duplicates.begin()));
        handOver();
        if (!_missing.empty())
            CurrentAttendant().tellMissingFiles(ToList(_missing));
        if (!duplicates.empty())
            CurrentAttendant().tellDuplicateFormulas(ToList(duplicates));
    }

    std::vector<DzNode*> enterScene()
    {
        const PropertyResolver elsewhere = [this](const std::string& uri) { return resolve(uri); };
        for (Loaded& figure : _figures)
            figure.assembly.connectFormulas(elsewhere);
        std::vector<DzNode*> tops;
        for (Loaded& figure : _figures) {
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

    /// The property that a URI names by the ids of instances.
    DzNumericProperty* resolve(const std::string& text) const
    {
        const dson::Uri uri = dson::ParseUri(text);
        const auto dial = _dials.find(uri.id);
        if (dial != _dials.end() && uri.property.compare(0, 5, "value") == 0)
            return dial->second;
        const Place* place = placeOfId(uri.node);
        if (!place)
            place = placeOfId(uri.id);
        if (!place)
            return nullptr;
        if (uri.property.compare(0, 5, "value") == 0)
            return _figures[place->figure].assembly.findDial(uri.id);
        const Place* const part = placeOfId(uri.id);
        return FindNodeChannel(part ? *part->node : *place->node, uri.property);
    }

    void markFavorites(const Loaded& figure) const
    {
        for (const std::string& name : figure.instance->favorites) {
            DzProperty* property = figure.assembly.findDial(name);
            if (!property)
                property = figure.node->findProperty(QString::fromStdString(name));
            if (property)
                property->setIsFavorite(true);
        }
    }

    void fit(const Loaded& figure)
    {
        const std::string& reference = figure.instance->conformTarget;
        auto* const follower = qobject_cast<DzSkeleton*>(figure.node);
        if (reference.empty() || !follower)
            return;
        const Place* const place = placeOf(reference);
        const DzNode* const node = place ? place->node : selectedNode(reference);
        DzSkeleton* const target = node ? node->getSkeleton() : nullptr;
        if (!target || IsBelow(*target, *follower))
            warnLeftOut(fmt::format("there is nothing that {} can be fitted to",
                                    figure.node->getLabel().toStdString()));
        else
            FitTo(*follower, *target);
    }

    /// A scene that moves is loaded as it is at its beginning.
    void animate() const
    {
        if (_figures.empty())
            return;
        const PresetTarget first(*_figures.front().node);
        for (const dson::AnimatedValue& value : _document->animations) {
            const dson::Uri uri = dson::ParseUri(value.url);
            DzNumericProperty* const property = NamesSelection(uri) ? first.find(uri) : resolve(value.url);
            if (property)
                property->setDoubleRawValue(value.value);
        }
    }

    AssetLibrary& _library;
    std::shared_ptr<const dson::Document> _document;
    std::vector<Loaded> _figures;
    std::unordered_map<std::string, Place> _places;
    std::unordered_map<std::string, DzNumericProperty*> _dials; ///< by the ids of their instances
    QPointer<DzNode> _selected;                                 ///< when the load began
    std::size_t _lostBones = 0;                                 ///< bones without a figure
    std::set<std::string> _missing;                             ///< paths that are in no library
    std::set<std::string> _failed;                              ///< instances that stand for nothing
    base::Diagnostics _diagnostics;                             ///< met, and not handed over yet
};

/// Tells the scene that a load is going on, also on the way of an exception.
struct LoadBracket {
    LoadBracket() { dzScene->beginLoad(); }
    ~LoadBracket() { dzScene->endLoad(); }
};

DzNode& SelectedNode(const dson::Document& document)
{
    DzNode* const selected = dzScene->getPrimarySelection();
    if (!selected)
        throw base::Error(document.file.string() + ": nothing is selected to apply the preset to");
    return *selected;
}

/// False when it was cancelled.
bool ApplyDFormPreset(const dson::Document& document)
{
    DFormLoadOptions options = ProposedDFormOptions(document);
    if (!CurrentAttendant().chooseDFormOptions(options))
        return false;
    ApplyDForm(document, FigureOf(SelectedNode(document)), options);
    return true;
}

bool ApplyPreset(const dson::Document& document)
{
    const QString label = SelectedNode(document).getLabel();
    if (!document.influenceMaps.empty() && !ApplyDFormPreset(document))
        return false;
    const int applied = ApplyValues(document, SelectedNode(document));
    if (document.influenceMaps.empty() && applied == 0)
        throw base::Error(
            fmt::format("{}: names nothing that {} has", document.file.string(), label.toStdString()));
    return true;
}

void RefuseEmptyPreset(const dson::Document& document)
{
    if (!document.influenceMaps.empty() || HoldsValues(document))
        return;
    const std::vector<std::string> others = LeftOutOf(document);
    throw base::FormatError(
        "{}: holds nothing to load into a scene{}", document.file.string(),
        others.empty() ? std::string() : fmt::format(" but what is left out: {}", fmt::join(others, ", ")));
}

/// Files that users save may be overwritten while the scene still needs the morphs in them.
std::shared_ptr<const dson::Document> WithOwnDeltas(std::shared_ptr<const dson::Document> document)
{
    const bool hasMorphs = std::any_of(document->modifiers.begin(), document->modifiers.end(),
                                       [](const dson::Modifier& modifier) { return bool(modifier.morph); });
    return hasMorphs ? std::make_shared<const dson::Document>(dson::ReadDocument(document->file)) : document;
}

/// Types may lie, so the content decides; presets with nodes of their own are told by the type alone.
bool IsPreset(const dson::Document& document)
{
    const bool hasValues = !document.influenceMaps.empty() || !document.animations.empty();
    return document.nodeInstances.empty() || (hasValues && document.info.type.compare(0, 7, "preset_") == 0);
}

} // namespace

bool LoadIntoScene(AssetLibrary& library, const fs::path& file, bool replace)
{
    const std::shared_ptr<const dson::Document> document = library.read(file);
    const LoadBracket bracket;
    if (IsPreset(*document)) {
        RefuseEmptyPreset(*document);
        return ApplyPreset(*document);
    }
    SceneLoader loader(library, WithOwnDeltas(document), replace ? nullptr : dzScene->getPrimarySelection());
    loader.prepare();
    if (loader.isEmpty())
        throw base::FormatError("{}: none of its figures could be loaded", file.string());
    if (replace)
        dzScene->clear();
    const std::vector<DzNode*> roots = loader.enter();
    if (roots.empty())
        return true;
    dzScene->selectAllNodes(false);
    for (DzNode* const root : roots)
        root->select(true);
    dzScene->setPrimarySelection(roots.front());
    return true;
}

} // namespace openhost
