// Nodes: the tree, visibility, assets.
// SPDX-License-Identifier: MIT

#include "dznode.h"

#include "app/operations.h"
#include "dzboolproperty.h"
#include "dzobject.h"
#include "dzpresentation.h"
#include "dzscene.h"
#include "dzselectionmap.h"
#include "dzskeleton.h"
#include "node_impl.h"
#include "openhost/events.h"

DzNode::DzNode() : _impl(new Impl)
{
    makeProperties();
}

DzNode::~DzNode()
{
    emit aboutToDelete(this);
    if (_impl->inScene && dzScene)
        dzScene->leave(this);
    detachFromParent();
    for (DzNode* child : QList<DzNode*>(_impl->children)) {
        child->_impl->parent = nullptr;
        delete child;
    }
    _impl->children.clear();
    delete _impl->object;
    _impl->object = nullptr;
}

DzError DzNode::setLabel(const QString& label)
{
    if (openhost::IsWatched() &&
        !openhost::Allows(openhost::Operation::Rename, getLabel() + QLatin1String(" -> ") + label))
        return DZ_OPERATION_FAILED_ERROR;
    const QString before = getLabel();
    const DzError error = DzElement::setLabel(label);
    if (getLabel() != before)
        emit openhost::Events().sceneEdited(openhost::SceneEdit::Label, this);
    return error;
}

DzObject* DzNode::getObject() const
{
    return _impl->object;
}

void DzNode::setObject(DzObject* object)
{
    if (object == _impl->object)
        return;
    DzObject* const old = _impl->object;
    _impl->object = object;
    if (object)
        object->setNode(this);
    propertyPathChanged();
    emit objectChanged(this, old, object);
    delete old;
}

DzSkeleton* DzNode::getSkeleton() const
{
    for (const DzNode* node = this; node; node = node->_impl->parent) {
        if (auto* const skeleton = qobject_cast<DzSkeleton*>(const_cast<DzNode*>(node)))
            return skeleton;
    }
    return nullptr;
}

DzNode* DzNode::getNodeParent() const
{
    return _impl->parent;
}
int DzNode::getNumNodeChildren() const
{
    return _impl->children.size();
}

DzNode* DzNode::getNodeChild(int index) const
{
    return index >= 0 && index < _impl->children.size() ? _impl->children.at(index) : nullptr;
}

QObjectList DzNode::getNodeChildren(bool recurse) const
{
    QObjectList list;
    for (DzNode* child : std::as_const(_impl->children)) {
        list.append(child);
        if (recurse)
            list += child->getNodeChildren(true);
    }
    return list;
}

DzNodeListIterator DzNode::nodeChildrenIterator() const
{
    return DzNodeListIterator(_impl->children);
}

namespace {

template <class Predicate>
DzNode* FindChild(const DzNode& node, bool recurse, const Predicate& matches)
{
    for (int i = 0; i < node.getNumNodeChildren(); ++i) {
        DzNode* const child = node.getNodeChild(i);
        if (matches(*child))
            return child;
        if (DzNode* const below = recurse ? FindChild(*child, true, matches) : nullptr)
            return below;
    }
    return nullptr;
}

} // namespace

DzNode* DzNode::findNodeChild(const QString& name, bool recurse) const
{
    return FindChild(*this, recurse, [&](const DzNode& child) { return child.getName() == name; });
}

DzNode* DzNode::findNodeChildByLabel(const QString& label, bool recurse) const
{
    return FindChild(*this, recurse, [&](const DzNode& child) { return child.getLabel() == label; });
}

DzError DzNode::addNodeChild(DzNode* child, bool inPlace)
{
    if (!child)
        return DZ_NULL_POINTER_ERROR;
    // What holds nothing is above nothing: building a long chain from its top does not walk it each time.
    const bool mayBeAbove = child == this || !child->_impl->children.isEmpty();
    for (const DzNode* node = this; mayBeAbove && node; node = node->_impl->parent) {
        if (node == child)
            return DZ_CYCLIC_REFERENCE_ERROR;
    }
    if (child->_impl->parent == this)
        return DZ_NO_ERROR;
    const DzVec3 position = inPlace ? child->getWSPos() : DzVec3();
    const DzQuat rotation = inPlace ? child->getWSRot() : DzQuat();
    child->detachFromParent();
    child->_impl->parent = this;
    _impl->children.append(child);
    child->invalidateTransform();
    if (inPlace)
        child->placeAt(position, rotation);
    if (_impl->inScene && !child->_impl->inScene && dzScene)
        dzScene->enter(child);
    announceHierarchyChange();
    emit childAdded(child);
    return DZ_NO_ERROR;
}

DzError DzNode::removeNodeChild(DzNode* child, bool inPlace)
{
    if (!child || child->_impl->parent != this)
        return DZ_NOT_FOUND_ERROR;
    const DzVec3 position = child->getWSPos();
    const DzQuat rotation = child->getWSRot();
    child->detachFromParent();
    child->invalidateTransform();
    if (inPlace)
        child->placeAt(position, rotation);
    emit childRemoved(child);
    return DZ_NO_ERROR;
}

void DzNode::detachFromParent()
{
    DzNode* const parent = _impl->parent;
    if (!parent)
        return;
    parent->_impl->children.removeOne(this);
    _impl->parent = nullptr;
    parent->announceHierarchyChange();
}

void DzNode::announceHierarchyChange()
{
    for (DzNode* node = this; node; node = node->_impl->parent)
        node->hierarchyChanged();
}

bool DzNode::isRootNode() const
{
    return !_impl->parent;
}
bool DzNode::isSelected() const
{
    return _impl->selected;
}
bool DzNode::isInScene() const
{
    return _impl->inScene;
}

void DzNode::select(bool onOff)
{
    if (_impl->inScene && dzScene)
        dzScene->setSelected(this, onOff);
}

void DzNode::setVisible(bool onOff)
{
    if (openhost::IsWatched() &&
        !openhost::Allows(openhost::Operation::Show, getLabel() + QLatin1String(onOff ? "=true" : "=false")))
        return;
    _impl->visible->setBoolValue(onOff);
    _impl->visibleInSimulation->setBoolValue(onOff);
}

bool DzNode::isVisible() const
{
    return _impl->visible->getBoolValue();
}

void DzNode::renamed(const QString&)
{
    announceHierarchyChange();
}

void DzNode::appendTreeMembers(QList<const DzElement*>* members) const
{
    if (_impl->object) {
        members->append(_impl->object);
        _impl->object->appendTreeMembers(members);
    }
}

void DzNode::hierarchyChanged() {}

void DzNode::leftScene()
{
    if (_impl->object)
        _impl->object->nodeLeftScene();
}

DzBox3 DzNode::getWSBoundingBox() const
{
    return _impl->object ? _impl->object->getBoundingBox() : DzBox3();
}

DzBox3 DzNode::getLocalBoundingBox() const
{
    DzBox3 box = getWSBoundingBox();
    box.translate(-getWSPos());
    return box;
}

void DzNode::update(bool isRender)
{
    if (_impl->object)
        _impl->object->forceCacheUpdate(this, isRender);
}

void DzNode::finalize(bool isRender, bool)
{
    update(isRender);
}

// Boxes are made from the evaluated mesh when asked for, so there is nothing kept to give up.
void DzNode::invalidateBoundingBoxes(bool) {}

DzUri DzNode::getAssetUri() const
{
    return _impl->assetUri;
}
void DzNode::setAssetUri(const DzUri& uri)
{
    _impl->assetUri = uri;
}
QString DzNode::getAssetId() const
{
    return _impl->assetUri.getId();
}
DzAssetFileInfo DzNode::getAssetFileInfo() const
{
    return DzAssetFileInfo(_impl->assetUri);
}

bool DzNode::modifyAsset()
{
    _impl->assetModified = true;
    return true;
}

bool DzNode::isAssetModified() const
{
    return _impl->assetModified;
}
DzPresentation* DzNode::getPresentation() const
{
    return _impl->presentation.get();
}
void DzNode::setPresentation(DzPresentation* presentation)
{
    _impl->presentation.reset(presentation);
}
DzSelectionMap* DzNode::getSelectionMap() const
{
    return _impl->selectionMap.get();
}
void DzNode::setSelectionMap(DzSelectionMap* map)
{
    _impl->selectionMap.reset(map);
}
