// Tracing shaded pictures: camera, studio lights, ambient occlusion, supersampling.
// SPDX-License-Identifier: MIT

#include "geometry/picture.h"

#include "geometry/embree_device.h"
#include "geometry/errors.h"
#include "geometry/normals.h"

#include <tbb/parallel_for.h>

#include <algorithm>
#include <cmath>
#include <memory>

namespace geometry {

namespace {

constexpr float pi = 3.14159265f;
constexpr int largestSide = 16384;

struct SceneReleaser {
    void operator()(RTCScene scene) const { rtcReleaseScene(scene); }
};

/// The items' triangles in one Embree scene, and their smooth normals.
class Stage {
public:
    explicit Stage(Span<const PictureItem> items) : _items(items), _scene(rtcNewScene(EmbreeDevice()))
    {
        rtcSetSceneFlags(_scene.get(), RTC_SCENE_FLAG_ROBUST);
        for (std::size_t i = 0; i < items.size(); ++i)
            add(items[i], static_cast<unsigned>(i));
        rtcCommitScene(_scene.get());
    }

    struct Hit {
        Vec3f position, normal;
        Vec3f faceNormal; ///< of the flat triangle; both turned to the viewer's side of the face
        std::array<float, 3> color{};
        bool isValid = false;
    };

    Hit trace(Vec3f origin, Vec3f direction) const
    {
        RTCRayHit ray{};
        ray.ray = makeRay(origin, direction, 0.0f, INFINITY);
        ray.hit.geomID = RTC_INVALID_GEOMETRY_ID;
        RTCIntersectContext context;
        rtcInitIntersectContext(&context);
        rtcIntersect1(_scene.get(), &context, &ray);
        if (ray.hit.geomID == RTC_INVALID_GEOMETRY_ID)
            return {};
        Hit hit;
        hit.isValid = true;
        hit.position = origin + direction * ray.ray.tfar;
        hit.color = _items[ray.hit.geomID].color;
        hit.faceNormal = Normalized({ray.hit.Ng_x, ray.hit.Ng_y, ray.hit.Ng_z});
        if (Dot(hit.faceNormal, direction) > 0.0f)
            hit.faceNormal = -hit.faceNormal;
        hit.normal = shadingNormal(ray.hit, hit.faceNormal);
        return hit;
    }

    bool isFree(Vec3f origin, Vec3f direction, float from, float to) const
    {
        RTCRay ray = makeRay(origin, direction, from, to);
        RTCIntersectContext context;
        rtcInitIntersectContext(&context);
        rtcOccluded1(_scene.get(), &context, &ray);
        return ray.tfar >= 0.0f;
    }

private:
    static RTCRay makeRay(Vec3f origin, Vec3f direction, float from, float to)
    {
        RTCRay ray{};
        ray.org_x = origin.x, ray.org_y = origin.y, ray.org_z = origin.z;
        ray.dir_x = direction.x, ray.dir_y = direction.y, ray.dir_z = direction.z;
        ray.tnear = from, ray.tfar = to;
        ray.mask = ~0u;
        return ray;
    }

    void add(const PictureItem& item, unsigned id)
    {
        _triangles.push_back(Triangulate(*item.mesh.topology));
        _normals.push_back(VertexNormals(item.mesh));
        const std::vector<std::uint32_t>& corners = _triangles.back().corners;
        if (corners.empty())
            return;
        RTCGeometry geometry = rtcNewGeometry(EmbreeDevice(), RTC_GEOMETRY_TYPE_TRIANGLE);
        void* vertices = rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_VERTEX, 0, RTC_FORMAT_FLOAT3,
                                                 sizeof(Vec3f), item.mesh.vertexCount());
        std::copy(item.mesh.positions.begin(), item.mesh.positions.end(), static_cast<Vec3f*>(vertices));
        void* indices = rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_INDEX, 0, RTC_FORMAT_UINT3,
                                                3 * sizeof(std::uint32_t), corners.size() / 3);
        std::copy(corners.begin(), corners.end(), static_cast<std::uint32_t*>(indices));
        rtcCommitGeometry(geometry);
        rtcAttachGeometryByID(_scene.get(), geometry, id);
        rtcReleaseGeometry(geometry);
    }

    /// Interpolated over the triangle, on the side of the face's normal.
    Vec3f shadingNormal(const RTCHit& hit, Vec3f faceNormal) const
    {
        const std::uint32_t* corner = _triangles[hit.geomID].corners.data() + 3 * std::size_t{hit.primID};
        const std::vector<Vec3f>& normals = _normals[hit.geomID];
        const Vec3f normal = Normalized(normals[corner[0]] * (1.0f - hit.u - hit.v) +
                                        normals[corner[1]] * hit.u + normals[corner[2]] * hit.v);
        if (normal == Vec3f{})
            return faceNormal;
        return Dot(normal, faceNormal) < 0.0f ? -normal : normal;
    }

    Span<const PictureItem> _items;
    std::unique_ptr<RTCSceneTy, SceneReleaser> _scene;
    std::vector<Triangles> _triangles;
    std::vector<std::vector<Vec3f>> _normals;
};

/// Perspective through a long lens, the frame's eight corners inside the picture.
class Camera {
public:
    Camera(const Box3f& frame, View view, float aspect) : _aspect(aspect)
    {
        const float turn = Angle(view);
        _forward = {-std::sin(turn), 0.0f, -std::cos(turn)};
        _right = {std::cos(turn), 0.0f, -std::sin(turn)};
        const Vec3f center = frame.center();
        const float slope = std::tan(fieldOfView * 0.5f), margin = 0.94f;
        float distance = 0.0f;
        for (int corner = 0; corner < 8; ++corner) {
            const Vec3f p =
                Vec3f{corner & 1 ? frame.max.x : frame.min.x, corner & 2 ? frame.max.y : frame.min.y,
                      corner & 4 ? frame.max.z : frame.min.z} -
                center;
            const float across = std::max(std::abs(Dot(p, _right)) / aspect, std::abs(p.y));
            distance = std::max(distance, across / (slope * margin) - Dot(p, _forward));
        }
        _slope = slope;
        _eye = center - _forward * std::max(distance, 1e-3f);
    }

    Vec3f eye() const { return _eye; }
    Vec3f right() const { return _right; }
    Vec3f forward() const { return _forward; }

    /// @param x, y  -1 to 1, right and up
    Vec3f direction(float x, float y) const
    {
        return Normalized(_forward + _right * (x * _slope * _aspect) + Vec3f{0.0f, y * _slope, 0.0f});
    }

private:
    static constexpr float fieldOfView = 18.0f * pi / 180.0f; ///< from top to bottom

    static float Angle(View view)
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

    Vec3f _eye, _forward, _right;
    float _aspect, _slope = 0.0f;
};

struct Light {
    Vec3f direction; ///< towards the light, unit
    std::array<float, 3> color;
};

/// Fixed to the camera, so that every view is lit alike.
std::array<Light, 3> StudioLights(const Camera& camera)
{
    const Vec3f right = camera.right(), up{0.0f, 1.0f, 0.0f}, back = -camera.forward();
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
    Tracer(const Stage& stage, const Camera& camera, float size)
        : _stage(stage), _camera(camera), _lights(StudioLights(camera)), _size(size)
    {
    }

    Rgb sample(float x, float y, float turn) const
    {
        const Stage::Hit hit = _stage.trace(_camera.eye(), _camera.direction(x, y));
        return hit.isValid ? shade(hit, turn) : Backdrop(x, y);
    }

private:
    Rgb shade(const Stage::Hit& hit, float turn) const
    {
        const float skip = 2e-4f * _size; // off the surface that the ray starts from
        const Vec3f start = hit.position + hit.faceNormal * skip;
        const float open = openness(start, hit.normal, skip, turn);
        const Vec3f toEye = Normalized(_camera.eye() - hit.position);
        Rgb light{0.20f * open, 0.205f * open, 0.22f * open};
        Rgb gloss{};
        for (std::size_t l = 0; l < _lights.size(); ++l) {
            const float slant = Dot(hit.normal, _lights[l].direction);
            const float lit = slant > 0.0f ? visibility(start, _lights[l].direction, skip, turn) : 0.0f;
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
            seen += _stage.isFree(start, Normalized(aim), skip, INFINITY);
        }
        return static_cast<float>(seen) / rays;
    }

    float openness(Vec3f start, Vec3f normal, float skip, float turn) const
    {
        int open = 0;
        for (int i = 0; i < occlusionRays; ++i)
            open += _stage.isFree(start, _hemisphere.direction(i, normal, turn), skip, 0.15f * _size);
        return static_cast<float>(open) / occlusionRays;
    }

    const Stage& _stage;
    const Camera& _camera;
    std::array<Light, 3> _lights;
    Hemisphere _hemisphere;
    float _size; ///< of the frame; what counts as near is measured in it
};

std::uint8_t ToByte(float linear)
{
    const float mapped = linear <= 0.7f ? linear : 0.7f + 0.3f * (1.0f - std::exp(-(linear - 0.7f) / 0.3f));
    const float encoded =
        mapped <= 0.0031308f ? 12.92f * mapped : 1.055f * std::pow(mapped, 1.0f / 2.4f) - 0.055f;
    return static_cast<std::uint8_t>(std::lround(255.0f * std::clamp(encoded, 0.0f, 1.0f)));
}

Box3f WholeBox(Span<const PictureItem> items)
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

Box3f FrameOf(Span<const PictureItem> items, const PictureOptions& options)
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
    if (options.width < 1 || options.height < 1 || options.width > largestSide ||
        options.height > largestSide)
        throw Error(fmt::format("picture size {}x{} is not within 1 to {}", options.width, options.height,
                                largestSide));
    if (options.samplesPerAxis < 1 || options.samplesPerAxis > 16)
        throw Error(fmt::format("{} samples per axis are not within 1 to 16", options.samplesPerAxis));
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

Picture Render(Span<const PictureItem> items, const PictureOptions& options)
{
    CheckOptions(options);
    const Box3f frame = FrameOf(items, options);
    const Stage stage(items);
    const Camera camera(frame, options.view,
                        static_cast<float>(options.width) / static_cast<float>(options.height));
    const Tracer tracer(stage, camera, std::max(Length(frame.size()), 1e-6f));
    Picture picture{options.width, options.height, {}};
    const std::size_t rowBytes = 3 * static_cast<std::size_t>(options.width);
    picture.rgb.resize(rowBytes * static_cast<std::size_t>(options.height));
    tbb::parallel_for(0, options.height, [&](int row) {
        RenderRow(tracer, options, row, picture.rgb.data() + rowBytes * static_cast<std::size_t>(row));
    });
    return picture;
}

Picture Join(Span<const Picture> pictures)
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
