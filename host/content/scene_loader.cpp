// Loading content files into the scene.
// SPDX-License-Identifier: MIT

#include "host/content/scene_loader.h"

#include "dzfacetshape.h"
#include "dzintproperty.h"
#include "dznode.h"
#include "dznumericproperty.h"
#include "dzobject.h"
#include "dzscene.h"
#include "dzskeleton.h"
#include "geometry/errors.h"
#include "host/content/channel_properties.h"
#include "host/content/dson_uri.h"
#include "host/content/figure_assembly.h"
#include "host/content/preset_loader.h"
#include "host/scene/host_log.h"
#include "host/scene/load_questions.h"

#include <memory>
#include <set>

#include <fmt/format.h>

namespace openhost {

namespace {

namespace fs = std::filesystem;

void Log(const std::string& line)
{
    LogWarning(QString::fromStdString(line));
}

QStringList ToList(const std::set<std::string>& texts)
{
    QStringList list;
    for (const std::string& text : texts)
        list.append(QString::fromStdString(text));
    return list;
}

/// One character or scene file on its way into the scene.
class SceneLoader {
public:
    SceneLoader(AssetLibrary& library, std::shared_ptr<const dson::Document> document)
        : _library(library), _document(std::move(document))
    {
    }

    /// The roots that entered the scene.
    std::vector<DzNode*> load()
    {
        for (const dson::NodeInstance& instance : _document->nodeInstances)
            place(instance);
        for (const dson::ModifierInstance& instance : _document->modifierInstances)
            dial(instance);
        report();
        return enterScene();
    }

private:
    struct Loaded {
        FigureAssembly assembly;
        DzNode* parent = nullptr; ///< of another figure in the file; null for a root of the scene
    };
    /// What an instance id stands for.
    struct Place {
        std::size_t figure; ///< index into _figures
        DzNode* node;
    };

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
            if (_missing.insert(uri.path).second)
                Log(fmt::format("{}: {} is in no content library", _document->file.string(), uri.path));
            return nullptr;
        }
        return _library.read(file);
    }

    const Place* placeOf(const std::string& reference) const
    {
        const auto found = _places.find(dson::ParseUri(reference).id);
        return found == _places.end() ? nullptr : &found->second;
    }

    void place(const dson::NodeInstance& instance)
    {
        const dson::Uri url = dson::ParseUri(instance.url);
        const Place* const parent = instance.parent.empty() ? nullptr : placeOf(instance.parent);
        if (parent && overlay(instance, url, parent->figure))
            return;
        // The bones of a figure that could not be loaded are no figures of their own.
        const bool hangsOnMissing = _failed.count(dson::ParseUri(instance.parent).id) > 0;
        const bool isMade = !hangsOnMissing && instantiate(instance, url, parent ? parent->node : nullptr);
        if (!isMade && !instance.id.empty())
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
        if (node)
            applyInstance(instance, *node, figure);
        return true;
    }

    bool instantiate(const dson::NodeInstance& instance, const dson::Uri& url, DzNode* parent)
    {
        try {
            const std::shared_ptr<const dson::Document> definition = documentOf(url);
            if (!definition)
                return false;
            FigureAssembly assembly(definition, pathOf(url), url.id);
            assembly.addMorphsOnDisk(_library);
            _figures.push_back({std::move(assembly), parent});
            applyInstance(instance, _figures.back().assembly.root(), _figures.size() - 1);
            return true;
        } catch (const geometry::Error& error) {
            Log(error.what());
            return false;
        }
    }

    void applyInstance(const dson::NodeInstance& instance, DzNode& node, std::size_t figure)
    {
        _places[instance.id] = {figure, &node};
        if (!instance.label.empty())
            node.setLabel(QString::fromStdString(instance.label));
        for (const auto& channel : instance.channels)
            if (DzNumericProperty* const property = FindNodeChannel(node, channel.first))
                property->setDoubleRawValue(channel.second);
        for (const dson::GeometryInstance& geometry : instance.geometries) {
            _places[geometry.id] = {figure, &node};
            applyGeometry(geometry, node);
        }
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
        const dson::Uri url = dson::ParseUri(instance.url);
        DzNumericProperty* property = assembly.findDial(url.id);
        if (!property) {
            addShapeFile(assembly, url);
            property = assembly.findDial(url.id);
        }
        if (property && instance.value)
            property->setDoubleRawValue(*instance.value);
    }

    /// A shape that lies outside the figure's own folders.
    void addShapeFile(FigureAssembly& assembly, const dson::Uri& url)
    {
        try {
            if (const std::shared_ptr<const dson::Document> file = documentOf(url))
                assembly.addModifiers(file, pathOf(url));
        } catch (const geometry::Error& error) {
            Log(error.what());
        }
    }

    /// What a person should know before the figures appear.
    void report() const
    {
        if (!_missing.empty())
            CurrentLoadQuestions().missingFiles(ToList(_missing));
        std::set<std::string> duplicates;
        for (const Loaded& figure : _figures)
            duplicates.merge(figure.assembly.duplicateOutputs());
        if (duplicates.empty())
            return;
        Log(fmt::format("{}: formulas drive {} properties in the same way more than once, such as {}",
                        _document->file.string(), duplicates.size(), *duplicates.begin()));
        CurrentLoadQuestions().duplicateFormulas(ToList(duplicates));
    }

    std::vector<DzNode*> enterScene()
    {
        std::vector<DzNode*> roots;
        for (Loaded& figure : _figures) {
            figure.assembly.connectFormulas();
            DzNode* const root = figure.assembly.takeRoot().release();
            if (figure.parent) {
                figure.parent->addNodeChild(root);
            } else {
                dzScene->addNode(root);
                roots.push_back(root);
            }
        }
        return roots;
    }

    AssetLibrary& _library;
    std::shared_ptr<const dson::Document> _document;
    std::vector<Loaded> _figures;
    std::unordered_map<std::string, Place> _places;
    std::set<std::string> _missing; ///< paths that are in no library
    std::set<std::string> _failed;  ///< instances that stand for nothing
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
        throw geometry::Error(document.file.string() + ": nothing is selected to apply the preset to");
    return *selected;
}

/// False when it was cancelled.
bool ApplyDFormPreset(const dson::Document& document)
{
    DFormLoadOptions options = ProposedDFormOptions(document);
    if (!CurrentLoadQuestions().dformOptions(options))
        return false;
    DzNode& selected = SelectedNode(document);
    DzNode* const figure = selected.getSkeleton();
    ApplyDForm(document, figure ? *figure : selected, options);
    return true;
}

bool ApplyPreset(const dson::Document& document)
{
    const QString label = SelectedNode(document).getLabel();
    if (!document.influenceMaps.empty() && !ApplyDFormPreset(document))
        return false;
    const int applied = ApplyValues(document, SelectedNode(document));
    if (document.influenceMaps.empty() && applied == 0)
        throw geometry::Error(
            fmt::format("{}: names nothing that {} has", document.file.string(), label.toStdString()));
    return true;
}

/// Types may lie, so the content decides; presets with nodes of their own are told by the type alone.
bool IsPreset(const dson::Document& document)
{
    const bool hasValues = !document.influenceMaps.empty() || !document.animations.empty();
    return document.nodeInstances.empty() || (hasValues && document.info.type.compare(0, 7, "preset_") == 0);
}

} // namespace

bool LoadIntoScene(AssetLibrary& library, const fs::path& file)
{
    const std::shared_ptr<const dson::Document> document = library.read(file);
    const LoadBracket bracket;
    if (IsPreset(*document)) {
        if (document->influenceMaps.empty() && document->animations.empty())
            throw geometry::FormatError("{}: holds nothing to load into a scene", file.string());
        return ApplyPreset(*document);
    }
    const std::vector<DzNode*> roots = SceneLoader(library, document).load();
    if (roots.empty())
        throw geometry::FormatError("{}: none of its figures could be loaded", file.string());
    dzScene->selectAllNodes(false);
    for (DzNode* const root : roots)
        root->select(true);
    dzScene->setPrimarySelection(roots.front());
    return true;
}

} // namespace openhost
