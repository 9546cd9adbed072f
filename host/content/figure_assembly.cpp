// Putting one figure together from its files.
// SPDX-License-Identifier: MIT

#include "host/content/figure_assembly.h"

#include "dzbone.h"
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
#include "geometry/errors.h"
#include "host/content/channel_properties.h"
#include "host/content/dson_uri.h"
#include "host/content/formula_links.h"
#include "host/figure/deltas_access.h"
#include "host/figure/mesh_access.h"
#include "host/figure/skin_access.h"
#include "host/scene/host_log.h"

#include <algorithm>
#include <functional>

#include <fmt/format.h>

namespace openhost {

namespace {

QString ToQ(const std::string& text)
{
    return QString::fromStdString(text);
}

DzVec3 ToVector(const std::array<double, 3>& values)
{
    return DzVec3(static_cast<float>(values[0]), static_cast<float>(values[1]),
                  static_cast<float>(values[2]));
}

std::unique_ptr<DzNode> MakeNodeOfType(const std::string& type)
{
    if (type == "figure" || type == "legacy_figure")
        return std::make_unique<DzFigure>();
    if (type == "bone")
        return std::make_unique<DzBone>();
    return std::make_unique<DzNode>();
}

void ApplyVector(const DzNode& node, const char* member, const std::array<dson::Channel, 3>& channels)
{
    static const char* const axes[3] = {"/x", "/y", "/z"};
    for (std::size_t axis = 0; axis < 3; ++axis)
        if (DzNumericProperty* const property = FindNodeChannel(node, std::string(member) + axes[axis]))
            ApplyChannel(*property, channels[axis]);
}

std::unique_ptr<DzNode> MakeNode(const dson::Node& definition)
{
    std::unique_ptr<DzNode> node = MakeNodeOfType(definition.type);
    node->setName(ToQ(definition.name));
    node->setLabel(ToQ(definition.label));
    DzRotationOrder order;
    if (!order.fromString(ToQ(definition.rotationOrder)))
        LogWarning(ToQ(fmt::format("node {} has the unknown rotation order {}; XYZ is used", definition.id,
                                   definition.rotationOrder)));
    node->setRotationOrder(order);
    node->setInheritsScale(definition.inheritsScale);
    node->setOrigin(ToVector(definition.centerPoint));
    node->setEndPoint(ToVector(definition.endPoint));
    node->setOrientation(ToVector(definition.orientation));
    ApplyVector(*node, "translation", definition.translation);
    ApplyVector(*node, "rotation", definition.rotation);
    ApplyVector(*node, "scale", definition.scale);
    if (DzNumericProperty* const scale = FindNodeChannel(*node, "general_scale"))
        scale->setDoubleValue(definition.generalScale.value);
    if (!definition.presentationType.empty()) {
        auto* const presentation = new DzPresentation;
        presentation->setType(ToQ(definition.presentationType));
        node->setPresentation(presentation);
    }
    return node;
}

DzFacetMesh::SubDEdgeInterpolation EdgeInterpolation(const std::string& name)
{
    return name == "edges_only"          ? DzFacetMesh::SharpEdges
           : name == "edges_and_corners" ? DzFacetMesh::SharpCornersEdges
                                         : DzFacetMesh::SoftCornersEdges;
}

std::unique_ptr<DzObject> MakeObject(const dson::Geometry& geometry)
{
    const DzFacetMeshPtr mesh(MeshAccess::create(geometry.mesh));
    mesh->setName(ToQ(geometry.name));
    mesh->enableSubDivision(geometry.subdivisionSurface);
    mesh->setSubDEdgeInterpolation(EdgeInterpolation(geometry.edgeInterpolation));
    auto shape = std::make_unique<DzFacetShape>();
    shape->setName(ToQ(geometry.name));
    shape->setLabel(ToQ(geometry.label));
    shape->setFacetMesh(mesh);
    if (DzIntProperty* const level = shape->getSubDLevelControl()) {
        level->setDefaultValue(geometry.subdivisionLevel);
        level->setValue(geometry.subdivisionLevel);
    }
    auto object = std::make_unique<DzObject>();
    object->setName(ToQ(geometry.name));
    object->addShape(shape.release());
    return object;
}

/// Without the deltas of vertices that the mesh does not have: files may leave their vertex count open.
geometry::SparseDeltas WithinMesh(geometry::SparseDeltas deltas, int vertexCount, const std::string& file)
{
    const auto end = std::lower_bound(deltas.vertices.begin(), deltas.vertices.end(),
                                      static_cast<std::uint32_t>(vertexCount));
    const auto kept = static_cast<std::size_t>(end - deltas.vertices.begin());
    if (kept < deltas.size())
        LogWarning(
            ToQ(fmt::format("{}: {} deltas are of vertices that the figure does not have and are left out",
                            file, deltas.size() - kept)));
    deltas.vertices.resize(kept);
    deltas.deltas.resize(kept);
    return deltas;
}

std::size_t HashOf(const dson::Formula& formula)
{
    std::string text = formula.output;
    for (const dson::Operation& operation : formula.operations)
        text += operation.url + fmt::format(" {} {} ", static_cast<int>(operation.kind), operation.value);
    return std::hash<std::string>()(text);
}

bool AreEqual(const dson::Formula& a, const dson::Formula& b)
{
    return a.output == b.output && a.stage == b.stage &&
           std::equal(a.operations.begin(), a.operations.end(), b.operations.begin(), b.operations.end(),
                      [](const dson::Operation& x, const dson::Operation& y) {
                          return x.kind == y.kind && x.url == y.url && x.value == y.value && x.knot == y.knot;
                      });
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
    struct PendingFormula {
        const dson::Formula* formula;
        std::shared_ptr<const dson::Document> owner; ///< keeps the formula alive
    };
    struct PendingAlias {
        DzNumericProperty* property;
        std::string target;
    };

    std::shared_ptr<const dson::Document> definition;
    std::string uriPath;
    std::string nodeId;
    std::string geometryName;
    std::unique_ptr<DzNode> root;
    std::unordered_map<std::string, DzNode*> nodes;
    std::unordered_map<std::string, DzNumericProperty*> dials;
    std::vector<PendingFormula> formulas;
    std::vector<PendingAlias> aliases;
    std::vector<std::string> forOtherMeshes; ///< files of morphs with another vertex count

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
        throw geometry::FormatError("{}: has no node {}", definition->file.string(), id);
    }

    void enter(const dson::Node& source, DzNode& made)
    {
        nodes.emplace(source.id, &made);
        nodes.emplace(source.name, &made);
        for (const dson::Formula& formula : source.formulas)
            formulas.push_back({&formula, definition});
    }

    void makeNodes()
    {
        const dson::Node& top = definitionOf(nodeId);
        root = MakeNode(top);
        root->setAssetUri(DzUri(ToQ(dson::MakeUri(uriPath, top.id))));
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
            if (!skin || geometry.id == skin->geometry)
                return &geometry;
        return nullptr;
    }

    const dson::SkinDefinition* skinOf() const
    {
        for (const dson::SkinDefinition& skin : definition->skins)
            if (skin.node == nodeId || definition->skins.size() == 1)
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
        auto selectionMap = std::make_unique<DzSelectionMap>();
        for (const dson::JointBinding& joint : skin.binding.joints) {
            auto* const bone = qobject_cast<DzBone*>(node(joint.node));
            if (!bone)
                continue;
            SkinAccess::bind(*binding, *bone, joint.vertices, joint.weights);
            selectionMap->addPair(bone->getName(), bone->getName());
        }
        root->setSelectionMap(selectionMap.release());
        root->getObject()->addModifier(binding.release());
    }

    void checkSkin(const dson::SkinBinding& skin, std::size_t vertexCount) const
    {
        if (skin.vertexCount != 0 && skin.vertexCount != vertexCount)
            throw geometry::FormatError("{}: the skin is for {} vertices but the mesh has {}",
                                        definition->file.string(), skin.vertexCount, vertexCount);
        for (const dson::JointBinding& joint : skin.joints)
            for (const std::uint32_t vertex : joint.vertices)
                if (vertex >= vertexCount)
                    throw geometry::FormatError("{}: joint {} binds vertex {} but the mesh has {}",
                                                definition->file.string(), joint.node, vertex, vertexCount);
    }

    bool isOurs(const dson::Modifier& modifier, const dson::Document& file) const
    {
        const dson::Uri parent = dson::ParseUri(modifier.parent);
        if (!parent.path.empty())
            return FoldCase(parent.path) == FoldCase(uriPath) &&
                   (parent.id == geometryName || nodes.count(parent.id) > 0);
        if (&file == definition.get())
            return parent.id == geometryName || nodes.count(parent.id) > 0;
        return modifier.morph && modifier.morph->vertexCount == baseVertexCount();
    }

    int baseVertexCount() const
    {
        const DzObject* const object = root->getObject();
        const auto* const shape = object ? qobject_cast<DzFacetShape*>(object->getCurrentShape()) : nullptr;
        return shape && shape->getFacetMesh() ? shape->getFacetMesh()->getNumVertices() : 0;
    }

    void add(const dson::Modifier& modifier, const std::shared_ptr<const dson::Document>& file,
             const std::string& filePath)
    {
        if (modifier.name.empty() || dials.count(modifier.name) || !isOurs(modifier, *file))
            return;
        if (modifier.channel.type == "alias")
            addAlias(modifier);
        else if (modifier.morph && root->getObject())
            addMorph(modifier, *file, filePath);
        else
            addControl(modifier);
        if (dials.count(modifier.name))
            for (const dson::Formula& formula : modifier.formulas)
                formulas.push_back({&formula, file});
    }

    void enterDial(const dson::Modifier& modifier, DzNumericProperty& property)
    {
        dials.emplace(modifier.name, &property);
        dials.emplace(modifier.id, &property);
    }

    void addMorph(const dson::Modifier& modifier, const dson::Document& file, const std::string& filePath)
    {
        const int baseCount = baseVertexCount();
        const bool isChecked = modifier.morph->vertexCount > 0;
        if (isChecked && modifier.morph->vertexCount != baseCount) {
            forOtherMeshes.push_back(file.file.string());
            return;
        }
        const DzUri uri(ToQ(dson::MakeUri(filePath, modifier.id)));
        auto* const deltas = new DzMorphDeltas;
        deltas->setTargetVertexCount(baseCount);
        deltas->setUri(uri);
        DeltasAccess::setLoader(*deltas, [path = file.file, id = modifier.id, baseCount] {
            return WithinMesh(dson::ReadDeltas(path, id), baseCount, path.string());
        });
        auto morph = std::make_unique<DzMorph>(deltas);
        morph->setName(ToQ(modifier.name));
        morph->setAssetUri(uri);
        if (!modifier.presentationType.empty()) {
            auto* const presentation = new DzPresentation;
            presentation->setType(ToQ(modifier.presentationType));
            morph->setPresentation(presentation);
        }
        DzFloatProperty& dial = *morph->getValueControl();
        root->getObject()->addModifier(morph.release());
        ApplyDial(dial, modifier);
        enterDial(modifier, dial);
    }

    void addControl(const dson::Modifier& modifier)
    {
        const dson::Uri parent = dson::ParseUri(modifier.parent);
        DzNode* const owner = node(parent.id);
        addToNode(owner ? *owner : *root, modifier);
    }

    void addToNode(DzNode& owner, const dson::Modifier& modifier)
    {
        std::unique_ptr<DzNumericProperty> property = MakeProperty(modifier.name, modifier.channel);
        if (!property || owner.findProperty(property->getName()))
            return;
        DzNumericProperty& dial = *property;
        owner.addProperty(property.release());
        ApplyDial(dial, modifier);
        enterDial(modifier, dial);
    }

    void addAlias(const dson::Modifier& modifier)
    {
        DzNode* const owner = node(dson::ParseUri(modifier.parent).id);
        DzNode& element = owner ? *owner : *root;
        const QString name = ToQ(modifier.name);
        if (element.findProperty(name))
            return;
        auto* const property = new DzFloatProperty(name, true, true, 0.0f);
        property->setLabel(ToQ(modifier.channel.label));
        element.addProperty(property);
        property->setPath(ToQ(modifier.group));
        aliases.push_back({property, modifier.channel.targetChannel});
    }

    /// The dial or node channel that a URI names within this figure.
    DzNumericProperty* resolve(const std::string& text) const
    {
        const dson::Uri uri = dson::ParseUri(text);
        if (uri.property.compare(0, 5, "value") == 0) {
            const auto found = dials.find(uri.id);
            return found == dials.end() ? nullptr : found->second;
        }
        const DzNode* target = node(uri.id);
        if (!target)
            target = node(uri.node);
        return target ? FindNodeChannel(*target, uri.property) : nullptr;
    }
};

FigureAssembly::FigureAssembly(std::shared_ptr<const dson::Document> definition, std::string uriPath,
                               const std::string& nodeId)
    : _impl(std::make_unique<Impl>())
{
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
    // A figure within a scene file has no folder of its own.
    if (_impl->uriPath.empty())
        return;
    const std::string folder = _impl->uriPath.substr(0, _impl->uriPath.rfind('/') + 1) + "Morphs";
    std::vector<std::filesystem::path> duplicates;
    const std::vector<std::filesystem::path> files = library.paths().filesBelow(folder, ".dsf", &duplicates);
    if (!duplicates.empty())
        LogWarning(
            ToQ(fmt::format("{} morph files of {} are in more than one content library; the first is used",
                            duplicates.size(), _impl->uriPath)));
    for (const auto& document : library.readAll(files))
        if (document)
            addModifiers(document, library.paths().relativePath(document->file));
}

void FigureAssembly::addModifiers(std::shared_ptr<const dson::Document> file, const std::string& uriPath)
{
    for (const dson::Modifier& modifier : file->modifiers)
        _impl->add(modifier, file, uriPath);
}

std::set<std::string> FigureAssembly::duplicateOutputs() const
{
    std::unordered_multimap<std::size_t, const dson::Formula*> seen;
    std::set<std::string> duplicates;
    for (const Impl::PendingFormula& pending : _impl->formulas) {
        const dson::Formula& formula = *pending.formula;
        const std::size_t hash = HashOf(formula);
        const auto alike = seen.equal_range(hash);
        if (std::any_of(alike.first, alike.second,
                        [&formula](const auto& entry) { return AreEqual(*entry.second, formula); }))
            duplicates.insert(formula.output);
        else
            seen.emplace(hash, &formula);
    }
    return duplicates;
}

void FigureAssembly::connectFormulas()
{
    std::size_t missing = 0, notUnderstood = 0;
    const PropertyResolver resolve = [this](const std::string& uri) { return _impl->resolve(uri); };
    for (const Impl::PendingFormula& pending : _impl->formulas) {
        const LinkResult result = MakeLink(*pending.formula, resolve);
        missing += result == LinkResult::MissingProperty;
        notUnderstood += result == LinkResult::NotUnderstood;
    }
    for (const Impl::PendingAlias& alias : _impl->aliases)
        if (DzNumericProperty* const target = _impl->resolve(alias.target))
            alias.property->setAliasTarget(target);
    _impl->formulas.clear();
    _impl->aliases.clear();
    if (!_impl->forOtherMeshes.empty())
        LogWarning(
            ToQ(fmt::format("{}: {} morphs are for a mesh of another size and are left out, such as {}",
                            _impl->uriPath, _impl->forOtherMeshes.size(), _impl->forOtherMeshes.front())));
    _impl->forOtherMeshes.clear();
    if (missing + notUnderstood > 0)
        LogWarning(ToQ(fmt::format("{}: {} formulas name what is not installed and {} cannot be understood",
                                   _impl->uriPath, missing, notUnderstood)));
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

DzNumericProperty* FigureAssembly::findDial(const std::string& nameOrId) const
{
    const auto found = _impl->dials.find(nameOrId);
    return found == _impl->dials.end() ? nullptr : found->second;
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
