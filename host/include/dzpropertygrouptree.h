// An element's properties by group.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzbase.h"

#include <QStringList>

#include <memory>

class DzElement;
class DzProperty;
class DzPropertyGroup;

/// Brought up to date when read; groups live as long as the tree.
class DzPropertyGroupTree : public DzBase {
    Q_OBJECT
public:
    ~DzPropertyGroupTree();

    DzPropertyGroup* getFirstChild() const;
    DzPropertyGroup* findChild(const QString& path) const; ///< null if none
    DzPropertyGroup* getDefaultGroup() const;              ///< "General"
    QStringList getAllPaths() const;
    DzProperty* findProperty(const QString& name) const;
    QObjectList getAllProperties() const;

signals:
    void treeChanged();

private:
    friend class DzElement;
    friend class DzPropertyGroup;
    DzPropertyGroupTree(const DzElement* owner, bool isPrivate);
    void invalidate();
    void refresh() const;
    void addFrom(const DzElement& element) const;

    const DzElement* _owner;
    bool _isPrivate;
    mutable bool _stale;
    std::unique_ptr<DzPropertyGroup> _root;
};
