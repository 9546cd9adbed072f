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
    const auto known = _places.constFind(faceGroup);
    if (known != _places.constEnd()) {
        _nodes[*known] = nodeName;
        return;
    }
    _places.insert(faceGroup, _groups.size());
    _groups.append(faceGroup);
    _nodes.append(nodeName);
}

QString DzSelectionMap::findNodeName(const QString& faceGroup) const
{
    const auto known = _places.constFind(faceGroup);
    return known == _places.constEnd() ? QString() : _nodes.at(*known);
}
