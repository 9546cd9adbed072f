// Quick pictures for a viewport.
// SPDX-License-Identifier: MIT

#include "geometry/preview.h"

#include "base/cancellation.h"
#include "rasterizer.h"
#include "wires.h"

#include <tbb/parallel_for.h>

#include <algorithm>
#include <cmath>

namespace geometry {

namespace {

std::uint32_t Packed(const std::array<std::uint8_t, 3>& rgb)
{
    return 0xff000000u | static_cast<std::uint32_t>(rgb[0]) << 16 | static_cast<std::uint32_t>(rgb[1]) << 8 |
           rgb[2];
}

/// The square root stands for the screen's gamma.
std::uint8_t Encoded(float light)
{
    return static_cast<std::uint8_t>(255.0f * std::sqrt(std::clamp(light, 0.0f, 1.0f)));
}

/// How much light a surface sends, from lamps that go with the camera.
class PreviewLamps {
public:
    PreviewLamps(const PictureCamera& camera, PreviewLight light) : _light(light)
    {
        const Vec3f right = camera.right, up = camera.up, back = -camera.forward;
        _key = Normalized(back + up * 0.8f - right * 0.8f);
        _fill = Normalized(back + up * 0.1f + right);
        _rim = Normalized(back * -0.7f + up * 0.7f + right * 0.6f);
    }

    float on(Vec3f normal, Vec3f direction) const
    {
        const float facing = std::max(0.0f, -Dot(normal, direction));
        if (_light == PreviewLight::Plain)
            return 0.5f + 0.45f * facing;
        // The lamp at the eye that is left keeps what the others miss from being lost in the dark.
        return 0.07f + 0.30f * facing + 0.58f * std::max(0.0f, Dot(normal, _key)) +
               0.18f * std::max(0.0f, Dot(normal, _fill)) + 0.35f * std::max(0.0f, Dot(normal, _rim));
    }

private:
    PreviewLight _light;
    Vec3f _key, _fill, _rim;
};

class RowDrawer {
public:
    RowDrawer(const PictureStage& stage, const PictureCamera& camera, const PreviewOptions& options,
              const std::vector<std::uint32_t>& faces)
        : _stage(stage), _camera(camera), _options(options),
          _lamps(camera, options.light), _grid{options.width, options.height}, _faces(faces.data()),
          _background(Packed(options.background)), _empty(options.emptyPixel.value_or(_background)),
          _unshaded(Packed(options.unshaded)), _edges(Packed(options.edges))
    {
    }

    void draw(int row, std::uint32_t* pixels) const
    {
        const std::uint32_t* const faces = rowOf(row);
        const std::uint32_t* const below = row + 1 < _grid.height ? rowOf(row + 1) : faces;
        for (int column = 0; column < _grid.width; ++column) {
            const std::uint32_t face = faces[column];
            // Where another face begins to the right of a pixel or below it.
            const std::uint32_t right = faces[std::min(column + 1, _grid.width - 1)];
            if (_options.drawEdges && (face != right || face != below[column]))
                pixels[column] = edgeOver(shade(face, column, row));
            else
                pixels[column] = face == noFace ? _empty : shade(face, column, row);
        }
    }

private:
    const std::uint32_t* rowOf(int row) const
    {
        return _faces + static_cast<std::size_t>(row) * static_cast<std::size_t>(_grid.width);
    }

    std::uint32_t shade(std::uint32_t face, int column, int row) const
    {
        if (face == noFace)
            return _background;
        if (_options.shading == PreviewShading::None)
            return _unshaded;
        const Ray ray = _camera.ray(_grid.x(column), _grid.y(row), _grid.aspect());
        const PictureStage::Hit hit = _stage.hitOn(face, ray);
        const Vec3f normal = _options.shading == PreviewShading::Smooth ? hit.normal : hit.faceNormal;
        const float light = _lamps.on(normal, ray.direction);
        return Packed(
            {Encoded(hit.color[0] * light), Encoded(hit.color[1] * light), Encoded(hit.color[2] * light)});
    }

    /// Edges over shading let it shine through, or dense meshes would be all edge.
    std::uint32_t edgeOver(std::uint32_t face) const
    {
        if (_options.shading == PreviewShading::None)
            return _edges;
        std::uint32_t mixed = 0xff000000u;
        for (const int shift : {0, 8, 16}) {
            const float from = static_cast<float>(face >> shift & 255u),
                        to = static_cast<float>(_edges >> shift & 255u);
            mixed |= static_cast<std::uint32_t>(std::lround(from + _options.edgeOpacity * (to - from)))
                     << shift;
        }
        return mixed;
    }

    const PictureStage& _stage;
    const PictureCamera& _camera;
    const PreviewOptions& _options;
    PreviewLamps _lamps;
    SampleGrid _grid;
    const std::uint32_t* _faces;
    std::uint32_t _background, _empty, _unshaded, _edges;
};

} // namespace

PreviewPicture DrawPreview(const PictureStage& stage, const PictureCamera& camera,
                           const PreviewOptions& options)
{
    CheckPictureSize(options.width, options.height);
    const std::size_t width = static_cast<std::size_t>(options.width);
    std::vector<std::uint32_t> faces(width * static_cast<std::size_t>(options.height));
    Rasterizer(stage.meshes(), camera, {options.width, options.height}).draw(0, options.height, faces);
    if (options.shading == PreviewShading::Smooth)
        stage.findNormals(faces);
    PreviewPicture picture{options.width, options.height, std::vector<std::uint32_t>(faces.size())};
    const RowDrawer drawer(stage, camera, options, faces);
    tbb::parallel_for(0, options.height, [&](int row) {
        base::ThrowIfCancelled();
        drawer.draw(row, picture.pixels.data() + width * static_cast<std::size_t>(row));
    });
    return picture;
}

PreviewPicture DrawWires(base::Span<const PictureItem> items, const PictureCamera& camera,
                         const PreviewOptions& options)
{
    CheckPictureSize(options.width, options.height);
    std::vector<NumberedMesh> meshes;
    for (const PictureItem& item : items)
        meshes.push_back({item.mesh});
    const Projection projection(meshes, camera, {options.width, options.height});
    PreviewPicture picture{options.width, options.height, {}};
    picture.pixels.resize(static_cast<std::size_t>(options.width) * static_cast<std::size_t>(options.height),
                          options.emptyPixel.value_or(Packed(options.background)));
    DrawEdges(projection, Packed(options.edges), picture.pixels);
    return picture;
}

} // namespace geometry
