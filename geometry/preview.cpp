// Quick pictures for a viewport.
// SPDX-License-Identifier: MIT

#include "geometry/preview.h"

#include "base/cancellation.h"

#include <tbb/parallel_for.h>

#include <algorithm>
#include <cmath>

namespace geometry {

namespace {

using Pixel = std::array<std::uint8_t, 3>;

/// What a pixel shows besides its colour, to find edges by.
struct Seen {
    Pixel color{};
    std::uint64_t face = UINT64_MAX; ///< item and polygon; all ones for none
};

std::uint64_t FaceKey(const PictureStage::Hit& hit)
{
    return std::uint64_t{hit.item} << 32 | hit.face;
}

/// A lamp at the eye: bright where the surface faces it. The square root stands for the screen's gamma.
Pixel Shade(const PictureStage::Hit& hit, Vec3f toEye, const PreviewOptions& options)
{
    if (options.shading == PreviewShading::None)
        return options.background;
    const Vec3f normal = options.shading == PreviewShading::Smooth ? hit.normal : hit.faceNormal;
    const float light = 0.12f + 0.88f * std::max(0.0f, Dot(normal, toEye));
    Pixel pixel;
    for (std::size_t k = 0; k < 3; ++k)
        pixel[k] =
            static_cast<std::uint8_t>(255.0f * std::sqrt(std::clamp(hit.color[k] * light, 0.0f, 1.0f)));
    return pixel;
}

class RowDrawer {
public:
    RowDrawer(const PictureStage& stage, const PictureCamera& camera, const PreviewOptions& options)
        : _stage(stage), _camera(camera), _options(options),
          _aspect(static_cast<float>(options.width) / static_cast<float>(options.height))
    {
    }

    void draw(int row, Seen* seen) const
    {
        const float y = 1.0f - 2.0f * (static_cast<float>(row) + 0.5f) / static_cast<float>(_options.height);
        const std::size_t width = static_cast<std::size_t>(_options.width);
        std::vector<Ray> rays(width);
        for (std::size_t column = 0; column < width; ++column)
            rays[column] = _camera.ray(
                2.0f * (static_cast<float>(column) + 0.5f) / static_cast<float>(_options.width) - 1.0f, y,
                _aspect);
        std::vector<PictureStage::Hit> hits(width);
        _stage.trace(rays, hits.data());
        for (std::size_t column = 0; column < width; ++column) {
            const PictureStage::Hit& hit = hits[column];
            seen[column] = hit.isValid ? Seen{Shade(hit, -rays[column].direction, _options), FaceKey(hit)}
                                       : Seen{_options.background, UINT64_MAX};
        }
    }

private:
    const PictureStage& _stage;
    const PictureCamera& _camera;
    const PreviewOptions& _options;
    float _aspect;
};

/// Edges over shading let it shine through, or dense meshes would be all edge.
Pixel EdgeColor(const Pixel& face, const PreviewOptions& options)
{
    if (options.shading == PreviewShading::None)
        return options.edges;
    Pixel pixel;
    for (std::size_t k = 0; k < 3; ++k)
        pixel[k] = static_cast<std::uint8_t>(std::lround(
            static_cast<float>(face[k]) +
            options.edgeOpacity * (static_cast<float>(options.edges[k]) - static_cast<float>(face[k]))));
    return pixel;
}

/// Whether another face begins to the right of a pixel or below it.
bool IsEdge(const std::vector<Seen>& seen, int column, int row, const PreviewOptions& options)
{
    const std::size_t width = static_cast<std::size_t>(options.width);
    const std::size_t here = static_cast<std::size_t>(row) * width + static_cast<std::size_t>(column);
    const bool toRight = column + 1 < options.width && seen[here].face != seen[here + 1].face;
    const bool below = row + 1 < options.height && seen[here].face != seen[here + width].face;
    return toRight || below;
}

} // namespace

Picture DrawPreview(const PictureStage& stage, const PictureCamera& camera, const PreviewOptions& options)
{
    CheckPictureSize(options.width, options.height);
    const std::size_t width = static_cast<std::size_t>(options.width);
    std::vector<Seen> seen(width * static_cast<std::size_t>(options.height));
    const RowDrawer drawer(stage, camera, options);
    tbb::parallel_for(0, options.height, [&](int row) {
        base::ThrowIfCancelled();
        drawer.draw(row, seen.data() + width * static_cast<std::size_t>(row));
    });
    Picture picture{options.width, options.height, {}};
    picture.rgb.resize(3 * seen.size());
    tbb::parallel_for(0, options.height, [&](int row) {
        base::ThrowIfCancelled();
        const std::size_t first = width * static_cast<std::size_t>(row);
        for (int column = 0; column < options.width; ++column) {
            const std::size_t i = first + static_cast<std::size_t>(column);
            const bool isEdge = options.drawEdges && IsEdge(seen, column, row, options);
            const Pixel pixel = isEdge ? EdgeColor(seen[i].color, options) : seen[i].color;
            std::copy(pixel.begin(), pixel.end(), picture.rgb.begin() + static_cast<std::ptrdiff_t>(3 * i));
        }
    });
    return picture;
}

} // namespace geometry
