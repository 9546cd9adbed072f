// Where the figures are in a viewport.
// SPDX-License-Identifier: MIT

#include "openhost/figure_area.h"

#include "geometry/picture_camera.h"
#include "scene/camera_optics.h"
#include "viewport_picture.h"

#include "dz3dviewport.h"
#include "dzbox3.h"
#include "dzcamera.h"
#include "dznode.h"
#include "dzscene.h"

#include <cmath>
#include <optional>

namespace openhost {

namespace {

using geometry::Vec3f;

Vec3f Corner(const DzBox3& box, int i)
{
    const DzVec3 &min = box.getMin(), &max = box.getMax();
    return {i & 1 ? max.m_x : min.m_x, i & 2 ? max.m_y : min.m_y, i & 4 ? max.m_z : min.m_z};
}

/// Empty where some corners lie behind the eye; nothing where all do.
std::optional<QRectF> AreaOf(const DzBox3& box, const geometry::PictureCamera& camera, const QSize& size)
{
    const float aspect = float(size.width()) / float(size.height());
    float left = INFINITY, right = -INFINITY, bottom = INFINITY, top = -INFINITY;
    int behind = 0;
    for (int i = 0; i < 8; ++i) {
        const Vec3f at = camera.project(Corner(box, i), aspect);
        behind += camera.isPerspective && at.z <= 0.0f;
        left = std::min(left, at.x);
        right = std::max(right, at.x);
        bottom = std::min(bottom, at.y);
        top = std::max(top, at.y);
    }
    if (behind == 8)
        return std::nullopt;
    if (behind > 0)
        return QRectF();
    const auto across = [&size](float x) { return 0.5 * (double(x) + 1.0) * size.width(); };
    const auto down = [&size](float y) { return 0.5 * (1.0 - double(y)) * size.height(); };
    return QRectF(QPointF(across(left), down(top)), QPointF(across(right), down(bottom)));
}

} // namespace

QRect FigureArea(const Dz3DViewport& viewport)
{
    const DzCamera* const camera = viewport.getCamera();
    const QSize size = viewport.size();
    if (!camera || size.isEmpty())
        return QRect();
    const geometry::PictureCamera optics = OpticsOf(*camera, float(size.width()) / float(size.height()));
    if (viewport.picture().isDivided())
        return viewport.rect();
    QRectF all;
    for (int i = 0; i < dzScene->getNumNodes(); ++i) {
        const DzNode& node = *dzScene->getNode(i);
        const DzBox3 box = node.isRootNode() && node.isVisible() ? node.getWSBoundingBox() : DzBox3();
        if (!box.isValid())
            continue;
        const std::optional<QRectF> area = AreaOf(box, optics, size);
        if (!area)
            continue;
        if (area->isEmpty())
            return viewport.rect();
        all |= *area;
    }
    return all.toAlignedRect() & viewport.rect();
}

} // namespace openhost
