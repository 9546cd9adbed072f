// What the samples of a row of pixels show.
// SPDX-License-Identifier: MIT

#pragma once

#include "picture_light.h"
#include "picture_tone.h"
#include "rasterizer.h"

#include <cmath>
#include <vector>

namespace geometry {

/// What is drawn, and how.
struct PictureView {
    const PictureStage& stage;
    PictureCamera camera;
    StudioLight light;
    Lighting lighting;
    int width, height; ///< pixels
    int samplesPerAxis;
    float size; ///< cm of the frame; what counts as near is measured in it

    /// How far off a surface its rays begin, in cm: what it is made of does not stand in their way.
    float rayOffset() const { return 2e-4f * size; }
    SampleGrid samples() const { return {width * samplesPerAxis, height * samplesPerAxis}; }
};

/// Whether what two pixels show is one surface, which the same light reaches.
class SurfaceLikeness {
public:
    explicit SurfaceLikeness(const PictureView& view);

    /// How far (cm) a place may lie beside the plane through another of its surface.
    float slackAt(Vec3f position) const { return _atEye + _perCm * Dot(position - _eye, _forward); }
    template <class A, class B>
    static bool areOne(const A& a, const B& b, float slack)
    {
        constexpr float leastCosine = 0.9f;
        const Vec3f between = b.position - a.position;
        return Dot(a.normal, b.normal) > leastCosine && std::abs(Dot(a.normal, between)) < slack &&
               std::abs(Dot(b.normal, between)) < slack;
    }

private:
    Vec3f _eye, _forward;
    float _atEye, _perCm; ///< the width of a pixel, and what it gains with the distance
};

/// What rays found: sums over the shares that were sent.
struct RaySums {
    float shares = 0.0f, open = 0.0f;                 ///< to all around
    std::array<float, lampCount> lampShares{}, lit{}; ///< to each lamp that the surface faces

    void add(const RaySums& other, float weight)
    {
        shares += weight * other.shares, open += weight * other.open;
        for (std::size_t l = 0; l < lampCount; ++l) {
            lampShares[l] += weight * other.lampShares[l];
            lit[l] += weight * other.lit[l];
        }
    }
};

/// One surface in one pixel; next to an edge a pixel has several.
struct PixelSurface {
    Vec3f position;                                 ///< cm, of one of its samples
    Vec3f normal;                                   ///< unit
    std::uint32_t firstSample = 0, sampleCount = 0; ///< of the row's
    RaySums own;                                    ///< of the pixel's own share
};

/// Where rays of a surface may begin.
struct SurfaceSample {
    Vec3f place, normal;
};

struct PixelRow {
    int number = 0;          ///< in the picture
    std::vector<Rgb> colors; ///< one a pixel: the sum over those of its samples that no shadow reaches
    std::vector<std::uint32_t> firsts; ///< the first surface of each pixel, and how many there are
    std::vector<PixelSurface> surfaces;
    std::vector<Response> responses;    ///< one a surface: the sum over its samples
    std::vector<SurfaceSample> samples; ///< surface by surface
};

class RowGatherer {
public:
    /// @param view  must outlive it
    explicit RowGatherer(const PictureView& view);

    /// @param row    of pixels
    /// @param faces  of its rows of samples
    PixelRow gather(int row, const std::uint32_t* faces) const;

private:
    struct PixelSamples;
    void gatherPixel(int column, int row, const std::uint32_t* faces, PixelSamples& samples,
                     PixelRow& result) const;
    void addSample(const PictureStage::Hit& hit, Vec3f toEye, PixelSamples& samples, PixelRow& result) const;
    void sortSamples(int column, int row, const PixelSamples& samples, PixelRow& result) const;

    const PictureView& _view;
    SampleGrid _grid;
    SurfaceLikeness _likeness;
    Backdrop _backdrop;
};

} // namespace geometry
