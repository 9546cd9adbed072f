// What of the scene a picture shows.
// SPDX-License-Identifier: MIT

#include "openhost/scene_picture.h"

#include "dznode.h"
#include "dzobject.h"
#include "dzscene.h"
#include "dzskeleton.h"
#include "figure/mesh_access.h"

#include <algorithm>

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

void AddItem(ScenePicture& picture, DzNode& node)
{
    const DzObject* const object = node.getObject();
    const DzVertexMesh* const mesh = object ? object->getCachedGeom() : nullptr;
    if (!mesh)
        return;
    geometry::PictureItem item;
    item.mesh = MeshAccess::mesh(*mesh).view();
    picture.items.push_back(item);
    picture.nodes.push_back(&node);
}

} // namespace

ScenePicture VisibleItems(const DzScene& scene)
{
    ScenePicture picture;
    for (int i = 0; i < scene.getNumNodes(); ++i)
        if (IsSeen(scene.getNode(i)))
            AddItem(picture, *scene.getNode(i));
    return picture;
}

ScenePicture FigureItems(DzSkeleton& figure)
{
    std::vector<DzSkeleton*> figures{&figure};
    for (std::size_t i = 0; i < figures.size(); ++i)
        for (int k = 0; k < figures[i]->getNumFollowSkeletons(); ++k) {
            DzSkeleton* const follower = figures[i]->getFollowSkeleton(k);
            // Figures may follow each other in a circle.
            if (IsSeen(follower) && std::find(figures.begin(), figures.end(), follower) == figures.end())
                figures.push_back(follower);
        }
    ScenePicture picture;
    for (DzSkeleton* const one : figures)
        AddItem(picture, *one);
    return picture;
}

} // namespace openhost
