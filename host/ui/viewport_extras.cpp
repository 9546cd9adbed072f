// What the open host's viewport shows and does besides what the scene's own classes tell of.
// SPDX-License-Identifier: MIT

#include "openhost/viewport_extras.h"

#include "dz3dviewport.h"
#include "dzcamera.h"
#include "viewport_picture.h"

namespace openhost {

void SetNodeColors(Dz3DViewport& view, NodeColors colors)
{
    view.picture().setColors(std::move(colors));
    view.update();
}

void ShowSideBySide(Dz3DViewport& view, DzSkeleton* left, DzSkeleton* right)
{
    view.picture().showSideBySide(left, right);
    view.update();
}

void ShowGround(Dz3DViewport& view, bool isShown)
{
    view.picture().showGround(isShown);
    view.update();
}

DzBox3 BoxInView(const Dz3DViewport& view)
{
    return view.picture().box();
}

DzBox3 BoxInView(const Dz3DViewport& view, const DzNode& node)
{
    return view.picture().boxOf(node);
}

void FrameInView(Dz3DViewport& view, const DzBox3& box)
{
    if (view.getCamera())
        view.getCamera()->frame(box, view.picture().aspect(view.size()));
}

} // namespace openhost
