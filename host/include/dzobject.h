// The geometry of a node: shapes and the modifiers on them.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzbox3.h"
#include "dzelement.h"

class DzModifier;
class DzMorph;
class DzNode;
class DzShape;
class DzVertexMesh;

namespace openhost {
class Pipeline;
}

typedef DzTListIterator<DzModifier> DzModifierIterator;

/// Owns its shapes and modifiers. Morphs stand before the skin binding, other modifiers after it.
class DzObject : public DzElement {
    Q_OBJECT
public:
    DzObject();
    ~DzObject();

    Q_INVOKABLE DzNode* getNode() const;
    DzElement* getElementParent() const override;

    Q_INVOKABLE int getNumModifiers() const;
    Q_INVOKABLE DzModifier* getModifier(int index) const; ///< null out of range
    DzModifierIterator modifierIterator() const;
    /// The first in stack order; null if none.
    Q_INVOKABLE DzModifier* findModifier(const QString& name) const;
    int findModifierIndex(const DzModifier* modifier) const;
    /// Takes ownership. Negative appends, morphs to the end of the morphs.
    Q_INVOKABLE DzError addModifier(DzModifier* modifier, int index = -1);
    /// Deletes the modifier after its signal removed().
    Q_INVOKABLE DzError removeModifier(DzModifier* modifier);

    Q_INVOKABLE DzShape* getCurrentShape() const; ///< the first one
    DzError addShape(DzShape* shape, int index = -1);
    Q_INVOKABLE DzShape* getShape(int index) const;
    Q_INVOKABLE int getNumShapes() const;

    /// The pipeline's result: world space, at the current resolution, evaluated now if out of date. Null
    /// without a facet shape. Belongs to the object and changes with it.
    DzVertexMesh* getCachedGeom() const;
    virtual void forceCacheUpdate(DzNode* node, bool isRender = false);
    void invalidateCache();
    Q_INVOKABLE virtual DzBox3 getBoundingBox() const;

    /// The stages of the evaluation, for the host's own tools.
    openhost::Pipeline& pipeline() const;

signals:
    void modifierAdded(DzModifier* modifier);
    void modifierRemoved(DzModifier* modifier);
    void modifierStackChanged();
    void cachedGeomInvalidated();
    void cachedGeomUpdated();

protected:
    void appendTreeMembers(QList<const DzElement*>* members) const override;

private:
    friend class DzNode;
    friend class DzModifier;
    friend class openhost::Pipeline;
    /// The node, or null when it lets go of the object.
    virtual void setNode(DzNode* node);
    virtual void nodeMoved();
    virtual void nodeLeftScene();
    void insert(DzModifier& modifier, int position);
    void detach(DzModifier& modifier);
    void modifierRenamed(DzModifier* modifier, const QString& oldName);

    struct Impl;
    std::unique_ptr<Impl> _impl;
};
