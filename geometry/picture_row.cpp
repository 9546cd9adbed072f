// From samples to surfaces.
// SPDX-License-Identifier: MIT

#include "picture_row.h"

#include "ray_shares.h"

#include <algorithm>

namespace geometry {

SurfaceLikeness::SurfaceLikeness(const PictureView& view)
    : _eye(view.camera.eye), _forward(view.camera.forward)
{
    const float width = 2.0f * view.camera.halfHeight / static_cast<float>(view.height);
    _atEye = view.camera.isPerspective ? 0.0f : width;
    _perCm = view.camera.isPerspective ? width : 0.0f;
}

/// Those of one pixel that show surfaces in the studio's light.
struct RowGatherer::PixelSamples {
    struct Sample {
        Vec3f position;
        SurfaceSample start;
        std::uint32_t surface;
    };
    std::vector<Sample> all;
};

RowGatherer::RowGatherer(const PictureView& view)
    : _view(view), _grid(view.samples()), _likeness(view), _backdrop(_grid.width, _grid.height)
{
}

PixelRow RowGatherer::gather(int row, const std::uint32_t* faces) const
{
    PixelRow result;
    result.number = row;
    result.colors.resize(static_cast<std::size_t>(_view.width));
    result.firsts.reserve(result.colors.size() + 1);
    PixelSamples samples;
    for (int column = 0; column < _view.width; ++column) {
        result.firsts.push_back(static_cast<std::uint32_t>(result.surfaces.size()));
        gatherPixel(column, row, faces, samples, result);
    }
    result.firsts.push_back(static_cast<std::uint32_t>(result.surfaces.size()));
    return result;
}

void RowGatherer::gatherPixel(int column, int row, const std::uint32_t* faces, PixelSamples& samples,
                              PixelRow& result) const
{
    const int n = _view.samplesPerAxis;
    samples.all.clear();
    for (int s = 0; s < n * n; ++s) {
        const int x = n * column + s % n, y = n * row + s / n;
        const std::uint32_t face = faces[static_cast<std::ptrdiff_t>(s / n) * _grid.width + x];
        Rgb& color = result.colors[static_cast<std::size_t>(column)];
        if (face == noFace) {
            Add(_backdrop.at(x, y), color);
            continue;
        }
        const Ray ray = _view.camera.ray(_grid.x(x), _grid.y(y), _grid.aspect());
        const PictureStage::Hit hit = _view.stage.hitOn(face, ray);
        if (_view.lighting == Lighting::Plain) {
            Add(PlainLight(hit, -ray.direction), color);
        } else if (_view.lighting == Lighting::Quick) {
            Response response;
            _view.light.add(hit, -ray.direction, response);
            Add(_view.light.light(response, 0.85f, {1.0f, 1.0f, 1.0f}), color);
        } else {
            addSample(hit, -ray.direction, samples, result);
        }
    }
    if (!samples.all.empty())
        sortSamples(column, row, samples, result);
}

void RowGatherer::addSample(const PictureStage::Hit& hit, Vec3f toEye, PixelSamples& samples,
                            PixelRow& result) const
{
    const float slack = _likeness.slackAt(hit.position);
    std::uint32_t surface = result.firsts.back();
    while (surface < result.surfaces.size() && !SurfaceLikeness::areOne(result.surfaces[surface], hit, slack))
        ++surface;
    if (surface == result.surfaces.size()) {
        result.surfaces.push_back({hit.position, hit.normal});
        result.responses.emplace_back();
    }
    _view.light.add(hit, toEye, result.responses[surface]);
    ++result.surfaces[surface].sampleCount;
    samples.all.push_back(
        {hit.position, {hit.position + hit.faceNormal * _view.rayOffset(), hit.normal}, surface});
}

void RowGatherer::sortSamples(int column, int row, const PixelSamples& samples, PixelRow& result) const
{
    for (std::uint32_t s = result.firsts.back(); s < result.surfaces.size(); ++s) {
        PixelSurface& surface = result.surfaces[s];
        surface.firstSample = static_cast<std::uint32_t>(result.samples.size());
        // Another one in each pixel of a square, so that the light does not shift to one side.
        std::uint32_t left = RayShares::at(column, row) % surface.sampleCount;
        for (const PixelSamples::Sample& sample : samples.all)
            if (sample.surface == s) {
                if (left-- == 0) {
                    surface.position = sample.position;
                    surface.normal = sample.start.normal;
                }
                result.samples.push_back(sample.start);
            }
    }
}

} // namespace geometry
