// What of the scene a picture shows.
// SPDX-License-Identifier: MIT

#include "apps/cli/scene_picture.h"

#include "dznode.h"
#include "dzobject.h"
#include "dzscene.h"
#include "host/figure/mesh_access.h"

namespace cli {

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

std::vector<geometry::PictureItem> VisibleItems(const DzScene& scene)
{
    std::vector<geometry::PictureItem> items;
    for (int i = 0; i < scene.getNumNodes(); ++i) {
        const DzNode& node = *scene.getNode(i);
        const DzObject* const object = node.getObject();
        if (!object || !IsSeen(&node))
            continue;
        if (const DzVertexMesh* const mesh = object->getCachedGeom()) {
            geometry::PictureItem item;
            item.mesh = openhost::MeshAccess::mesh(*mesh).view();
            items.push_back(item);
        }
    }
    return items;
}

} // namespace cli
