// What of the scene a picture shows.
// SPDX-License-Identifier: MIT

#include "openhost/scene_picture.h"

#include "dznode.h"
#include "dzobject.h"
#include "dzscene.h"
#include "figure/mesh_access.h"

namespace openhost {

namespace {

/// A node is seen when everything above it is visible too.
bool IsSeen(const DzNode* node)
{
    for (; node; node = node->getNodeParent())
        if (!node->isVisible())
            return false;
    return true;
}

} // namespace

ScenePicture VisibleItems(const DzScene& scene)
{
    ScenePicture picture;
    for (int i = 0; i < scene.getNumNodes(); ++i) {
        DzNode& node = *scene.getNode(i);
        const DzObject* const object = node.getObject();
        if (!object || !IsSeen(&node))
            continue;
        if (const DzVertexMesh* const mesh = object->getCachedGeom()) {
            geometry::PictureItem item;
            item.mesh = MeshAccess::mesh(*mesh).view();
            picture.items.push_back(item);
            picture.nodes.push_back(&node);
        }
    }
    return picture;
}

} // namespace openhost
