// Nodes of the scene tree.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzassetfileinfo.h"
#include "dzbox3.h"
#include "dzelement.h"
#include "dzmatrix3.h"
#include "dzquat.h"
#include "dzrotationorder.h"
#include "dztime.h"
#include "dzuri.h"

class DzBoolProperty;
class DzFloatProperty;
class DzNode;
class DzObject;
class DzPresentation;
class DzScene;
class DzSelectionMap;
class DzSkeleton;

namespace openhost {
struct NodeTransform;
const NodeTransform& WorldTransform(const DzNode& node);
void CutOff(DzNode& root);
} // namespace openhost

typedef DzTListIterator<DzNode> DzNodeListIterator;

/// A place in the world with optional geometry. Owns its object and its children.
///
/// Public properties: XTranslate, YTranslate, ZTranslate, XRotate, YRotate, ZRotate (degrees), Scale, XScale,
/// YScale, ZScale, Visible, Visible in Simulation. Private: XOrigin.., XEnd.., XOrientation..; origin and end
/// are absolute, in the figure's space.
class DzNode : public DzElement {
    Q_OBJECT
public:
    DzNode();
    ~DzNode();

    DzError setLabel(const QString& label) override;

    Q_INVOKABLE DzObject* getObject() const;
    /// Takes ownership; the former object is deleted.
    void setObject(DzObject* object);
    /// The nearest skeleton up the tree, this node included.
    Q_INVOKABLE DzSkeleton* getSkeleton() const;

    Q_INVOKABLE DzNode* getNodeParent() const;
    Q_INVOKABLE int getNumNodeChildren() const;
    Q_INVOKABLE DzNode* getNodeChild(int index) const;
    Q_INVOKABLE QObjectList getNodeChildren(bool recurse = false) const;
    DzNodeListIterator nodeChildrenIterator() const;
    Q_INVOKABLE DzNode* findNodeChild(const QString& name, bool recurse = false) const;
    Q_INVOKABLE DzNode* findNodeChildByLabel(const QString& label, bool recurse = false) const;
    /// Takes ownership. A child of a node in the scene enters the scene.
    /// @param inPlace  keeps the child's world position and rotation
    Q_INVOKABLE DzError addNodeChild(DzNode* child, bool inPlace = false);
    /// The child becomes a root; in the scene if this node is.
    Q_INVOKABLE DzError removeNodeChild(DzNode* child, bool inPlace = false);

    Q_INVOKABLE bool isRootNode() const;
    Q_INVOKABLE bool isSelected() const;
    Q_INVOKABLE bool isInScene() const;
    Q_INVOKABLE void select(bool onOff = true);
    Q_INVOKABLE void setVisible(bool onOff);
    Q_INVOKABLE bool isVisible() const;

    Q_INVOKABLE DzFloatProperty* getXPosControl() const;
    Q_INVOKABLE DzFloatProperty* getYPosControl() const;
    Q_INVOKABLE DzFloatProperty* getZPosControl() const;
    Q_INVOKABLE DzFloatProperty* getXRotControl() const;
    Q_INVOKABLE DzFloatProperty* getYRotControl() const;
    Q_INVOKABLE DzFloatProperty* getZRotControl() const;
    Q_INVOKABLE DzFloatProperty* getXScaleControl() const;
    Q_INVOKABLE DzFloatProperty* getYScaleControl() const;
    Q_INVOKABLE DzFloatProperty* getZScaleControl() const;
    Q_INVOKABLE DzFloatProperty* getScaleControl() const;
    DzFloatProperty* getOriginXControl() const;
    DzFloatProperty* getOriginYControl() const;
    DzFloatProperty* getOriginZControl() const;
    DzFloatProperty* getEndXControl() const;
    DzFloatProperty* getEndYControl() const;
    DzFloatProperty* getEndZControl() const;
    DzFloatProperty* getOrientXControl() const;
    DzFloatProperty* getOrientYControl() const;
    DzFloatProperty* getOrientZControl() const;

    DzVec3 getOrigin(bool defaultVal = false) const;
    DzVec3 getEndPoint(bool defaultVal = false) const;
    DzQuat getOrientation(bool defaultVal = false) const;
    /// Sets value and default alike.
    void setOrigin(const DzVec3& origin);
    void setEndPoint(const DzVec3& endPoint);
    void setOrientation(const DzVec3& degrees);
    DzRotationOrder getRotationOrder() const;
    void setRotationOrder(const DzRotationOrder& order);
    /// On for a new node; off in files for a bone below a bone.
    bool inheritsScale() const;
    void setInheritsScale(bool onOff);

    Q_INVOKABLE DzVec3 getWSPos() const;
    DzVec3 getWSPos(const DzTime& time, bool defaultVal = false) const;
    DzQuat getWSRot() const;
    DzMatrix3 getWSScale() const;
    /// Rotation and scale; a point p of the rest shape stands at getWSTransform() * (p - origin) +
    /// getWSPos().
    DzMatrix3 getWSTransform() const;
    Q_INVOKABLE DzVec3 getLocalPos() const;

    /// Of the node's geometry in its present, deformed shape; cm. Invalid without geometry.
    Q_INVOKABLE DzBox3 getWSBoundingBox() const;
    /// Relative to the node's world position.
    Q_INVOKABLE DzBox3 getLocalBoundingBox() const;
    Q_INVOKABLE void update(bool isRender = false);
    Q_INVOKABLE void finalize(bool isRender = false, bool allowResChange = true);
    void invalidateBoundingBoxes(bool recurse = true);

    Q_INVOKABLE DzUri getAssetUri() const;
    void setAssetUri(const DzUri& uri);
    Q_INVOKABLE QString getAssetId() const;
    DzAssetFileInfo getAssetFileInfo() const;
    bool modifyAsset();
    bool isAssetModified() const;
    DzPresentation* getPresentation() const;
    /// Takes ownership.
    void setPresentation(DzPresentation* presentation);
    DzSelectionMap* getSelectionMap() const;
    /// Takes ownership.
    void setSelectionMap(DzSelectionMap* map);

signals:
    void transformChanged();
    void visibilityChanged();
    void childAdded(DzNode* child);
    void childRemoved(DzNode* child);
    void aboutToBeRemoved();
    void removed();
    void aboutToDelete(DzNode* node);
    void objectChanged(DzNode* node, DzObject* oldObject, DzObject* newObject);
    void topologyChanged();

protected:
    void renamed(const QString& oldName) override;
    void propertyValueChanged(DzProperty* property) override;
    void appendTreeMembers(QList<const DzElement*>* members) const override;
    /// The place of this node or of one above it has changed.
    virtual void transformInvalidated();
    /// A node below, or its name, has been added, removed or changed.
    virtual void hierarchyChanged();
    /// The skeleton of this node; null if it knows already that bones have changed since it was last posed.
    DzSkeleton* uninformedSkeleton();
    /// The scene has let go of this node and of those below; they will be deleted later.
    virtual void leftScene();
    /// Sets the node's own channels so that it stands there, with that rotation; world space, cm.
    void placeAt(const DzVec3& position, const DzQuat& rotation);

private:
    friend class DzScene;
    friend const openhost::NodeTransform& openhost::WorldTransform(const DzNode& node);
    friend void openhost::CutOff(DzNode& root);
    void makeProperties();
    void invalidateTransform();
    void announceHierarchyChange();
    void detachFromParent();
    void deleteChildren();
    void rootChanged();

    struct Impl;
    std::unique_ptr<Impl> _impl;
};
