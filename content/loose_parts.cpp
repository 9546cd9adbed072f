// What lies loose in the canonical body's openings and on its lids: eyeballs, teeth and lashes.
// SPDX-License-Identifier: MIT

#include "loose_parts.h"

#include "body_landmarks.h"
#include "body_lashes.h"

#include <algorithm>

namespace content {

using namespace landmarks;

namespace {

constexpr float pi = 3.14159265f;

using PartRings = std::vector<std::vector<Vec3f>>;

struct PartBuilder {
    geometry::Topology topology;
    std::vector<Vec3f> positions;

    void addQuad(std::uint32_t a, std::uint32_t b, std::uint32_t c, std::uint32_t d, std::uint32_t surface)
    {
        const std::uint32_t quad[4] = {a, b, c, d};
        topology.addFace({quad, 4});
        topology.faceSurfaces.push_back(surface);
    }

    /// A tube of rings that are all as long, given counter-clockwise seen from where the rings come from,
    /// closed at both ends by strips of quads.
    /// @param surfaceOf  of what lies between a ring and the next one
    template <class SurfaceOf>
    void addTube(const PartRings& rings, const SurfaceOf& surfaceOf)
    {
        const auto first = static_cast<std::uint32_t>(positions.size());
        const auto size = static_cast<std::uint32_t>(rings.front().size());
        for (const std::vector<Vec3f>& ring : rings)
            positions.insert(positions.end(), ring.begin(), ring.end());
        const auto count = static_cast<std::uint32_t>(rings.size());
        const auto vertex = [&](std::uint32_t ring, std::uint32_t i) {
            return first + ring * size + i % size;
        };
        for (std::uint32_t ring = 0; ring + 1 < count; ++ring)
            for (std::uint32_t i = 0; i < size; ++i)
                addQuad(vertex(ring, i), vertex(ring, i + 1), vertex(ring + 1, i + 1), vertex(ring + 1, i),
                        surfaceOf(ring));
        for (std::uint32_t i = 0; i + 1 < size / 2; ++i) {
            addQuad(vertex(0, i + 1), vertex(0, i), vertex(0, size - 1 - i), vertex(0, size - 2 - i),
                    surfaceOf(0));
            addQuad(vertex(count - 1, i), vertex(count - 1, i + 1), vertex(count - 1, size - 2 - i),
                    vertex(count - 1, size - 1 - i), surfaceOf(count - 1));
        }
    }
};

enum Surface : std::uint32_t { Skin, Sclera, Irises, Pupils, Teeth, Eyelashes };

/// On both sides, a tube given for the left one.
template <class SurfaceOf>
void AddPair(PartRings left, const SurfaceOf& surfaceOf, PartBuilder& builder)
{
    builder.addTube(left, surfaceOf);
    for (std::vector<Vec3f>& ring : left) {
        std::reverse(ring.begin(), ring.end());
        for (Vec3f& place : ring)
            place = Mirrored(place);
    }
    builder.addTube(left, surfaceOf);
}

/// A ball's outline from the back to the pupil's bottom: distance from the line of sight, and along it.
struct OutlinePoint {
    float out, along;
};

constexpr std::uint32_t irisRing = 9, pupilRing = 13; ///< the first of the iris, and of the pupil

const std::vector<OutlinePoint>& BallOutline()
{
    static const std::vector<OutlinePoint> outline = [] {
        std::vector<OutlinePoint> points;
        for (const float degrees : {165.0f, 145.0f, 122.0f, 100.0f, 80.0f, 62.0f, 47.0f, 36.0f, 30.0f})
            points.push_back(
                {eyeRadius * std::sin(degrees * pi / 180.0f), eyeRadius * std::cos(degrees * pi / 180.0f)});
        // The iris lies in a dish behind a sharp rim; the pupil is deep, so that it is dark.
        for (const OutlinePoint point : {OutlinePoint{0.575f, 1.03f},
                                         {0.545f, 0.98f},
                                         {0.4f, 0.97f},
                                         {0.27f, 0.955f},
                                         {0.235f, 0.92f},
                                         {0.22f, 0.6f},
                                         {0.12f, 0.35f}})
            points.push_back(point);
        return points;
    }();
    return outline;
}

void AddBalls(int around, PartBuilder& builder)
{
    PartRings left;
    for (const OutlinePoint& point : BallOutline()) {
        std::vector<Vec3f> ring;
        for (int i = 0; i < around; ++i) {
            const float angle = 2.0f * pi * static_cast<float>(i) / static_cast<float>(around);
            ring.push_back(eye +
                           Vec3f{point.out * std::cos(angle), point.out * std::sin(angle), point.along});
        }
        left.push_back(std::move(ring));
    }
    AddPair(
        std::move(left),
        [](std::uint32_t ring) { return ring < irisRing    ? Sclera
                                        : ring < pupilRing ? Irises
                                                           : Pupils; },
        builder);
}

void AddLash(bool isUpper, float root, float length, const LooseDetail& detail, PartBuilder& builder)
{
    constexpr float within = -0.12f; // the lid
    const auto axis = [&](float share) {
        return FromLash({isUpper, root, within + (length - within) * share});
    };
    PartRings rings;
    for (int r = 0; r <= detail.alongLash; ++r) {
        const float share = static_cast<float>(r) / static_cast<float>(detail.alongLash);
        const float radius = (isUpper ? 0.026f : 0.02f) * (1.0f - 0.75f * share);
        const Vec3f along = Normalized(axis(share + 0.05f) - axis(share - 0.05f));
        const Vec3f up = Normalized(Cross(along, Vec3f{1.0f, 0.0f, 0.0f})), side = Cross(up, along);
        std::vector<Vec3f> ring;
        for (int i = 0; i < detail.aroundLash; ++i) {
            const float angle =
                2.0f * pi * (static_cast<float>(i) + 0.5f) / static_cast<float>(detail.aroundLash);
            ring.push_back(axis(share) + (side * std::cos(angle) + up * std::sin(angle)) * radius);
        }
        rings.push_back(std::move(ring));
    }
    AddPair(
        std::move(rings), [](std::uint32_t) { return Eyelashes; }, builder);
}

/// @param from, to  roots of the first and the last one, x
void AddLashes(bool isUpper, float from, float to, int count, const LooseDetail& detail, PartBuilder& builder)
{
    for (int i = 0; i < count; ++i) {
        const float share = static_cast<float>(i) / static_cast<float>(count - 1);
        // Longest towards the outer corner; every third one is shorter.
        const float row = 0.5f + 0.5f * SmoothStep(0.0f, 0.7f, share) - 0.2f * SmoothStep(0.8f, 1.0f, share);
        AddLash(isUpper, from + (to - from) * share, row * (i % 3 == 1 ? 0.85f : 1.0f), detail, builder);
    }
}

/// A row of teeth: gums and crowns in one, a tube along the jaw's arch.
struct Row {
    float gum, edge; ///< heights
    float front;     ///< of the arch, z
};

void AddRow(const Row& row, const LooseDetail& detail, PartBuilder& builder)
{
    constexpr int teeth = 10;
    const int steps = teeth * detail.acrossTooth;
    const float middle = 0.5f * (row.gum + row.edge), half = 0.5f * (row.edge - row.gum);
    PartRings rings(steps + 1);
    for (int s = steps / 2; s <= steps; ++s) {
        const float tooth = static_cast<float>(s) / static_cast<float>(detail.acrossTooth);
        const float t = (tooth - 0.5f * teeth) / (0.5f * teeth); // -1 right to 1 left
        const float angle = 1.15f * t;
        // Narrower between the crowns.
        const float crown = std::sqrt(std::abs(std::sin(pi * tooth)));
        const Vec3f center{1.85f * std::sin(angle), middle,
                           row.front - 2.3f * (1.0f - std::cos(angle)) - 0.25f};
        const Vec3f out = Normalized(Vec3f{std::sin(angle) / 1.85f, 0.0f, std::cos(angle) / 2.3f});
        std::vector<Vec3f> ring;
        for (int i = 0; i < detail.aroundTooth; ++i) {
            const float around =
                2.0f * pi * (static_cast<float>(i) + 0.5f) / static_cast<float>(detail.aroundTooth);
            const float up = std::sin(around), side = std::cos(around);
            // `up` of 1 is the biting edge, which is thin.
            const float reach = half * up * (up > 0.0f ? 0.8f + 0.2f * crown : 1.0f);
            const float thick = (0.22f - 0.08f * std::max(up, 0.0f)) * (0.7f + 0.3f * crown);
            ring.push_back(center + Vec3f{0.0f, reach, 0.0f} + out * (thick * side));
        }
        if (half > 0.0f)
            std::reverse(ring.begin(), ring.end());
        for (const Vec3f place : ring)
            rings[steps - s].push_back(Mirrored(place));
        rings[s] = std::move(ring);
    }
    builder.addTube(rings, [](std::uint32_t) { return Teeth; });
}

} // namespace

geometry::PolygonMesh MakeLooseParts(const LooseDetail& detail)
{
    PartBuilder builder;
    builder.topology.surfaceNames = {"Skin", "Sclera", "Irises", "Pupils", "Teeth", "Eyelashes"};
    AddBalls(detail.aroundEye, builder);
    AddRow({152.7f, 151.55f, 7.78f}, detail, builder);
    AddRow({150.7f, 151.46f, 7.62f}, detail, builder);
    AddLashes(true, 2.0f, 4.35f, 26, detail, builder);
    AddLashes(false, 2.8f, 4.25f, 12, detail, builder);
    builder.topology.vertexCount = static_cast<std::uint32_t>(builder.positions.size());
    geometry::PolygonMesh mesh;
    mesh.topology = std::make_shared<geometry::Topology>(std::move(builder.topology));
    mesh.positions = std::move(builder.positions);
    return mesh;
}

geometry::PolygonMesh Together(const geometry::PolygonMesh& body, const geometry::PolygonMesh& loose)
{
    auto topology = std::make_shared<geometry::Topology>(*body.topology);
    topology->surfaceNames = loose.topology->surfaceNames;
    topology->faceSurfaces.assign(topology->faceCount(), Skin);
    for (std::size_t f = 0; f < loose.faceCount(); ++f) {
        const base::Span<const std::uint32_t> face = loose.topology->face(f);
        std::uint32_t quad[4];
        for (int c = 0; c < 4; ++c)
            quad[c] = topology->vertexCount + face[c];
        topology->addFace({quad, 4});
        topology->faceSurfaces.push_back(loose.topology->faceSurfaces[f]);
    }
    topology->vertexCount += static_cast<std::uint32_t>(loose.vertexCount());
    geometry::PolygonMesh mesh;
    mesh.positions = body.positions;
    mesh.positions.insert(mesh.positions.end(), loose.positions.begin(), loose.positions.end());
    mesh.topology = std::move(topology);
    return mesh;
}

} // namespace content
