// Nodes: the tree, visibility, assets.
// SPDX-License-Identifier: MIT

#include "dznode.h"

#include "app/letting_go.h"
#include "app/operations.h"
#include "dzboolproperty.h"
#include "dzobject.h"
#include "dzpresentation.h"
#include "dzscene.h"
#include "dzselectionmap.h"
#include "dzskeleton.h"
#include "node_impl.h"
#include "openhost/events.h"
#include "scene/changes_together.h"
#include "scene/node_walk.h"
#include "scene/undo_recording.h"

#include <vector>

DzNode::DzNode() : _impl(new Impl)
{
    makeProperties();
}

DzNode::~DzNode()
{
    emit aboutToDelete(this);
    if (_impl->inScene)
        openhost::RecordBeyondUndo(this, openhost::Captioned(openhost::captions::deleteAtOnce, getLabel()));
    if (_impl->inScene && dzScene)
        dzScene->leave(this);
    detachFromParent();
    deleteChildren();
    delete _impl->object;
    _impl->object = nullptr;
}

// Those below are deleted by the topmost one, for a chain may be too long for a destructor in each other.
void DzNode::deleteChildren()
{
    static std::vector<DzNode*>* due = nullptr;
    std::vector<DzNode*> own;
    const bool isTopmost = !due;
    const openhost::ChangesTogether together;
    if (isTopmost)
        due = &own;
    for (int i = _impl->children.size(); i-- > 0;) {
        _impl->children.at(i)->_impl->parent = nullptr;
        due->push_back(_impl->children.at(i));
    }
    _impl->children.clear();
    while (isTopmost && !own.empty()) {
        DzNode* const node = own.back();
        own.pop_back();
        delete node;
    }
    if (isTopmost)
        due = nullptr;
}

DzError DzNode::setLabel(const QString& label)
{
    if (openhost::IsWatched() &&
        !openhost::Allows(openhost::Operation::Rename, getLabel() + QLatin1String(" -> ") + label))
        return DZ_OPERATION_FAILED_ERROR;
    const QString before = getLabel();
    const DzError error = DzElement::setLabel(label);
    rootChanged();
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
    openhost::RecordBeyondUndo(this, openhost::Captioned(openhost::captions::replaceShape, getLabel()));
    DzObject* const old = _impl->object;
    _impl->object = object;
    if (object)
        object->setNode(this);
    propertyPathChanged();
    emit objectChanged(this, old, object);
    if (old)
        old->setNode(nullptr);
    openhost::LetGoOf(old);
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
    openhost::WalkBelow(*this, [&](DzNode& node) {
        list.append(&node);
        return recurse ? openhost::Walk::On : openhost::Walk::Around;
    });
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
    return openhost::WalkBelow(node, [&](const DzNode& child) {
        return matches(child) ? openhost::Walk::Stop : recurse ? openhost::Walk::On : openhost::Walk::Around;
    });
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
    Impl::recordMove(*child);
    child->detachFromParent();
    child->rootChanged();
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
    Impl::recordMove(*child);
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
    rootChanged();
    parent->announceHierarchyChange();
}

namespace {

unsigned g_hierarchyReading = 1;

} // namespace

void openhost::NoteHierarchyRead()
{
    ++g_hierarchyReading;
}

// Who has not read the hierarchy since it was told of a change, nor has anybody above it, knows: a long chain
// is not walked at each of its changes.
void DzNode::announceHierarchyChange()
{
    for (DzNode* node = this; node && node->_impl->told != g_hierarchyReading; node = node->_impl->parent) {
        node->_impl->told = g_hierarchyReading;
        node->hierarchyChanged();
    }
}

DzSkeleton* DzNode::uninformedSkeleton()
{
    for (DzNode* node = this; node && node->_impl->toldOfBone != g_hierarchyReading;
         node = node->_impl->parent) {
        node->_impl->toldOfBone = g_hierarchyReading;
        if (auto* const skeleton = qobject_cast<DzSkeleton*>(node))
            return skeleton;
    }
    return nullptr;
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
    const bool wasVisible = isVisible();
    _impl->visible->setBoolValue(onOff);
    _impl->visibleInSimulation->setBoolValue(onOff);
    if (wasVisible != isVisible() && openhost::IsRecording(this))
        openhost::Record(std::make_unique<openhost::Naming>(
            openhost::ChangeRank::Look,
            openhost::Captioned(onOff ? openhost::captions::show : openhost::captions::hide, getLabel())));
}

bool DzNode::isVisible() const
{
    return _impl->visible->getBoolValue();
}

// What the scene knows of its roots may hold no longer.
void DzNode::rootChanged()
{
    if (_impl->inScene && !_impl->parent && dzScene)
        dzScene->rootsChanged();
}

void DzNode::renamed(const QString& oldName)
{
    openhost::RecordValue(
        this, *this, oldName, [](DzNode& node, QString& other) { openhost::SwapName(node, other); },
        openhost::ChangeRank::Look, openhost::captions::rename);
    rootChanged();
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
