// Tracing shaded pictures: camera, studio lights, ambient occlusion, supersampling.
// SPDX-License-Identifier: MIT

#include "geometry/picture.h"

#include "base/cancellation.h"
#include "base/errors.h"
#include "geometry/limits.h"
#include "geometry/picture_stage.h"

#include <tbb/parallel_for.h>

#include <algorithm>
#include <cmath>

namespace geometry {

namespace {

constexpr float pi = 3.14159265f;

float Angle(View view)
{
    switch (view) {
    case View::Front:
    case View::Face:
        return 0.0f;
    case View::Side:
        return 0.5f * pi;
    case View::Back:
        return pi;
    case View::ThreeQuarter:
        return 35.0f * pi / 180.0f;
    }
    return 0.0f;
}

struct Light {
    Vec3f direction; ///< towards the light, unit
    std::array<float, 3> color;
};

/// Fixed to the camera, so that every view is lit alike.
std::array<Light, 3> StudioLights(const PictureCamera& camera)
{
    const Vec3f right = camera.right, up = camera.up, back = -camera.forward;
    return {{{Normalized(back * 0.9f + up * 0.9f - right * 0.8f), {1.55f, 1.48f, 1.40f}},
             {Normalized(back * 0.8f + up * 0.1f + right * 1.0f), {0.34f, 0.37f, 0.42f}},
             {Normalized(back * -0.8f + up * 0.8f + right * 0.7f), {0.75f, 0.78f, 0.85f}}}};
}

constexpr int occlusionRays = 12;

/// Directions over the hemisphere, denser around the normal; turned per sample so that no pattern shows.
class Hemisphere {
public:
    Hemisphere()
    {
        for (int i = 0; i < occlusionRays; ++i) {
            const float height = std::sqrt((static_cast<float>(i) + 0.5f) / occlusionRays);
            _radii[i] = std::sqrt(1.0f - height * height);
            _heights[i] = height;
        }
    }

    Vec3f direction(int i, Vec3f normal, float turn) const
    {
        const Vec3f aside = std::abs(normal.x) > 0.6f ? Vec3f{0, 1, 0} : Vec3f{1, 0, 0};
        const Vec3f u = Normalized(Cross(aside, normal)), v = Cross(normal, u);
        const float angle = turn + static_cast<float>(i) * 2.39996323f; // the golden angle
        return u * (_radii[i] * std::cos(angle)) + v * (_radii[i] * std::sin(angle)) + normal * _heights[i];
    }

private:
    float _radii[occlusionRays], _heights[occlusionRays];
};

/// A number in 0..1 that looks random, from integers.
float Scatter(std::uint32_t x, std::uint32_t y, std::uint32_t sample)
{
    std::uint32_t h = x * 0x8da6b343u ^ y * 0xd8163841u ^ sample * 0xcb1ab31fu;
    h = (h ^ (h >> 15)) * 0x2c1b3c6du;
    h = (h ^ (h >> 12)) * 0x297a2d39u;
    return static_cast<float>((h ^ (h >> 15)) >> 8) * (1.0f / 16777216.0f);
}

using Rgb = std::array<float, 3>;

/// A plain studio wall, lighter around the middle and darker towards the floor.
Rgb Backdrop(float x, float y)
{
    const float glow = std::exp(-0.9f * (x * x + (y - 0.15f) * (y - 0.15f)));
    const float level = 0.16f + 0.26f * glow;
    return {level * 0.97f, level, level * 1.05f};
}

class Tracer {
public:
    Tracer(const PictureStage& stage, const PictureCamera& camera, Lighting lighting, float aspect,
           float size)
        : _stage(stage), _camera(camera), _lights(StudioLights(camera)), _lighting(lighting), _aspect(aspect),
          _size(size)
    {
    }

    Rgb sample(float x, float y, float turn) const
    {
        const Ray ray = _camera.ray(x, y, _aspect);
        const PictureStage::Hit hit = _stage.trace(ray);
        if (!hit.isValid)
            return Backdrop(x, y);
        return _lighting == Lighting::Plain ? shadePlainly(hit, -ray.direction)
                                            : shade(hit, -ray.direction, turn);
    }

private:
    static Rgb shadePlainly(const PictureStage::Hit& hit, Vec3f toEye)
    {
        const float light = 0.5f + 0.45f * std::max(Dot(hit.normal, toEye), 0.0f);
        return {hit.color[0] * light, hit.color[1] * light, hit.color[2] * light};
    }

    Rgb shade(const PictureStage::Hit& hit, Vec3f toEye, float turn) const
    {
        const bool hasShadows = _lighting == Lighting::Studio;
        const float skip = 2e-4f * _size; // off the surface that the ray starts from
        const Vec3f start = hit.position + hit.faceNormal * skip;
        const float open = hasShadows ? openness(start, hit.normal, skip, turn) : 0.85f;
        Rgb light{0.20f * open, 0.205f * open, 0.22f * open};
        Rgb gloss{};
        for (std::size_t l = 0; l < _lights.size(); ++l) {
            const float slant = Dot(hit.normal, _lights[l].direction);
            const float lit = slant <= 0.0f ? 0.0f
                              : hasShadows  ? visibility(start, _lights[l].direction, skip, turn)
                                            : 1.0f;
            if (lit == 0.0f)
                continue;
            const float shine =
                0.06f *
                std::pow(std::max(Dot(hit.normal, Normalized(toEye + _lights[l].direction)), 0.0f), 28.0f);
            for (std::size_t k = 0; k < 3; ++k) {
                light[k] += _lights[l].color[k] * lit * slant * 0.46f * (0.55f + 0.45f * open);
                gloss[k] += _lights[l].color[k] * lit * shine;
            }
        }
        Rgb result;
        for (std::size_t k = 0; k < 3; ++k)
            result[k] = hit.color[k] * light[k] + gloss[k];
        return result;
    }

    /// The share of the lamp that can be seen. It is as wide as a studio's soft box, so shadows have soft
    /// rims.
    float visibility(Vec3f start, Vec3f direction, float skip, float turn) const
    {
        constexpr int rays = 5;
        constexpr float radius = 0.14f;
        const Vec3f u = Normalized(Cross(direction, {0.31f, 0.71f, 0.63f})), v = Cross(direction, u);
        int seen = 0;
        for (int i = 0; i < rays; ++i) {
            const float away = radius * std::sqrt((static_cast<float>(i) + 0.5f) / rays);
            const float angle = turn + static_cast<float>(i) * 2.39996323f; // the golden angle
            const Vec3f aim = direction + u * (away * std::cos(angle)) + v * (away * std::sin(angle));
            seen += _stage.isFree({start, Normalized(aim)}, skip, INFINITY);
        }
        return static_cast<float>(seen) / rays;
    }

    float openness(Vec3f start, Vec3f normal, float skip, float turn) const
    {
        int open = 0;
        for (int i = 0; i < occlusionRays; ++i)
            open += _stage.isFree({start, _hemisphere.direction(i, normal, turn)}, skip, 0.15f * _size);
        return static_cast<float>(open) / occlusionRays;
    }

    const PictureStage& _stage;
    const PictureCamera& _camera;
    std::array<Light, 3> _lights;
    Hemisphere _hemisphere;
    Lighting _lighting;
    float _aspect;
    float _size; ///< of the frame; what counts as near is measured in it
};

std::uint8_t ToByte(float linear)
{
    const float mapped = linear <= 0.7f ? linear : 0.7f + 0.3f * (1.0f - std::exp(-(linear - 0.7f) / 0.3f));
    const float encoded =
        mapped <= 0.0031308f ? 12.92f * mapped : 1.055f * std::pow(mapped, 1.0f / 2.4f) - 0.055f;
    return static_cast<std::uint8_t>(std::lround(255.0f * std::clamp(encoded, 0.0f, 1.0f)));
}

Box3f WholeBox(base::Span<const PictureItem> items)
{
    Box3f box;
    for (const PictureItem& item : items)
        for (const Vec3f position : item.mesh.positions)
            if (IsFinite(position))
                box.include(position);
    return box;
}

/// The upper part of a figure, as wide as the head's vertices there.
Box3f HeadBox(const PictureItem& figure)
{
    constexpr float headShare = 0.145f;
    const Box3f whole = WholeBox({&figure, 1});
    Box3f head;
    for (const Vec3f position : figure.mesh.positions)
        if (position.y >= whole.max.y - headShare * (whole.max.y - whole.min.y))
            head.include(position);
    return head;
}

Box3f FrameOf(base::Span<const PictureItem> items, const PictureOptions& options)
{
    if (options.frame)
        return *options.frame;
    Box3f box = WholeBox(items);
    if (options.view == View::Face && !items.empty() && !items[0].mesh.positions.empty())
        box = HeadBox(items[0]);
    if (box.isEmpty())
        box = {{-1, -1, -1}, {1, 1, 1}};
    return box;
}

void CheckOptions(const PictureOptions& options)
{
    CheckPictureSize(options.width, options.height);
    if (options.samplesPerAxis < 1 || options.samplesPerAxis > 16)
        throw base::Error(fmt::format("{} samples per axis are not within 1 to 16", options.samplesPerAxis));
}

void CheckColors(base::Span<const PictureItem> items)
{
    for (const PictureItem& item : items)
        if (!item.vertexColors.empty() && item.vertexColors.size() != item.mesh.vertexCount())
            throw base::Error(fmt::format("there are {} colours for {} vertices", item.vertexColors.size(),
                                          item.mesh.vertexCount()));
}

void RenderRow(const Tracer& tracer, const PictureOptions& options, int row, std::uint8_t* rgb)
{
    const int n = options.samplesPerAxis;
    const auto place = [n](int pixel, int sub, int size) {
        return 2.0f * (static_cast<float>(pixel) + (static_cast<float>(sub) + 0.5f) / static_cast<float>(n)) /
                   static_cast<float>(size) -
               1.0f;
    };
    for (int column = 0; column < options.width; ++column) {
        Rgb sum{};
        for (int s = 0; s < n * n; ++s) {
            const float turn = 2.0f * pi *
                               Scatter(static_cast<std::uint32_t>(column), static_cast<std::uint32_t>(row),
                                       static_cast<std::uint32_t>(s));
            const Rgb rgbSample =
                tracer.sample(place(column, s % n, options.width), -place(row, s / n, options.height), turn);
            for (std::size_t k = 0; k < 3; ++k)
                sum[k] += rgbSample[k];
        }
        for (std::size_t k = 0; k < 3; ++k)
            *rgb++ = ToByte(sum[k] / static_cast<float>(n * n));
    }
}

} // namespace

std::optional<View> ParseView(std::string_view text)
{
    constexpr std::pair<std::string_view, View> names[] = {{"front", View::Front},
                                                           {"side", View::Side},
                                                           {"back", View::Back},
                                                           {"three-quarter", View::ThreeQuarter},
                                                           {"face", View::Face}};
    for (const auto& [name, view] : names)
        if (name == text)
            return view;
    return std::nullopt;
}

void CheckPictureSize(int width, int height)
{
    if (width < 1 || height < 1 || width > largestPicture || height > largestPicture)
        throw base::Error(
            fmt::format("picture size {}x{} is not within 1 to {}", width, height, largestPicture));
}

Picture Render(base::Span<const PictureItem> items, const PictureOptions& options)
{
    CheckOptions(options);
    CheckColors(items);
    const Box3f frame = FrameOf(items, options);
    const float aspect = static_cast<float>(options.width) / static_cast<float>(options.height);
    const PictureCamera camera =
        options.camera ? *options.camera : CameraAround(frame, Angle(options.view), aspect);
    const PictureStage stage(items);
    const Tracer tracer(stage, camera, options.lighting, aspect, std::max(Length(frame.size()), 1e-6f));
    Picture picture{options.width, options.height, {}};
    const std::size_t rowBytes = 3 * static_cast<std::size_t>(options.width);
    picture.rgb.resize(rowBytes * static_cast<std::size_t>(options.height));
    tbb::parallel_for(0, options.height, [&](int row) {
        base::ThrowIfCancelled();
        RenderRow(tracer, options, row, picture.rgb.data() + rowBytes * static_cast<std::size_t>(row));
    });
    return picture;
}

Picture Join(base::Span<const Picture> pictures)
{
    Picture joined;
    for (const Picture& picture : pictures) {
        joined.width += picture.width;
        joined.height = std::max(joined.height, picture.height);
    }
    joined.rgb.assign(3 * static_cast<std::size_t>(joined.width) * static_cast<std::size_t>(joined.height),
                      0);
    std::size_t left = 0;
    for (const Picture& picture : pictures) {
        const std::size_t rowBytes = 3 * static_cast<std::size_t>(picture.width);
        for (std::size_t row = 0; row < static_cast<std::size_t>(picture.height); ++row)
            std::copy_n(picture.rgb.begin() + static_cast<std::ptrdiff_t>(row * rowBytes), rowBytes,
                        joined.rgb.begin() + static_cast<std::ptrdiff_t>(
                                                 3 * (row * static_cast<std::size_t>(joined.width) + left)));
        left += static_cast<std::size_t>(picture.width);
    }
    return joined;
}

} // namespace geometry
