// The Transfer Utility: binding, groups and morphs from one mesh to another.
// SPDX-License-Identifier: MIT

#include "tools/transfer_utility.h"

#include "app/guard.h"
#include "app/operations.h"
#include "base/errors.h"
#include "dzcontroller.h"
#include "dzfacetmesh.h"
#include "dzfacetshape.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dzobject.h"
#include "dzpresentation.h"
#include "dzscene.h"
#include "figure/fitting.h"
#include "figure/mesh_access.h"
#include "figure/pipeline.h"
#include "geometry/misfit.h"
#include "openhost/diagnostics.h"
#include "openhost/events.h"
#include "openhost/registered_transfers.h"
#include "transfer_parts.h"

#include <QSet>

#include <memory>
#include <vector>

namespace {

int registeringNow = 0;

geometry::MatchOptions MatchingNow()
{
    geometry::MatchOptions options;
    options.registersFeatures = registeringNow > 0;
    return options;
}

bool HasMesh(const DzNode* node)
{
    return node && node->getObject() && node->getObject()->pipeline().hasMesh();
}

/// The favourite dials, of the node and of its morphs, and all that they drive, directly or through others.
QSet<const DzProperty*> FavoritesWithParts(const DzNode& node)
{
    QSet<const DzProperty*> found;
    std::vector<const DzProperty*> open;
    const DzObject& object = *node.getObject();
    for (int i = 0; i < node.getNumProperties(); ++i)
        if (node.getProperty(i)->isFavorite())
            open.push_back(node.getProperty(i));
    for (int i = 0; i < object.getNumModifiers(); ++i) {
        const auto* const morph = qobject_cast<const DzMorph*>(object.getModifier(i));
        if (morph && morph->getValueControl()->isFavorite())
            open.push_back(morph->getValueControl());
    }
    while (!open.empty()) {
        const DzProperty* const dial = open.back();
        open.pop_back();
        if (found.contains(dial))
            continue; // dials may drive each other in a circle
        found.insert(dial);
        for (DzControllerListIterator links = dial->slaveControllerListIterator(); links.hasNext();)
            if (const DzProperty* const driven = links.next()->getOwner())
                open.push_back(driven);
    }
    return found;
}

bool IsWanted(const DzMorph& morph, int type)
{
    const DzFloatProperty& dial = *morph.getValueControl();
    switch (type) {
    case DzTransferUtility::Favorites:
        return dial.isFavorite();
    case DzTransferUtility::ShapingAndPoseType: {
        const DzPresentation* const presentation = morph.getPresentation();
        return presentation && (presentation->getType() == QLatin1String("Modifier/Shape") ||
                                presentation->getType() == QLatin1String("Modifier/Pose"));
    }
    case DzTransferUtility::AllMorphs:
        return true;
    default:
        return false;
    }
}

/// Morphs in the order in which they are asked for; the source's own where there is no list.
std::vector<const DzMorph*> WantedMorphs(const DzNode& source, int type, const QStringList& names)
{
    std::vector<const DzMorph*> morphs;
    const DzObject& object = *source.getObject();
    if (type == DzTransferUtility::NameList) {
        for (const QString& name : names)
            if (const auto* const morph = qobject_cast<DzMorph*>(object.findModifier(name)))
                morphs.push_back(morph);
        return morphs;
    }
    QSet<const DzProperty*> favorites;
    if (type == DzTransferUtility::FavoritesAndSubComponets)
        favorites = FavoritesWithParts(source);
    for (int i = 0; i < object.getNumModifiers(); ++i) {
        const auto* const morph = qobject_cast<DzMorph*>(object.getModifier(i));
        if (morph && (IsWanted(*morph, type) || favorites.contains(morph->getValueControl())))
            morphs.push_back(morph);
    }
    return morphs;
}

void CopyPlace(const DzNode& from, DzNode& to)
{
    for (const char* const name : {"XTranslate", "YTranslate", "ZTranslate", "XRotate", "YRotate", "ZRotate",
                                   "Scale", "XScale", "YScale", "ZScale"}) {
        const auto* const source = qobject_cast<DzFloatProperty*>(from.findProperty(QLatin1String(name)));
        auto* const copy = qobject_cast<DzFloatProperty*>(to.findProperty(QLatin1String(name)));
        if (source && copy)
            copy->setValue(source->getValue());
    }
}

std::unique_ptr<DzObject> CopyObject(const DzNode& prop)
{
    const DzFacetMeshPtr mesh(openhost::MeshAccess::create(prop.getObject()->pipeline().base()));
    mesh->setName(prop.getName());
    mesh->enableSubDivision(true);
    auto shape = std::make_unique<DzFacetShape>();
    shape->setName(prop.getName());
    shape->setFacetMesh(mesh);
    auto object = std::make_unique<DzObject>();
    object->setName(prop.getName());
    object->addShape(shape.release());
    return object;
}

void WarnOfMisfit(const geometry::SurfaceMap& map, base::Span<const geometry::Vec3f> from,
                  base::Span<const geometry::Vec3f> to, const DzNode& source, const DzNode& target)
{
    if (geometry::IsMisfit(map.statistics()))
        openhost::Report(
            {base::Severity::Warning,
             {},
             target.getLabel().toStdString(),
             geometry::DescribeMisfit(map.statistics(), from, to, source.getLabel().toStdString())});
}

} // namespace

namespace openhost {

RegisteredTransfers::RegisteredTransfers()
{
    ++registeringNow;
}

RegisteredTransfers::~RegisteredTransfers()
{
    --registeringNow;
}

} // namespace openhost

DzTransferUtility::DzTransferUtility() = default;
DzTransferUtility::~DzTransferUtility() = default;

bool DzTransferUtility::setSource(DzNode* node)
{
    _source = HasMesh(node) ? node : nullptr;
    return _source;
}

bool DzTransferUtility::setTarget(DzNode* node)
{
    _target = HasMesh(node) ? node : nullptr;
    return _target;
}

DzNode* DzTransferUtility::getSource() const
{
    return qobject_cast<DzNode*>(_source.data());
}

DzNode* DzTransferUtility::getTarget() const
{
    return qobject_cast<DzNode*>(_target.data());
}

DzFigure* DzTransferUtility::getTargetOutputFigure() const
{
    return qobject_cast<DzFigure*>(_output.data());
}

/// The target itself if it is a figure; otherwise a figure made of it, which takes its place in the scene.
DzFigure* DzTransferUtility::figureToFill()
{
    DzNode& target = *getTarget();
    if (auto* const figure = qobject_cast<DzFigure*>(&target))
        return figure;
    const QString name = target.getName(), label = target.getLabel();
    auto figure = std::make_unique<DzFigure>();
    figure->setObject(CopyObject(target).release());
    CopyPlace(target, *figure);
    DzNode* const parent = target.getNodeParent();
    if (_removeOriginalTarget && !dzScene->removeNode(&target))
        throw base::Error(label.toStdString() + " cannot be removed from the scene");
    figure->setName(name);
    figure->setLabel(label);
    const bool isAdded =
        parent ? parent->addNodeChild(figure.get()) == DZ_NO_ERROR : dzScene->addNode(figure.get());
    if (!isAdded)
        throw base::Error(label.toStdString() + " cannot be added to the scene");
    return figure.release();
}

bool DzTransferUtility::doTransfer()
{
    DzNode* const source = getSource();
    DzNode* const target = getTarget();
    if (!source || !target || source == target ||
        !openhost::Allows(openhost::Operation::Transfer, target->getLabel()))
        return false;
    return openhost::GuardHostCall({{}, target->getLabel().toStdString()}, [&] {
        openhost::RequireInvertiblePlace(*target);
        std::vector<geometry::Vec3f> movedSource, movedTarget;
        const base::Span<const geometry::Vec3f> from = openhost::BasePositionsInWorld(*source, movedSource);
        const base::Span<const geometry::Vec3f> to = openhost::BasePositionsInWorld(*target, movedTarget);
        const geometry::SurfaceMap map = geometry::MatchSurfaces(
            {source->getObject()->pipeline().base().topology.get(), from},
            {target->getObject()->pipeline().base().topology.get(), to}, MatchingNow());
        WarnOfMisfit(map, from, to, *source, *target);
        DzFigure& figure = *figureToFill();
        _output = &figure;
        if (_transferFaceGroups || _transferRegionGroups || _transferMaterialGroups)
            openhost::TransferGroups(map, *source, figure, _transferFaceGroups || _transferRegionGroups,
                                     _transferMaterialGroups);
        if (_transferBinding)
            openhost::TransferBinding(map, *source, figure);
        if (_transferSelectionMap)
            openhost::TransferSelectionMap(*source, figure);
        if (_transferMorphs)
            for (const DzMorph* const morph :
                 WantedMorphs(*source, _transferSourceMorphs, _morphTransferList))
                openhost::TransferMorphTo(map, *morph, *source, figure, _overrideExistingMorphs);
        if (_parentToFigure)
            source->addNodeChild(&figure, true);
        auto* const skeleton = qobject_cast<DzSkeleton*>(source);
        if (_fitToFigure && skeleton && !openhost::IsBelow(*skeleton, figure))
            openhost::FitTo(figure, *skeleton);
        if (_targetReplacesSource)
            dzScene->removeNode(source);
        dzScene->selectAllNodes(false);
        dzScene->setPrimarySelection(&figure);
        emit openhost::Events().sceneEdited(openhost::SceneEdit::Transfer, &figure);
        return true;
    });
}

bool DzTransferUtility::setTransferBinding(bool value)
{
    _transferBinding = value;
    return true;
}

bool DzTransferUtility::setTransferMorphs(bool value)
{
    _transferMorphs = value;
    return true;
}

bool DzTransferUtility::setTransferSourceMorphs(int value)
{
    _transferSourceMorphs = value;
    return true;
}

bool DzTransferUtility::setMorphTransferList(const QStringList& value)
{
    _morphTransferList = value;
    return true;
}

bool DzTransferUtility::setOverrideExistingMorphs(bool value)
{
    _overrideExistingMorphs = value;
    return true;
}

bool DzTransferUtility::setTransferSelectionMap(bool value)
{
    _transferSelectionMap = value;
    return true;
}

bool DzTransferUtility::setTransferFaceGroups(bool value)
{
    _transferFaceGroups = value;
    return true;
}

bool DzTransferUtility::setTransferRegionGroups(bool value)
{
    _transferRegionGroups = value;
    return true;
}

bool DzTransferUtility::setTransferMaterialGroups(bool value)
{
    _transferMaterialGroups = value;
    return true;
}

bool DzTransferUtility::setFitToFigure(bool value)
{
    _fitToFigure = value;
    return true;
}

bool DzTransferUtility::setParentToFigure(bool value)
{
    _parentToFigure = value;
    return true;
}

bool DzTransferUtility::setTargetReplacesSource(bool value)
{
    _targetReplacesSource = value;
    return true;
}

bool DzTransferUtility::setRemoveOriginalTarget(bool value)
{
    _removeOriginalTarget = value;
    return true;
}
