// A group of properties in a tree.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzbase.h"
#include "dzelement.h"

#include <QStringList>

class DzPropertyGroupTree;

/// Brought up to date when read.
class DzPropertyGroup : public DzBase {
    Q_OBJECT
public:
    ~DzPropertyGroup();

    DzPropertyGroup* getFirstChild() const;
    DzPropertyGroup* getNextSibling() const;
    DzPropertyGroup* getParent() const; ///< null for a group at the top
    QString getPath() const;            ///< with a leading '/'
    int getNumProperties() const;
    DzProperty* getProperty(int index) const;
    DzPropertyListIterator getProperties() const;
    /// The paths of this group and of all below it.
    QStringList getAllPaths() const;

private:
    friend class DzPropertyGroupTree;
    DzPropertyGroup(const QString& name, DzPropertyGroup* parent, const DzPropertyGroupTree* tree);
    DzPropertyGroup* child(const QString& name);

    const DzPropertyGroupTree* _tree;
    DzPropertyGroup* _parent;
    QList<DzPropertyGroup*> _children;
    QList<DzProperty*> _properties;
    int _indexInParent;
};
