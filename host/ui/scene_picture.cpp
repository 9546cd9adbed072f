// What of the scene a picture shows.
// SPDX-License-Identifier: MIT

#include "openhost/scene_picture.h"

#include "dznode.h"
#include "dzobject.h"
#include "dzscene.h"
#include "dzskeleton.h"
#include "figure/pipeline.h"
#include "geometry/limits.h"
#include "openhost/diagnostics.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>
#include <vector>

namespace openhost {

namespace {

/// Which nodes of the scene as it is are seen: those that are visible with everything above them.
class Sight {
public:
    bool sees(const DzNode& node)
    {
        std::vector<const DzNode*> unknown;
        const DzNode* above = &node;
        for (; above && _seen.count(above) == 0; above = above->getNodeParent())
            unknown.push_back(above);
        bool isSeen = !above || _seen.at(above);
        // A chain of nodes is walked once, and not for each of them.
        for (auto next = unknown.rbegin(); next != unknown.rend(); ++next) {
            isSeen = isSeen && (*next)->isVisible();
            _seen.emplace(*next, isSeen);
        }
        return isSeen;
    }

    bool seesTargetOf(const DzNode& node)
    {
        const auto* const skeleton = qobject_cast<const DzSkeleton*>(&node);
        return skeleton && skeleton->getFollowTarget() && sees(*skeleton->getFollowTarget());
    }

private:
    std::unordered_map<const DzNode*, bool> _seen;
};

bool HasMesh(const DzNode& node)
{
    return node.getObject() && node.getObject()->pipeline().hasMesh();
}

/// Whether the node's mesh is a part of another one in the picture.
bool IsGrafted(const DzNode& node)
{
    const auto* const skeleton = qobject_cast<const DzSkeleton*>(&node);
    return skeleton && HasMesh(node) && node.getObject()->pipeline().graft();
}

/// What is to be seen grafted onto a figure or onto its grafts.
std::vector<DzSkeleton*> SeenGrafts(DzSkeleton& figure, Sight& sight)
{
    std::vector<DzSkeleton*> parts{&figure};
    for (std::size_t i = 0; i < parts.size(); ++i)
        for (int k = 0; k < parts[i]->getNumFollowSkeletons(); ++k) {
            DzSkeleton* const follower = parts[i]->getFollowSkeleton(k);
            if (sight.sees(*follower) && IsGrafted(*follower))
                parts.push_back(follower);
        }
    parts.erase(parts.begin());
    return parts;
}

geometry::PolygonMeshView MeshWithGrafts(DzNode& node, Sight& sight)
{
    auto* const skeleton = qobject_cast<DzSkeleton*>(&node);
    const std::vector<DzSkeleton*> grafts =
        skeleton ? SeenGrafts(*skeleton, sight) : std::vector<DzSkeleton*>();
    Pipeline& pipeline = node.getObject()->pipeline();
    return grafts.empty() ? pipeline.world().view() : pipeline.grafted(grafts).view();
}

/// Rays lose their way among places that are farther out than anything in the world.
bool CanBeDrawn(const geometry::PolygonMeshView& mesh)
{
    constexpr float farthest = geometry::farthestPosition;
    return std::all_of(mesh.positions.begin(), mesh.positions.end(), [](geometry::Vec3f p) {
        return std::abs(p.x) <= farthest && std::abs(p.y) <= farthest && std::abs(p.z) <= farthest;
    });
}

/// @param isAlone  the figure that it may be grafted onto is not in the picture
void AddItem(ScenePicture& picture, DzNode& node, Sight& sight, bool isAlone)
{
    if (!HasMesh(node) || (!isAlone && IsGrafted(node)))
        return;
    geometry::PictureItem item;
    item.mesh = MeshWithGrafts(node, sight);
    item.surfaceColors = SurfaceColors(*item.mesh.topology);
    if (!CanBeDrawn(item.mesh)) {
        Report({base::Severity::Warning,
                {},
                node.getLabel().toStdString(),
                "reaches too far out to be drawn and is left out of the picture"});
        return;
    }
    picture.items.push_back(item);
    picture.nodes.push_back(&node);
}

} // namespace

ScenePicture VisibleItems(const DzScene& scene)
{
    ScenePicture picture;
    Sight sight;
    for (int i = 0; i < scene.getNumNodes(); ++i)
        if (DzNode* const node = scene.getNode(i); sight.sees(*node))
            AddItem(picture, *node, sight, !sight.seesTargetOf(*node));
    return picture;
}

ScenePicture FigureItems(DzSkeleton& figure)
{
    std::vector<DzSkeleton*> figures{&figure};
    Sight sight;
    for (std::size_t i = 0; i < figures.size(); ++i)
        for (int k = 0; k < figures[i]->getNumFollowSkeletons(); ++k) {
            DzSkeleton* const follower = figures[i]->getFollowSkeleton(k);
            // Figures may follow each other in a circle.
            if (sight.sees(*follower) && std::find(figures.begin(), figures.end(), follower) == figures.end())
                figures.push_back(follower);
        }
    ScenePicture picture;
    for (DzSkeleton* const one : figures)
        AddItem(picture, *one, sight, one == &figure);
    return picture;
}

} // namespace openhost
