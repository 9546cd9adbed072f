// Putting one figure together from its files.
// SPDX-License-Identifier: MIT

#include "figure_assembly.h"

#include "app/texts.h"
#include "base/errors.h"
#include "definition_nodes.h"
#include "dson/dhdm.h"
#include "dson/file_text.h"
#include "dzapp.h"
#include "dzbasiccamera.h"
#include "dzbone.h"
#include "dzcontentmgr.h"
#include "dzfacetmesh.h"
#include "dzfacetshape.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzintproperty.h"
#include "dzmorph.h"
#include "dzmorphdeltas.h"
#include "dzobject.h"
#include "dzpresentation.h"
#include "dzselectionmap.h"
#include "dzskinbinding.h"
#include "figure/deltas_access.h"
#include "figure/mesh_access.h"
#include "figure/skin_access.h"
#include "library/asset_origin.h"
#include "library/dial_index.h"
#include "loading/channel_properties.h"
#include "lost_shapes.h"
#include "openhost/diagnostics.h"
#include "pending_formulas.h"

#include <algorithm>
#include <functional>
#include <set>
#include <unordered_map>
#include <unordered_set>

#include <fmt/format.h>

namespace openhost {

namespace {

/// Without the deltas of vertices that the mesh does not have: files may leave their vertex count open.
/// @param lost  receives what is left out
geometry::SparseDeltas WithinMesh(geometry::SparseDeltas deltas, int vertexCount, const std::string& file,
                                  const std::string& id, base::Diagnostics& lost)
{
    const auto end = std::lower_bound(deltas.vertices.begin(), deltas.vertices.end(),
                                      static_cast<std::uint32_t>(vertexCount));
    const auto kept = static_cast<std::size_t>(end - deltas.vertices.begin());
    if (kept < deltas.size())
        lost.push_back(
            {base::Severity::Warning, file, id,
             fmt::format("{} deltas are of vertices that the figure does not have and are left out",
                         deltas.size() - kept)});
    deltas.vertices.resize(kept);
    deltas.deltas.resize(kept);
    return deltas;
}

/// The companion file of a morph: where the morph says, otherwise beside the morph's own file.
geometry::MultiresDetail ReadDetail(const std::string& url, const std::filesystem::path& morphFile,
                                    const geometry::Topology& cage)
{
    const QString path = ToQ(dson::ParseUri(url).path);
    std::filesystem::path file = dzApp->getContentMgr()->getAbsolutePath(path, true).toStdString();
    if (file.empty())
        file = std::filesystem::path(morphFile).replace_extension(".dhdm");
    return dson::DecodeDhdm(dson::ReadBytes(file), cage, file.string());
}

std::string FolderOf(const std::string& path)
{
    return path.substr(0, path.rfind('/') + 1);
}

/// The folder of the figure whose mesh, bones and morphs the figure in this folder shares; empty for none.
std::string FolderOfSharedFigure(const std::string& folder)
{
    constexpr const char suffix[] = " 8_1/";
    constexpr std::size_t length = sizeof suffix - 1;
    const bool isShared =
        folder.size() > length && folder.compare(folder.size() - length, length, suffix) == 0;
    return isShared ? folder.substr(0, folder.size() - length) + "/" : std::string();
}

bool IsPreset(const std::string& path)
{
    constexpr std::size_t length = 4;
    return path.size() > length && FoldCase(path.substr(path.size() - length)) == ".duf";
}

/// What was left out or taken otherwise for one reason, for one diagnostic.
struct Omission {
    std::size_t count = 0;
    std::string example;

    void add(const std::string& what)
    {
        if (count++ == 0)
            example = what;
    }
};

/// What an alias shows is its target's, and so are the limits.
void ShowLike(const DzNumericProperty& target, DzNumericProperty& alias)
{
    alias.setDoubleMinMax(target.getDoubleMin(), target.getDoubleMax());
    alias.setIsClamped(target.isClamped());
    alias.setDisplayAsPercent(target.getDisplayAsPercent());
}

dson::Uri UriOf(const std::string& decodedPath, const std::string& id)
{
    dson::Uri uri;
    uri.path = decodedPath;
    uri.id = id;
    return uri;
}

/// The file's formulas with its own path in what they say of this modifier by its id or name alone.
std::shared_ptr<const dson::Document> WithPathTo(const dson::Modifier& modifier, const dson::Document& file,
                                                 const std::string& filePath)
{
    auto copy = std::make_shared<dson::Document>();
    copy->file = file.file;
    copy->modifiers.push_back(modifier);
    const auto addPath = [&](std::string& text) {
        const dson::Uri uri = dson::ParseUri(text);
        const std::size_t mark = text.find('#');
        if (mark != text.npos && uri.path.empty() && (uri.id == modifier.id || uri.id == modifier.name))
            text.insert(mark, dson::EncodePath(filePath));
    };
    for (dson::Formula& formula : copy->modifiers.front().formulas) {
        addPath(formula.output);
        for (dson::Operation& operation : formula.operations)
            addPath(operation.url);
    }
    return copy;
}

/// A dial of the host for a modifier's channel.
void ApplyDial(DzNumericProperty& property, const dson::Modifier& modifier)
{
    ApplyChannel(property, modifier.channel);
    property.setPath(ToQ(modifier.group));
    property.setRegion(ToQ(modifier.region));
}

} // namespace

struct FigureAssembly::Impl {
    struct PendingAlias {
        DzNumericProperty* property;
        std::string target;
    };

    std::shared_ptr<const dson::Document> definition;
    std::string uriPath;
    std::string nodeId;
    std::string geometryName;
    std::optional<std::string> wantedGeometry;
    std::unique_ptr<DzNode> root;
    std::unordered_map<std::string, DzNode*> nodes;
    DialIndex dials;
    std::unordered_set<const dson::Modifier*> added; ///< also those that were left out
    std::set<std::string> givenNames;                ///< in place of those that were taken
    PendingFormulas formulas;
    std::vector<PendingAlias> aliases;
    Omission forOtherMeshes, forOtherFigures, ofEqualNames;
    AssetLibrary* library = nullptr; ///< where its shapes were looked for
    LostShapes lostShapes;

    DzNode* node(const std::string& idOrName) const
    {
        const auto found = nodes.find(idOrName);
        return found == nodes.end() ? nullptr : found->second;
    }

    const dson::Node& definitionOf(const std::string& id) const
    {
        for (const dson::Node& candidate : definition->nodes)
            if (candidate.id == id)
                return candidate;
        throw base::FormatError("{}: has no node {}", definition->file.string(), id);
    }

    void enter(const dson::Node& source, DzNode& made)
    {
        made.setAssetUri(AssetUri(uriPath, source.id));
        if (IsDataFile(uriPath))
            SetTransformsAsDefined(made);
        nodes.emplace(source.id, &made);
        nodes.emplace(source.name, &made);
        for (const dson::Formula& formula : source.formulas)
            formulas.add(formula, definition);
    }

    void makeNodes()
    {
        const dson::Node& top = definitionOf(nodeId);
        root = MakeNode(top);
        enter(top, *root);
        // Parents stand before children in files; what does not hang on this figure belongs to another one.
        for (const dson::Node& source : definition->nodes) {
            DzNode* const parent = &source == &top ? nullptr : node(source.parent);
            if (!parent || nodes.count(source.id))
                continue;
            std::unique_ptr<DzNode> made = MakeNode(source);
            enter(source, *made);
            parent->addNodeChild(made.release());
        }
    }

    const dson::Geometry* geometryOf(const dson::SkinDefinition* skin) const
    {
        for (const dson::Geometry& geometry : definition->geometries)
            if (wantedGeometry ? geometry.id == *wantedGeometry : !skin || geometry.id == skin->geometry)
                return &geometry;
        return nullptr;
    }

    const dson::SkinDefinition* skinOf() const
    {
        for (const dson::SkinDefinition& skin : definition->skins)
            if (skin.node == nodeId || (!wantedGeometry && definition->skins.size() == 1))
                return &skin;
        return nullptr;
    }

    void makeGeometry()
    {
        const dson::SkinDefinition* const skin = skinOf();
        const dson::Geometry* const geometry = geometryOf(skin);
        if (!geometry)
            return;
        geometryName = geometry->id;
        root->setObject(MakeObject(*geometry).release());
        SetAssetUri(*root->getObject(), AssetUri(uriPath, geometry->id));
        if (skin)
            bind(*skin, geometry->mesh.vertexCount());
    }

    void bind(const dson::SkinDefinition& skin, std::size_t vertexCount)
    {
        checkSkin(skin.binding, vertexCount);
        auto binding = std::make_unique<DzSkinBinding>();
        binding->setName(ToQ(skin.binding.id));
        binding->setTargetVertexCount(static_cast<int>(vertexCount));
        binding->setGeneralMapMode(skin.binding.dualQuaternion ? DzSkinBinding::DualQuat
                                                               : DzSkinBinding::Linear);
        for (const dson::JointBinding& joint : skin.binding.joints)
            if (auto* const bone = qobject_cast<DzBone*>(node(joint.node)))
                SkinAccess::bind(*binding, *bone, joint.vertices, joint.weights);
        root->setSelectionMap(makeSelectionMap(skin).release());
        root->getObject()->addModifier(binding.release());
    }

    /// As the file says; bones that it does not mention are selected by the face groups of their names.
    std::unique_ptr<DzSelectionMap> makeSelectionMap(const dson::SkinDefinition& skin) const
    {
        auto map = std::make_unique<DzSelectionMap>();
        std::set<const DzNode*> selected;
        for (const auto& pair : skin.selectionMap) {
            const DzNode* const target = node(pair.second);
            if (!target)
                continue;
            map->addPair(ToQ(pair.first), target->getName());
            selected.insert(target);
        }
        for (const dson::JointBinding& joint : skin.binding.joints) {
            const auto* const bone = qobject_cast<DzBone*>(node(joint.node));
            if (bone && !selected.count(bone) && map->findNodeName(bone->getName()).isEmpty())
                map->addPair(bone->getName(), bone->getName());
        }
        return map;
    }

    void checkSkin(const dson::SkinBinding& skin, std::size_t vertexCount) const
    {
        if (skin.vertexCount != 0 && skin.vertexCount != vertexCount)
            throw base::FormatError("{}: the skin is for {} vertices but the mesh has {}",
                                    definition->file.string(), skin.vertexCount, vertexCount);
        for (const dson::JointBinding& joint : skin.joints)
            for (const std::uint32_t vertex : joint.vertices)
                if (vertex >= vertexCount)
                    throw base::FormatError("{}: joint {} binds vertex {} but the mesh has {}",
                                            definition->file.string(), joint.node, vertex, vertexCount);
    }

    bool isOurs(const dson::Modifier& modifier, const dson::Document& file) const
    {
        const dson::Uri parent = dson::ParseUri(modifier.parent);
        const bool isPart = parent.id == geometryName || nodes.count(parent.id) > 0;
        // Presets may lie anywhere, so one that is named as a parent says nothing.
        const bool namesFile = !parent.path.empty() && !IsPreset(parent.path);
        if (namesFile && isOfSharedFigure(parent))
            return isPart || !modifier.morph || fitsMesh(*modifier.morph);
        if (namesFile && FoldCase(parent.path) != FoldCase(uriPath))
            return false;
        // A file with definitions of its own may hold several figures of one size.
        const bool hasRightSize =
            &file != definition.get() && modifier.morph && modifier.morph->vertexCount == baseVertexCount();
        return isPart || hasRightSize;
    }

    bool isOfSharedFigure(const dson::Uri& parent) const
    {
        const std::string shared = FolderOfSharedFigure(FolderOf(uriPath));
        return !shared.empty() && FoldCase(FolderOf(parent.path)) == FoldCase(shared);
    }

    bool fitsMesh(const dson::MorphData& morph) const
    {
        return morph.vertexCount <= 0 || morph.vertexCount == baseVertexCount();
    }

    int baseVertexCount() const
    {
        const DzObject* const object = root->getObject();
        const auto* const shape = object ? qobject_cast<DzFacetShape*>(object->getCurrentShape()) : nullptr;
        return shape && shape->getFacetMesh() ? shape->getFacetMesh()->getNumVertices() : 0;
    }

    /// Of a figure with a mesh.
    std::shared_ptr<const geometry::Topology> baseTopology() const
    {
        const auto* const shape = qobject_cast<DzFacetShape*>(root->getObject()->getCurrentShape());
        return MeshAccess::mesh(*shape->getFacetMesh()).topology;
    }

    void addIfOurs(const dson::Modifier& modifier, const std::shared_ptr<const dson::Document>& file,
                   const std::string& filePath)
    {
        const dson::Uri parent = dson::ParseUri(modifier.parent);
        if (isOfSharedFigure(parent))
            nodes.emplace(parent.id, root.get()); // formulas call the root as its own figure does
        if (isOurs(modifier, *file))
            add(modifier, file, filePath);
        else if (file != definition && added.insert(&modifier).second)
            forOtherFigures.add(file->file.string());
    }

    void add(const dson::Modifier& modifier, const std::shared_ptr<const dson::Document>& file,
             const std::string& filePath)
    {
        if (modifier.name.empty() || !added.insert(&modifier).second)
            return;
        const bool isAlias = modifier.channel.type == "alias";
        // An alias often has the name of what it stands for.
        const bool isTaken = !isAlias && hasName(modifier.name);
        // The figure's own shapes stand for those of the figure that it shares others with; of equal ids in a
        // file the first counts.
        if (isTaken &&
            (isOfSharedFigure(dson::ParseUri(modifier.parent)) || dials.has(filePath, modifier.id)))
            return;
        const std::string name = isTaken ? freeName(modifier.name) : modifier.name;
        const bool isMade = isAlias ? addAlias(modifier, *file, filePath)
                            : modifier.morph && root->getObject()
                                ? addMorph(modifier, name, *file, filePath)
                                : addControl(modifier, name, *file, filePath);
        if (!isMade)
            return;
        if (isTaken)
            ofEqualNames.add(file->file.string());
        const auto owner = isTaken ? WithPathTo(modifier, *file, filePath) : file;
        for (const dson::Formula& formula : isTaken ? owner->modifiers.front().formulas : modifier.formulas)
            formulas.add(formula, owner);
    }

    bool hasName(const std::string& name) const { return dials.hasName(name) || givenNames.count(name) > 0; }

    /// Scripts and plug-ins look dials up by name, so each has a name of its own; files tell them apart by
    /// their paths.
    std::string freeName(const std::string& taken)
    {
        int number = 2;
        while (hasName(fmt::format("{} {}", taken, number)))
            ++number;
        return *givenNames.insert(fmt::format("{} {}", taken, number)).first;
    }

    void setDeltas(DzMorphDeltas& deltas, const dson::Modifier& modifier, const dson::Document& file,
                   int baseCount) const
    {
        if (file.hasDeltas) {
            base::Diagnostics lost;
            geometry::SparseDeltas kept =
                WithinMesh(modifier.morph->deltas, baseCount, file.file.string(), modifier.id, lost);
            Report(lost);
            DeltasAccess::assign(deltas, std::move(kept), std::move(lost));
        } else {
            DeltasAccess::setLoader(deltas,
                                    [path = file.file, id = modifier.id, baseCount](base::Diagnostics& lost) {
                                        base::Diagnostics met;
                                        geometry::SparseDeltas all = dson::ReadDeltas(path, id, &met);
                                        Report(met);
                                        return WithinMesh(std::move(all), baseCount, path.string(), id, lost);
                                    });
        }
        if (!modifier.morph->hdUrl.empty())
            DeltasAccess::setDetailLoader(
                deltas, [cage = baseTopology(), url = modifier.morph->hdUrl,
                         path = file.file](base::Diagnostics&) { return ReadDetail(url, path, *cage); });
    }

    bool addMorph(const dson::Modifier& modifier, const std::string& name, const dson::Document& file,
                  const std::string& filePath)
    {
        const int baseCount = baseVertexCount();
        if (!fitsMesh(*modifier.morph)) {
            forOtherMeshes.add(file.file.string());
            lostShapes.add({UriOf(filePath, modifier.id), modifier.name,
                            base::Diagnostic{base::Severity::Warning, file.file.string(), modifier.name,
                                             fmt::format("is for a mesh of {} vertices instead of {}",
                                                         modifier.morph->vertexCount, baseCount)},
                            modifier.channel});
            return false;
        }
        const DzUri uri = AssetUri(filePath, modifier.id);
        auto* const deltas = new DzMorphDeltas;
        deltas->setTargetVertexCount(baseCount);
        deltas->setUri(uri);
        setDeltas(*deltas, modifier, file, baseCount);
        auto morph = std::make_unique<DzMorph>(deltas);
        morph->setName(ToQ(name));
        morph->setAssetUri(uri);
        morph->setPresentation(MakePresentation(modifier.presentationType).release());
        DzFloatProperty& dial = *morph->getValueControl();
        if (root->getObject()->addModifier(morph.get()) != DZ_NO_ERROR)
            return false;
        morph.release();
        ApplyDial(dial, modifier);
        if (!uri.isEmpty())
            SetAsDefined(dial);
        dials.add(modifier, file, filePath, dial);
        return true;
    }

    DzNode& ownerOf(const dson::Modifier& modifier) const
    {
        DzNode* const owner = node(dson::ParseUri(modifier.parent).id);
        return owner ? *owner : *root;
    }

    bool addControl(const dson::Modifier& modifier, const std::string& name, const dson::Document& file,
                    const std::string& filePath)
    {
        DzNode& owner = ownerOf(modifier);
        std::unique_ptr<DzNumericProperty> property = MakeProperty(name, modifier.channel);
        if (!property || owner.findProperty(property->getName()))
            return false;
        DzNumericProperty& dial = *property;
        owner.addProperty(property.release());
        ApplyDial(dial, modifier);
        SetAssetUri(dial, AssetUri(filePath, modifier.id));
        if (IsDataFile(filePath))
            SetAsDefined(dial);
        dial.setPresentation(MakePresentation(modifier.presentationType).release());
        dials.add(modifier, file, filePath, dial);
        return true;
    }

    bool addAlias(const dson::Modifier& modifier, const dson::Document& file, const std::string& filePath)
    {
        DzNode& owner = ownerOf(modifier);
        const QString name = ToQ(modifier.name);
        if (owner.findProperty(name))
            return false;
        auto* const property = new DzFloatProperty(name, true, true, 0.0f);
        property->setLabel(ToQ(modifier.channel.label));
        property->setHidden(!modifier.channel.visible);
        owner.addProperty(property);
        property->setPath(ToQ(modifier.group));
        property->setRegion(ToQ(modifier.region));
        SetAssetUri(*property, AssetUri(filePath, modifier.id));
        aliases.push_back({property, modifier.channel.targetChannel});
        dials.add(modifier, file, filePath, *property);
        return true;
    }

    /// The dial or node channel that a URI names within this figure.
    DzNumericProperty* resolve(const std::string& text) const
    {
        const dson::Uri uri = dson::ParseUri(text);
        if (uri.property.compare(0, 5, "value") == 0)
            return dials.find(uri);
        const DzNode* target = node(uri.id);
        if (!target)
            target = node(uri.node);
        return target ? FindNodeChannel(*target, uri.property) : nullptr;
    }

    /// As resolve, here or elsewhere; for an alias what it stands for.
    DzNumericProperty* resolveForLink(const std::string& text, const PropertyResolver& elsewhere) const
    {
        DzNumericProperty* property = resolve(text);
        if (!property)
            property = elsewhere(text);
        while (property && property->getAliasTarget())
            property = qobject_cast<DzNumericProperty*>(property->getAliasTarget());
        return property;
    }

    /// Returns how many aliases have no target.
    std::size_t connectAliases(const PropertyResolver& elsewhere)
    {
        std::size_t missing = 0;
        for (const PendingAlias& alias : aliases) {
            DzNumericProperty* const target = resolveForLink(alias.target, elsewhere);
            if (!target || !alias.property->setAliasTarget(target)) {
                // A dial that turns nothing would only mislead.
                alias.property->setHidden(true);
                ++missing;
            }
        }
        for (const PendingAlias& alias : aliases)
            if (const DzNumericProperty* const target = resolveForLink(alias.target, elsewhere))
                ShowLike(*target, *alias.property);
        aliases.clear();
        return missing;
    }

    void warn(std::string what) const { Report({base::Severity::Warning, uriPath, {}, std::move(what)}); }

    /// Whether a path leads to where this figure's shapes are.
    bool isOwn(const std::string& path) const
    {
        const std::string own = FolderOf(uriPath), shared = FolderOfSharedFigure(own);
        const auto isBelow = [folded = FoldCase(path)](const std::string& folder) {
            return !folder.empty() && folded.compare(0, folder.size(), FoldCase(folder)) == 0;
        };
        return isBelow(own) || isBelow(shared);
    }

    /// A formula may turn a shape that is not there.
    void driveLost(const dson::Formula& formula, const PropertyResolver& resolveInput)
    {
        const dson::Uri output = dson::ParseUri(formula.output);
        if (output.property.compare(0, 5, "value") != 0)
            return;
        LostShape* shape = lostShapes.find(output);
        if (!shape && library && isOwn(output.path))
            if (const auto why = library->whyMissing(output, definition->file))
                shape = &lostShapes.add({output, output.id, *why});
        if (shape)
            shape->drive(formula, resolveInput);
    }

    void reportOmissions()
    {
        const auto report = [this](Omission& omission, const char* why) {
            if (omission.count > 0)
                warn(fmt::format("{} morphs {}, such as {}", omission.count, why, omission.example));
            omission = {};
        };
        report(forOtherMeshes, "are for a mesh of another size and are left out");
        report(forOtherFigures, "belong to other figures and are left out");
        report(ofEqualNames, "have names that are taken and get others");
    }
};

FigureAssembly::FigureAssembly(std::shared_ptr<const dson::Document> definition, std::string uriPath,
                               const std::string& nodeId, std::optional<std::string> geometryId)
    : _impl(std::make_unique<Impl>())
{
    _impl->wantedGeometry = std::move(geometryId);
    _impl->definition = std::move(definition);
    _impl->uriPath = std::move(uriPath);
    _impl->nodeId = nodeId;
    _impl->makeNodes();
    _impl->makeGeometry();
    addModifiers(_impl->definition, _impl->uriPath);
}

FigureAssembly::~FigureAssembly() = default;
FigureAssembly::FigureAssembly(FigureAssembly&&) noexcept = default;

void FigureAssembly::addMorphsOnDisk(AssetLibrary& library)
{
    _impl->library = &library;
    // A figure within a scene file has no folder of its own.
    const std::string own = FolderOf(_impl->uriPath);
    if (own.empty() || IsPreset(_impl->uriPath))
        return;
    std::vector<std::filesystem::path> duplicates, files;
    for (const std::string& folder : {own, FolderOfSharedFigure(own)})
        if (!folder.empty())
            for (std::filesystem::path& file :
                 library.paths().filesBelow(folder + "Morphs", ".dsf", &duplicates))
                files.push_back(std::move(file));
    if (!duplicates.empty())
        _impl->warn(fmt::format("{} morph files are in more than one content library; the first is used",
                                duplicates.size()));
    for (const auto& document : library.readAll(files))
        if (document)
            addModifiers(document, library.paths().relativePath(document->file));
}

void FigureAssembly::addModifiers(std::shared_ptr<const dson::Document> file, const std::string& uriPath)
{
    for (const dson::Modifier& modifier : file->modifiers)
        _impl->addIfOurs(modifier, file, uriPath);
}

void FigureAssembly::addModifier(std::shared_ptr<const dson::Document> file, const std::string& uriPath,
                                 const std::string& idOrName)
{
    const dson::Modifier* found = nullptr;
    for (const dson::Modifier& modifier : file->modifiers)
        if (modifier.id == idOrName || (!found && modifier.name == idOrName)) {
            found = &modifier;
            if (modifier.id == idOrName)
                break;
        }
    if (!found && file->modifiers.size() == 1)
        found = &file->modifiers.front();
    if (found)
        _impl->add(*found, file, uriPath);
}

void FigureAssembly::addFormulas(const std::vector<dson::Formula>& formulas,
                                 const std::shared_ptr<const dson::Document>& owner)
{
    for (const dson::Formula& formula : formulas)
        _impl->formulas.addOnce(formula, owner);
}

void FigureAssembly::addNodeId(const std::string& id, DzNode& node)
{
    _impl->nodes.emplace(id, &node);
}

std::set<std::string> FigureAssembly::duplicateOutputs() const
{
    return _impl->formulas.duplicateOutputs();
}

void FigureAssembly::connectFormulas(const PropertyResolver& elsewhere)
{
    const std::size_t blind = _impl->connectAliases(elsewhere);
    const PropertyResolver resolve = [&](const std::string& uri) {
        return _impl->resolveForLink(uri, elsewhere);
    };
    const PendingFormulas::LeftOut leftOut = _impl->formulas.connect(
        resolve, [&](const dson::Formula& formula) { _impl->driveLost(formula, resolve); });
    _impl->reportOmissions();
    if (blind > 0)
        _impl->warn(fmt::format("{} aliases name what is not installed and are hidden", blind));
    if (leftOut.missing + leftOut.notUnderstood > 0)
        _impl->warn(fmt::format("{} formulas name what is not installed and {} cannot be understood",
                                leftOut.missing, leftOut.notUnderstood));
    if (!_impl->lostShapes.empty())
        LostShapes::Attach(*_impl->root, std::move(_impl->lostShapes));
}

void FigureAssembly::loseShape(const dson::Uri& uri, const std::optional<base::Diagnostic>& why, double value)
{
    LostShape* shape = _impl->lostShapes.find(uri);
    if (!shape && why)
        shape = &_impl->lostShapes.add({uri, uri.id, *why});
    if (shape)
        shape->set(value);
}

std::unique_ptr<DzNode> FigureAssembly::takeRoot()
{
    return std::move(_impl->root);
}

DzNode& FigureAssembly::root() const
{
    return *_impl->nodes.at(_impl->nodeId);
}

DzNode* FigureAssembly::findNode(const std::string& idOrName) const
{
    return _impl->node(idOrName);
}

DzNumericProperty* FigureAssembly::findDial(const dson::Uri& uri) const
{
    return _impl->dials.find(uri);
}

DzNumericProperty* FigureAssembly::findDial(const std::string& nameOrId) const
{
    return _impl->dials.find(nameOrId);
}

DzNumericProperty* FigureAssembly::resolve(const std::string& uri) const
{
    return _impl->resolve(uri);
}

bool FigureAssembly::isNamedBy(const std::string& uriPath) const
{
    return FoldCase(uriPath) == FoldCase(_impl->uriPath);
}

const std::string& FigureAssembly::geometryId() const
{
    return _impl->geometryName;
}

} // namespace openhost
