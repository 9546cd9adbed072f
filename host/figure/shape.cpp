// Shapes and figures.
// SPDX-License-Identifier: MIT

#include "dzfacetshape.h"
#include "dzshape.h"

#include "dzenumproperty.h"
#include "dzfacetmesh.h"
#include "dzfigure.h"
#include "dznode.h"
#include "dzobject.h"
#include "dzskinbinding.h"
#include "figure/pipeline.h"

#include <QPointer>

DzShape::DzShape() : _object(nullptr) {}
DzShape::~DzShape() = default;

DzGeometry* DzShape::getGeometry() const
{
    return nullptr;
}
DzGeometry* DzShape::getAssemblyGeometry() const
{
    return getGeometry();
}
DzNode* DzShape::getNode() const
{
    return _object ? _object->getNode() : nullptr;
}
DzElement* DzShape::getElementParent() const
{
    return _object;
}

struct DzFacetShape::Impl {
    DzFacetMeshPtr mesh;
    bool isSubdivided = false;
    // Each is null once it was removed, as scripts may do.
    QPointer<DzEnumProperty> resolution;
    QPointer<DzIntProperty> viewLevel;
    QPointer<DzIntProperty> renderLevel;
};

namespace {

constexpr int largestLevel = 5;

DzIntProperty* AddLevel(DzElement& shape, const QString& name, const QString& label, int level)
{
    auto* const property = new DzIntProperty(name, false, false, level);
    property->setLabel(label);
    property->setMinMax(0, largestLevel);
    property->setIsClamped(true);
    property->setPath(QStringLiteral("/General/Mesh Resolution"));
    shape.addProperty(property);
    return property;
}

} // namespace

DzFacetShape::DzFacetShape() : _impl(new Impl) {}
DzFacetShape::~DzFacetShape()
{
    // The element takes them down, when it is no shape any more that could listen.
    for (const DzProperty* const property : QList<DzProperty*>{_impl->resolution, _impl->viewLevel})
        if (property)
            property->disconnect(this);
}

DzGeometry* DzFacetShape::getGeometry() const
{
    return _impl->mesh;
}
DzFacetMesh* DzFacetShape::getFacetMesh() const
{
    return _impl->mesh;
}

void DzFacetShape::setFacetMesh(DzFacetMesh* mesh)
{
    if (mesh == _impl->mesh)
        return;
    if (_impl->mesh)
        _impl->mesh->disconnect(this);
    _impl->mesh = mesh;
    if (mesh) {
        connect(mesh, SIGNAL(verticesChanged()), SLOT(handleMeshChanged()));
        connect(mesh, SIGNAL(topologyChanged()), SLOT(handleMeshChanged()));
        if (mesh->isSubDivisionEnabled())
            enableSubDivision(true);
    }
    handleMeshChanged();
}

void DzFacetShape::handleMeshChanged()
{
    if (getObject())
        getObject()->pipeline().baseChanged();
}

void DzFacetShape::enableSubDivision(bool onOff)
{
    if (onOff == _impl->isSubdivided)
        return;
    _impl->isSubdivided = onOff;
    if (onOff) {
        auto* const resolution = new DzEnumProperty(QStringLiteral("lodlevel"), false, false, 1);
        resolution->setLabel(QStringLiteral("Resolution Level"));
        resolution->addItem(QStringLiteral("Base"));
        resolution->addItem(QStringLiteral("High Resolution"));
        resolution->setPath(QStringLiteral("/General/Mesh Resolution"));
        addProperty(resolution);
        _impl->resolution = resolution;
        _impl->viewLevel =
            AddLevel(*this, QStringLiteral("SubDIALevel"), QStringLiteral("View SubD Level"), 1);
        _impl->renderLevel = AddLevel(*this, QStringLiteral("SubDRenderLevel"),
                                      QStringLiteral("Render SubD Level (Minimum)"), 2);
        for (const DzProperty* const property : QList<DzProperty*>{_impl->resolution, _impl->viewLevel})
            connect(property, &DzProperty::removed, this, [this] {
                if (getObject())
                    getObject()->pipeline().resolutionChanged();
            });
    } else {
        const QList<DzProperty*> properties{_impl->resolution, _impl->viewLevel, _impl->renderLevel};
        _impl->resolution = nullptr;
        _impl->viewLevel = _impl->renderLevel = nullptr;
        for (DzProperty* property : properties)
            if (property)
                removeProperty(property);
    }
    if (getObject())
        getObject()->pipeline().resolutionChanged();
}

DzEnumProperty* DzFacetShape::getLODControl() const
{
    return _impl->resolution;
}
DzIntProperty* DzFacetShape::getSubDLevelControl() const
{
    return _impl->viewLevel;
}
DzIntProperty* DzFacetShape::getSubDRenderLevelControl() const
{
    return _impl->renderLevel;
}
bool DzFacetShape::isSubDivisionActive() const
{
    return getSubDDrawLevel() > 0;
}

int DzFacetShape::getSubDDrawLevel() const
{
    const bool isFine = _impl->resolution && _impl->viewLevel && _impl->resolution->getValue() == 1;
    return isFine ? _impl->viewLevel->getValue() : 0;
}

void DzFacetShape::propertyValueChanged(DzProperty* property)
{
    const bool resolves = property == _impl->resolution || property == _impl->viewLevel;
    if (!resolves || !getObject())
        return;
    getObject()->pipeline().resolutionChanged();
    if (getNode())
        emit getNode()->topologyChanged();
}

DzFigure::DzFigure() = default;
DzFigure::~DzFigure() = default;

DzSkinBinding* DzFigure::getSkinBinding() const
{
    const DzObject* const object = getObject();
    for (int i = object ? object->getNumModifiers() - 1 : -1; i >= 0; --i) {
        if (auto* const binding = qobject_cast<DzSkinBinding*>(object->getModifier(i)))
            return binding;
    }
    return nullptr;
}

namespace {

QList<DzFigure*> GraftsOn(const DzFigure& figure)
{
    QList<DzFigure*> grafts;
    for (int i = 0; i < figure.getNumFollowSkeletons(); ++i) {
        auto* const follower = qobject_cast<DzFigure*>(figure.getFollowSkeleton(i));
        if (follower && follower->isGraftFollowing())
            grafts.append(follower);
    }
    return grafts;
}

} // namespace

int DzFigure::getNumGraftFigures() const
{
    return GraftsOn(*this).size();
}
DzFigure* DzFigure::getGraftFigure(int index) const
{
    return GraftsOn(*this).value(index);
}
bool DzFigure::isGraftFollowing() const
{
    return getObject() && getObject()->pipeline().graft();
}

void DzFigure::hierarchyChanged()
{
    DzSkeleton::hierarchyChanged();
    boneChanged();
}

void DzFigure::boneChanged()
{
    if (getObject())
        getObject()->pipeline().jointsChanged();
}

void DzFigure::followTargetChanged()
{
    DzSkeleton::followTargetChanged();
    if (getObject())
        getObject()->pipeline().followedChanged();
}
