// The scene.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzbase.h"
#include "dzbox3.h"
#include "dznode.h"
#include "dztime.h"

#include <QStringList>

#include <memory>

class DzSkeleton;

namespace openhost {
class UndoAccess;
}

/// All nodes, flat and in order of entry, and the selection in order of selection.
class DzScene : public DzBase {
    Q_OBJECT
    Q_ENUMS(DzOpenMethod)
public:
    /// By content type; into an emptied scene; beside what is there.
    enum DzOpenMethod { DefaultMethod, OpenNew, MergeFile };

    DzScene();
    ~DzScene();

    DzNodeListIterator nodeListIterator() const;
    DzNodeListIterator selectedNodeListIterator() const;
    Q_INVOKABLE QObjectList getNodeList() const;
    Q_INVOKABLE QObjectList getSelectedNodeList() const;
    Q_INVOKABLE int getNumNodes() const;
    Q_INVOKABLE DzNode* getNode(int index) const; ///< null out of range
    Q_INVOKABLE int getNumSelectedNodes() const;
    Q_INVOKABLE DzNode* getSelectedNode(int index) const; ///< null out of range

    /// The node selected last, or the one set; null without a selection.
    Q_INVOKABLE DzNode* getPrimarySelection() const;
    /// Selects it too. False if it is not in the scene or primary already. Null clears the selection.
    Q_INVOKABLE bool setPrimarySelection(DzNode* node);
    Q_INVOKABLE void selectAllNodes(bool onOff);
    /// These alone, told once. The last one is primary where none is named.
    void setSelection(const QList<DzNode*>& nodes, DzNode* primary = nullptr);

    Q_INVOKABLE DzNode* findNode(const QString& name) const;
    Q_INVOKABLE DzNode* findNodeByLabel(const QString& label) const;
    Q_INVOKABLE DzSkeleton* findSkeleton(const QString& name) const;
    Q_INVOKABLE DzSkeleton* findSkeletonByLabel(const QString& label) const;
    Q_INVOKABLE int getNumSkeletons() const;
    Q_INVOKABLE DzSkeleton* getSkeleton(int index) const;
    /// -1 if it is not in the scene; a stale pointer is never followed.
    Q_INVOKABLE int findNodeIndex(const DzNode* node) const;

    /// Takes ownership of a root node, with its children. Its name and label are made unique among the roots.
    Q_INVOKABLE bool addNode(DzNode* node);
    /// Removes the node with its children; they are deleted when control returns to the event loop.
    Q_INVOKABLE bool removeNode(DzNode* node);
    Q_INVOKABLE void removeSelected();
    /// Deletes what was removed, now. Pointers to removed nodes become stale.
    void purgeRemoved();
    Q_INVOKABLE void clear();

    /// "Label", or "Label (2)" and so on when a root node has it already.
    Q_INVOKABLE QString getUniqueTopLevelLabel(const QString& label) const;
    QString getUniqueTopLevelName(const QString& name) const;
    static QString stripLabelNumber(const QString& label);

    Q_INVOKABLE DzBox3 getBoundingBox() const;
    Q_INVOKABLE void update();
    /// Writes all that is in the scene; a missing extension is added, and an empty name asked for where
    /// somebody can be asked.
    Q_INVOKABLE DzError saveScene(const QString& filename);
    Q_INVOKABLE DzError loadScene(const QString& filename, DzScene::DzOpenMethod method);
    Q_INVOKABLE bool isLoading() const;
    /// Brackets a load; nests. Emits sceneLoadStarting and sceneLoaded at the outermost level.
    void beginLoad();
    void endLoad();

    DzTime getTime() const;
    DzTime getTimeStep() const;
    void setFrame(int frame);

signals:
    void nodeAdded(DzNode* node);
    void nodeRemoved(DzNode* node);
    void aboutToRemoveNode(DzNode* node);
    void nodeListChanged();
    void nodeSelectionListChanged();
    void primarySelectionChanged(DzNode* node);
    void sceneLoadStarting();
    void sceneLoaded();
    void sceneCleared();
    void drawnDataChanged();

private:
    friend class DzNode;
    friend class openhost::UndoAccess;
    void enter(DzNode* node);
    void leave(DzNode* node);
    void leave(const QList<DzNode*>& nodes);
    /// Which nodes are roots, or what they are called.
    void rootsChanged();
    void expel(DzNode* node);
    /// It has left the scene, and is deleted when control returns to the event loop.
    void discard(DzNode* node);
    QList<DzNode*> rootNodes() const;
    void setSelected(DzNode* node, bool onOff);
    void makePrimary(DzNode* node);

    struct Impl;
    std::unique_ptr<Impl> _impl;
};

/// The one scene; null while no host runs.
extern DzScene* dzScene;
