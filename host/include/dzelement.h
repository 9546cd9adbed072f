// Objects that own properties.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzbase.h"
#include "dzerror.h"
#include "dzlistiterator.h"

#include <memory>

class DzProperty;
class DzPropertyGroupTree;

typedef DzTListIterator<DzProperty> DzPropertyListIterator;

/// A node, object, shape or modifier. Owns its properties and deletes them.
///
/// Look-ups by name are hashed. Properties of modifiers, objects and shapes are shown in their node's group
/// tree.
class DzElement : public DzBase {
    Q_OBJECT
    Q_PROPERTY(int elementID READ getElementID)
public:
    DzElement();
    ~DzElement();

    /// The user's text; the name as long as no label has been set.
    Q_INVOKABLE virtual QString getLabel() const;
    Q_INVOKABLE virtual DzError setLabel(const QString& label);
    Q_INVOKABLE int getElementID() const;
    /// A modifier's or shape's parent is its object, an object's its node; null at the top.
    virtual DzElement* getElementParent() const;

    Q_INVOKABLE DzProperty* findProperty(const QString& name) const;
    Q_INVOKABLE DzProperty* findProperty(const QString& name, bool caseSensitive) const;
    Q_INVOKABLE DzProperty* findPropertyByLabel(const QString& label) const;
    Q_INVOKABLE DzProperty* findPrivateProperty(const QString& name) const;
    Q_INVOKABLE int getNumProperties() const;
    Q_INVOKABLE DzProperty* getProperty(int index) const; ///< null out of range
    Q_INVOKABLE QObjectList getPropertyList() const;
    DzPropertyListIterator propertyListIterator() const;
    Q_INVOKABLE int getNumPrivateProperties() const;
    Q_INVOKABLE DzProperty* getPrivateProperty(int index) const;

    /// Takes ownership. Fails for a property that has an owner and for a name that this element has already.
    Q_INVOKABLE DzError addProperty(DzProperty* property);
    DzError addPrivateProperty(DzProperty* property);
    /// Deletes the property after its signal removed().
    Q_INVOKABLE DzError removeProperty(DzProperty* property);

    Q_INVOKABLE DzPropertyGroupTree* getPropertyGroups() const;
    DzPropertyGroupTree* getPrivatePropertyGroups() const;

    void beginEdit();
    void finishEdit();
    void cancelEdit();

signals:
    void labelChanged(const QString& label);
    void propertyAdded(DzProperty* property);
    void propertyRemoved(DzProperty* property);
    void propertyListChanged();
    void propertyTreeChanged();

protected:
    /// One of this element's properties has a new value, or one that is to be evaluated when next read.
    virtual void propertyValueChanged(DzProperty* property);
    /// Appends the elements whose properties this element's group tree shows besides its own.
    virtual void appendTreeMembers(QList<const DzElement*>* members) const;

    /// What this element's group tree shows, or where, has changed.
    void propertyPathChanged();

private:
    friend class DzProperty;
    friend class DzPropertyGroupTree;
    DzError insertProperty(DzProperty* property, bool isPrivate);
    void propertyRenamed(DzProperty* property, const QString& oldName);
    void detach(DzProperty& property);

    struct Impl;
    std::unique_ptr<Impl> _impl;
};
