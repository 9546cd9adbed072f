// Which node a face group selects.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzbase.h"

#include <QHash>
#include <QStringList>

class DzNode;

class DzSelectionMap : public DzBase {
    Q_OBJECT
public:
    DzSelectionMap();
    ~DzSelectionMap();

    int getNumPairs() const { return _groups.size(); }
    QString getPairGroup(int index) const { return _groups.at(index); }
    QString getPairNodeName(int index) const { return _nodes.at(index); }
    /// Replaces the node of a group that is mapped already.
    void addPair(const QString& faceGroup, const QString& nodeName);
    QString findNodeName(const QString& faceGroup) const; ///< empty if none

private:
    QStringList _groups;
    QStringList _nodes;
    QHash<QString, int> _places; ///< in both, by group
};
