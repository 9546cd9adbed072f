// What is taken back and done again of a node's coming, going and moving.
// SPDX-License-Identifier: MIT

#include "dzobject.h"
#include "dzskeleton.h"
#include "node_impl.h"
#include "scene/node_walk.h"
#include "scene/undo_recording.h"
#include "scene_impl.h"

#include <QSet>

#include <algorithm>
#include <utility>

namespace {

QList<DzNode*> WithAllBelow(DzNode& root)
{
    QList<DzNode*> nodes{&root};
    openhost::WalkBelow(root, [&](DzNode& node) {
        nodes.append(&node);
        return openhost::Walk::On;
    });
    return nodes;
}

} // namespace

/// That a node is in the scene, with all below it.
class DzNode::Impl::Presence : public openhost::Change {
public:
    Presence(DzNode& root, bool isEntry) : _root(&root), _isEntry(isEntry)
    {
        if (isEntry)
            return;
        remember();
        setOut(true);
    }
    ~Presence() override
    {
        if (!_isOut || !_root)
            return;
        setOut(false);
        // Somebody may have put it back by hand.
        if (dzScene && !_root->isInScene() && !_root->getNodeParent())
            dzScene->discard(_root);
    }
    void undo() override { _isEntry ? takeOut() : putBack(); }
    void redo() override { _isEntry ? putBack() : takeOut(); }
    openhost::ChangeRank rank() const override { return openhost::ChangeRank::Node; }
    QString caption() const override
    {
        return openhost::Captioned(_isEntry ? openhost::captions::add : openhost::captions::deleteWhole,
                                   _root ? _root->getLabel() : QString());
    }
    /// What has come is there without the step.
    const QObject* held() const override { return _isEntry ? nullptr : _root.data(); }
    bool isEntryOf(const DzNode& node) const override { return _isEntry && _root == &node; }

private:
    void setOut(bool isOut)
    {
        _isOut = isOut;
        openhost::SetHeldByUndo(*_root, isOut);
    }

    /// Where all of them stand.
    void remember()
    {
        _parent = _root->_impl->parent;
        _hadParent = _parent;
        _place = _parent ? _parent->_impl->children.indexOf(_root) : 0;
        _nodes.clear();
        const QList<DzNode*> leaving = WithAllBelow(*_root);
        const QSet<DzNode*> all(leaving.begin(), leaving.end());
        const QList<DzNode*>& list = dzScene->_impl->nodes;
        for (int i = 0; i < list.size(); ++i)
            if (all.contains(list.at(i)))
                _nodes.emplace_back(i, list.at(i));
    }

    void takeOut()
    {
        if (!_root || !_root->isInScene())
            return;
        const QList<DzNode*> leaving = WithAllBelow(*_root);
        emit _root->aboutToBeRemoved();
        for (DzNode* const node : leaving)
            emit dzScene->aboutToRemoveNode(node);
        remember();
        setOut(true);
        _root->detachFromParent();
        dzScene->leave(leaving);
        for (DzNode* const node : leaving) {
            node->leftScene();
            emit dzScene->nodeRemoved(node);
            emit node->removed();
        }
        emit dzScene->nodeListChanged();
        // A departure of its own was cut off as a part of its step.
        if (_isEntry)
            _cut = openhost::Captured([this] { openhost::CutOff(*_root); });
    }

    void putBack()
    {
        if (!_isOut || !_root || (_hadParent && !_parent) || _root->isInScene())
            return;
        setOut(false);
        if (_parent) {
            openhost::PutBackAt(_parent->_impl->children, _place, _root.data());
            _root->_impl->parent = _parent;
            _root->invalidateTransform();
        }
        insertAll();
        openhost::TakeBack(std::exchange(_cut, {}));
        dzScene->rootsChanged();
        if (_parent)
            _parent->announceHierarchyChange();
        for (const auto& [place, node] : _nodes)
            if (node)
                emit dzScene->nodeAdded(node);
        emit dzScene->nodeListChanged();
        if (_parent)
            emit _parent->childAdded(_root);
    }

    /// In one go, since each would move all behind it.
    void insertAll()
    {
        QList<DzNode*> list;
        auto next = _nodes.begin();
        const auto insertDue = [&](bool isEnd) {
            for (; next != _nodes.end() && (isEnd || next->first == list.size()); ++next)
                if (next->second) {
                    next->second->_impl->inScene = true;
                    list.append(next->second);
                }
        };
        for (DzNode* const present : std::as_const(dzScene->_impl->nodes)) {
            insertDue(false);
            list.append(present);
        }
        insertDue(true);
        dzScene->_impl->nodes = list;
    }

    QPointer<DzNode> _root, _parent;
    bool _isEntry, _isOut = false, _hadParent = false;
    int _place = 0;                                       ///< among the parent's children
    std::vector<std::unique_ptr<openhost::Change>> _cut;  ///< what tied them to others
    std::vector<std::pair<int, QPointer<DzNode>>> _nodes; ///< with their places in the scene, ascending
};

/// Below whom a node hangs.
class DzNode::Impl::Move : public openhost::Change {
public:
    explicit Move(DzNode& node) : _node(&node), _other(placeOf(node)) {}
    void undo() override { exchange(); }
    void redo() override { exchange(); }
    openhost::ChangeRank rank() const override { return openhost::ChangeRank::Look; }
    QString caption() const override
    {
        return _node ? openhost::Captioned(openhost::captions::move, _node->getLabel()) : QString();
    }

private:
    struct Place {
        QPointer<DzNode> parent;
        int index = 0; ///< among the parent's children
    };

    static Place placeOf(DzNode& node)
    {
        DzNode* const parent = node._impl->parent;
        return {parent, parent ? parent->_impl->children.indexOf(&node) : 0};
    }

    void exchange()
    {
        if (!_node)
            return;
        const Place former = placeOf(*_node);
        _node->detachFromParent();
        _node->rootChanged();
        if (former.parent)
            emit former.parent->childRemoved(_node);
        if (_other.parent) {
            openhost::PutBackAt(_other.parent->_impl->children, _other.index, _node.data());
            _node->_impl->parent = _other.parent;
        }
        _node->invalidateTransform();
        if (_other.parent) {
            _other.parent->announceHierarchyChange();
            emit _other.parent->childAdded(_node);
        }
        _other = former;
    }

    QPointer<DzNode> _node;
    Place _other;
};

std::unique_ptr<openhost::Change> DzNode::Impl::entryOf(DzNode& root)
{
    return std::make_unique<Presence>(root, true);
}

std::unique_ptr<openhost::Change> DzNode::Impl::departureOf(DzNode& root)
{
    return std::make_unique<Presence>(root, false);
}

void DzNode::Impl::recordMove(DzNode& node)
{
    if (!openhost::IsRecording() || !node.isInScene())
        return;
    openhost::NoteMoved(node, entryOf(node));
    openhost::Record(std::make_unique<Move>(node));
}

void openhost::CutOff(DzNode& root)
{
    const QList<DzNode*> leaving = WithAllBelow(root);
    QList<const DzElement*> elements;
    for (DzNode* const node : leaving) {
        elements.append(node);
        node->appendTreeMembers(&elements);
    }
    CutOff(PropertiesOf(elements));
    for (DzNode* const node : leaving) {
        auto* const skeleton = qobject_cast<DzSkeleton*>(node);
        if (!skeleton)
            continue;
        if (skeleton->getFollowTarget() && !leaving.contains(skeleton->getFollowTarget()))
            skeleton->setFollowTarget(nullptr);
        for (int i = skeleton->getNumFollowSkeletons() - 1; i >= 0; --i)
            if (!leaving.contains(skeleton->getFollowSkeleton(i)))
                skeleton->getFollowSkeleton(i)->setFollowTarget(nullptr);
    }
}
