// Counted items, presentations and selection maps.
// SPDX-License-Identifier: MIT

#include "dzcontentfolder.h"
#include "dzpresentation.h"
#include "dzrefcounteditem.h"
#include "dzselectionmap.h"

DzRefCountedItem::DzRefCountedItem() : _count(0) {}
DzRefCountedItem::~DzRefCountedItem() = default;

void DzRefCountedItem::ref()
{
    ++_count;
}

void DzRefCountedItem::unref()
{
    Q_ASSERT(_count > 0);
    if (--_count == 0)
        delete this;
}

DzPresentation::DzPresentation() = default;
DzPresentation::~DzPresentation() = default;

DzContentFolder::DzContentFolder(const QString& fullPath) : _fullPath(fullPath) {}
DzContentFolder::~DzContentFolder() = default;

DzSelectionMap::DzSelectionMap() = default;
DzSelectionMap::~DzSelectionMap() = default;

void DzSelectionMap::addPair(const QString& faceGroup, const QString& nodeName)
{
    const int index = _groups.indexOf(faceGroup);
    if (index >= 0) {
        _nodes[index] = nodeName;
        return;
    }
    _groups.append(faceGroup);
    _nodes.append(nodeName);
}

QString DzSelectionMap::findNodeName(const QString& faceGroup) const
{
    const int index = _groups.indexOf(faceGroup);
    return index >= 0 ? _nodes.at(index) : QString();
}
