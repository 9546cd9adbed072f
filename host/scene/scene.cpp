// The scene: nodes and their selection.
// SPDX-License-Identifier: MIT

#include "dzscene.h"

#include "app/letting_go.h"
#include "app/operations.h"
#include "dzskeleton.h"
#include "dzundostack.h"
#include "node_impl.h"
#include "scene/changes_together.h"
#include "scene/undo_recording.h"
#include "scene_impl.h"

#include <QRegularExpression>

#include <algorithm>
#include <vector>

DzScene* dzScene = nullptr;

namespace {

constexpr DzTime ticksPerFrame = 160; // 4800 ticks a second at 30 frames

DzNode* At(const QList<DzNode*>& list, int index)
{
    return index >= 0 && index < list.size() ? list.at(index) : nullptr;
}

QObjectList ToObjects(const QList<DzNode*>& nodes)
{
    QObjectList list;
    for (DzNode* node : nodes)
        list.append(node);
    return list;
}

} // namespace

DzScene::DzScene() : _impl(new Impl)
{
    dzScene = this;
}

DzScene::~DzScene()
{
    selectAllNodes(false);
    for (DzNode* const root : rootNodes())
        expel(root); // unasked: nobody may keep a node alive now
    purgeRemoved();
    dzScene = nullptr;
}

DzNodeListIterator DzScene::nodeListIterator() const
{
    return DzNodeListIterator(_impl->nodes);
}
DzNodeListIterator DzScene::selectedNodeListIterator() const
{
    return DzNodeListIterator(_impl->selection);
}
QObjectList DzScene::getNodeList() const
{
    return ToObjects(_impl->nodes);
}
QObjectList DzScene::getSelectedNodeList() const
{
    return ToObjects(_impl->selection);
}
int DzScene::getNumNodes() const
{
    return _impl->nodes.size();
}
DzNode* DzScene::getNode(int index) const
{
    return At(_impl->nodes, index);
}
int DzScene::getNumSelectedNodes() const
{
    return _impl->selection.size();
}
DzNode* DzScene::getSelectedNode(int index) const
{
    return At(_impl->selection, index);
}
DzNode* DzScene::getPrimarySelection() const
{
    return _impl->primary;
}

bool DzScene::setPrimarySelection(DzNode* node)
{
    if (!node) {
        selectAllNodes(false);
        return true;
    }
    if (findNodeIndex(node) < 0 || node == _impl->primary)
        return false;
    if (node->isSelected()) {
        makePrimary(node);
        return true;
    }
    setSelected(node, true);
    return node->isSelected();
}

void DzScene::makePrimary(DzNode* node)
{
    if (node == _impl->primary)
        return;
    _impl->primary = node;
    emit primarySelectionChanged(node);
}

void DzScene::setSelected(DzNode* node, bool onOff)
{
    if (node->_impl->selected == onOff)
        return;
    if (onOff && openhost::IsWatched() && !openhost::Allows(openhost::Operation::Select, node->getLabel()))
        return;
    node->_impl->selected = onOff;
    if (onOff)
        _impl->selection.append(node);
    else
        _impl->selection.removeOne(node);
    if (onOff)
        makePrimary(node);
    else if (node == _impl->primary)
        makePrimary(_impl->selection.isEmpty() ? nullptr : _impl->selection.last());
    emit nodeSelectionListChanged();
}

void DzScene::selectAllNodes(bool onOff)
{
    const QList<DzNode*> selection = onOff ? _impl->nodes : QList<DzNode*>();
    if (selection != _impl->selection)
        setSelection(selection);
}

void DzScene::setSelection(const QList<DzNode*>& nodes, DzNode* primary)
{
    const bool isOther = nodes != _impl->selection;
    for (DzNode* node : std::as_const(_impl->selection))
        node->_impl->selected = false;
    for (DzNode* node : nodes)
        node->_impl->selected = true;
    _impl->selection = nodes;
    makePrimary(primary || nodes.isEmpty() ? primary : nodes.last());
    if (isOther)
        emit nodeSelectionListChanged();
}

DzNode* DzScene::findNode(const QString& name) const
{
    for (DzNode* node : std::as_const(_impl->nodes)) {
        if (node->getName() == name)
            return node;
    }
    return nullptr;
}

DzNode* DzScene::findNodeByLabel(const QString& label) const
{
    for (DzNode* node : std::as_const(_impl->nodes)) {
        if (node->getLabel() == label)
            return node;
    }
    return nullptr;
}

DzSkeleton* DzScene::findSkeleton(const QString& name) const
{
    for (int i = 0; i < getNumSkeletons(); ++i) {
        if (getSkeleton(i)->getName() == name)
            return getSkeleton(i);
    }
    return nullptr;
}

DzSkeleton* DzScene::findSkeletonByLabel(const QString& label) const
{
    for (int i = 0; i < getNumSkeletons(); ++i) {
        if (getSkeleton(i)->getLabel() == label)
            return getSkeleton(i);
    }
    return nullptr;
}

int DzScene::getNumSkeletons() const
{
    int count = 0;
    for (DzNode* node : std::as_const(_impl->nodes))
        count += qobject_cast<DzSkeleton*>(node) ? 1 : 0;
    return count;
}

DzSkeleton* DzScene::getSkeleton(int index) const
{
    for (DzNode* node : std::as_const(_impl->nodes)) {
        auto* const skeleton = qobject_cast<DzSkeleton*>(node);
        if (skeleton && index-- == 0)
            return skeleton;
    }
    return nullptr;
}

int DzScene::findNodeIndex(const DzNode* node) const
{
    return _impl->nodes.indexOf(const_cast<DzNode*>(node));
}

bool DzScene::addNode(DzNode* node)
{
    if (!node || node->isInScene() || node->getNodeParent())
        return false;
    if (openhost::IsWatched() && !openhost::Allows(openhost::Operation::Add, node->getLabel()))
        return false;
    const QString label = getUniqueTopLevelLabel(node->getLabel());
    if (label != node->getLabel())
        node->DzElement::setLabel(label);
    if (!node->getName().isEmpty())
        node->setName(getUniqueTopLevelName(node->getName()));
    _impl->labels.taken.insert(node->getLabel());
    _impl->names.taken.insert(node->getName());
    enter(node);
    return true;
}

void DzScene::enter(DzNode* node)
{
    QList<DzNode*> entering{node};
    for (QObject* below : node->getNodeChildren(true))
        entering.append(static_cast<DzNode*>(below));
    for (DzNode* one : std::as_const(entering)) {
        one->_impl->inScene = true;
        _impl->nodes.append(one);
    }
    if (openhost::IsRecording()) {
        // What comes into a figure that came with this step goes with it.
        const DzNode* const parent = node->getNodeParent();
        openhost::NoteEntered(
            entering, !parent || openhost::IsRecording(parent) ? DzNode::Impl::entryOf(*node) : nullptr);
    }
    // Whoever hears of one may take others away again.
    for (DzNode* one : std::as_const(entering))
        if (one->isInScene())
            emit nodeAdded(one);
    emit nodeListChanged();
}

// Leaves without being deleted here: the node's own destructor calls this as well.
void DzScene::leave(DzNode* node)
{
    setSelected(node, false);
    if (!_impl->nodes.removeOne(node))
        return;
    node->_impl->inScene = false;
    setSelected(node, false);
    rootsChanged();
}

void DzScene::leave(const QList<DzNode*>& nodes)
{
    if (nodes.size() == 1)
        return leave(nodes.first());
    // In one go, since each of many would be looked for among all.
    for (DzNode* node : nodes) {
        setSelected(node, false);
        node->_impl->inScene = false;
    }
    QList<DzNode*>& all = _impl->nodes;
    all.erase(std::remove_if(all.begin(), all.end(), [](const DzNode* node) { return !node->isInScene(); }),
              all.end());
    // Whoever heard that one is no longer selected may have selected it or another again.
    for (DzNode* node : nodes)
        setSelected(node, false);
    rootsChanged();
}

bool DzScene::removeNode(DzNode* node)
{
    if (findNodeIndex(node) < 0)
        return false;
    if (openhost::IsWatched() && !openhost::Allows(openhost::Operation::Remove, node->getLabel()))
        return false;
    expel(node);
    return true;
}

void DzScene::expel(DzNode* node)
{
    QList<DzNode*> leaving{node};
    for (QObject* below : node->getNodeChildren(true))
        leaving.append(static_cast<DzNode*>(below));
    // Whoever hears of it may want to remove the node, too.
    if (std::find(_impl->leaving.begin(), _impl->leaving.end(), node) != _impl->leaving.end())
        return;
    _impl->leaving.push_back(node);
    emit node->aboutToBeRemoved();
    for (DzNode* one : std::as_const(leaving))
        emit aboutToRemoveNode(one);
    _impl->leaving.erase(std::find(_impl->leaving.begin(), _impl->leaving.end(), node));
    const bool isRecording = openhost::IsRecording();
    const bool isHeld = isRecording && openhost::IsToBeHeld(leaving);
    if (isHeld)
        openhost::Record(DzNode::Impl::departureOf(*node));
    if (isRecording)
        openhost::NoteLeft(*node);
    node->detachFromParent();
    leave(leaving);
    for (DzNode* one : std::as_const(leaving)) {
        one->leftScene();
        emit nodeRemoved(one);
        emit one->removed();
    }
    emit nodeListChanged();
    if (!isHeld)
        discard(node);
}

void DzScene::discard(DzNode* node)
{
    if (openhost::Keeper* const keeper = openhost::CurrentKeeper())
        return keeper->keep(*node);
    std::vector<QPointer<DzNode>>& removed = _impl->removed;
    // Those that are gone by now make room before it would grow, and not each time.
    if (removed.size() == removed.capacity())
        removed.erase(std::remove(removed.begin(), removed.end(), nullptr), removed.end());
    removed.push_back(node);
    node->deleteLater();
}

void DzScene::removeSelected()
{
    for (DzNode* node : QList<DzNode*>(_impl->selection)) {
        if (node && findNodeIndex(node) >= 0)
            removeNode(node);
    }
}

void DzScene::purgeRemoved()
{
    std::vector<QPointer<DzNode>> due;
    due.swap(_impl->removed);
    const openhost::ChangesTogether together;
    for (const QPointer<DzNode>& node : due)
        delete node.data();
}

void DzScene::clear()
{
    const openhost::UndoPause nothingIsTakenBack;
    selectAllNodes(false);
    for (DzNode* const root : rootNodes())
        removeNode(root);
    emit sceneCleared();
}

QList<DzNode*> DzScene::rootNodes() const
{
    QList<DzNode*> roots;
    for (DzNode* node : std::as_const(_impl->nodes)) {
        if (node->isRootNode())
            roots.append(node);
    }
    return roots;
}

QString DzScene::getUniqueTopLevelLabel(const QString& label) const
{
    const openhost::RootTexts& texts =
        _impl->textsOfRoots(_impl->labels, [](const DzNode& node) { return node.getLabel(); });
    return texts.taken.contains(label) ? texts.freeText(stripLabelNumber(label), QStringLiteral("%1 (%2)"))
                                       : label;
}

QString DzScene::getUniqueTopLevelName(const QString& name) const
{
    const openhost::RootTexts& texts =
        _impl->textsOfRoots(_impl->names, [](const DzNode& node) { return node.getName(); });
    return texts.taken.contains(name) ? texts.freeText(name, QStringLiteral("%1 %2")) : name;
}

void DzScene::rootsChanged()
{
    _impl->labels.isGathered = _impl->names.isGathered = false;
}

QString DzScene::stripLabelNumber(const QString& label)
{
    static const QRegularExpression number(QStringLiteral(" \\(\\d+\\)$"));
    QString text = label;
    return text.remove(number);
}

DzBox3 DzScene::getBoundingBox() const
{
    DzBox3 box;
    for (DzNode* node : std::as_const(_impl->nodes)) {
        if (node->isVisible())
            box.include(node->getWSBoundingBox());
    }
    return box;
}

void DzScene::update()
{
    for (DzNode* node : QList<DzNode*>(_impl->nodes))
        node->update();
    emit drawnDataChanged();
}

bool DzScene::isLoading() const
{
    return _impl->loading > 0;
}

void DzScene::beginLoad()
{
    if (dzUndoStack && dzUndoStack->isRecording()) {
        dzUndoStack->beginHold();
        ++_impl->heldLoads;
    }
    if (_impl->loading++ == 0)
        emit sceneLoadStarting();
}

void DzScene::endLoad()
{
    Q_ASSERT(_impl->loading > 0);
    if (--_impl->loading == 0)
        emit sceneLoaded();
    // Also what listeners do with what came is part of the step.
    if (_impl->heldLoads > 0) {
        --_impl->heldLoads;
        dzUndoStack->accept();
    }
}

DzTime DzScene::getTime() const
{
    return _impl->time;
}
DzTime DzScene::getTimeStep() const
{
    return ticksPerFrame;
}
void DzScene::setFrame(int frame)
{
    _impl->time = frame * ticksPerFrame;
}
