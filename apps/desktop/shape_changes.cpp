// Tells when shapes of the scene may have changed.
// SPDX-License-Identifier: MIT

#include "shape_changes.h"

#include <dznode.h>
#include <dzobject.h>
#include <dzscene.h>

namespace desktop {

ShapeChanges::ShapeChanges()
{
    _soon.setSingleShot(true);
    connect(&_soon, SIGNAL(timeout()), SIGNAL(changed()));
    connect(dzScene, SIGNAL(nodeAdded(DzNode*)), SLOT(watch(DzNode*)));
    connect(dzScene, SIGNAL(nodeRemoved(DzNode*)), &_soon, SLOT(start()));
    connect(dzScene, SIGNAL(drawnDataChanged()), &_soon, SLOT(start()));
    for (int i = 0; i < dzScene->getNumNodes(); ++i)
        watch(dzScene->getNode(i));
    _soon.start();
}

void ShapeChanges::watch(DzNode* node)
{
    connect(node, SIGNAL(visibilityChanged()), &_soon, SLOT(start()), Qt::UniqueConnection);
    connect(node, SIGNAL(objectChanged(DzNode*, DzObject*, DzObject*)),
            SLOT(watch(DzNode*, DzObject*, DzObject*)), Qt::UniqueConnection);
    watch(node, nullptr, node->getObject());
}

void ShapeChanges::watch(DzNode*, DzObject*, DzObject* now)
{
    if (now)
        connect(now, SIGNAL(cachedGeomInvalidated()), &_soon, SLOT(start()), Qt::UniqueConnection);
    _soon.start();
}

} // namespace desktop
