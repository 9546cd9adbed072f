// The sampled body: a grid of signs over an enlarged space.
// SPDX-License-Identifier: MIT

#pragma once

#include "body_mesher.h"

#include <array>
#include <cstdint>
#include <vector>

namespace content {

/// Maps sampling space to the body's space.
class SamplingSpace {
public:
    explicit SamplingSpace(const MeshRecipe& recipe);
    Vec3f toBody(Vec3f q) const;

private:
    struct Ball {
        Vec3f center, sampleCenter;
        float inverseFactor, innerRadius, outerRadius;
    };
    static Vec3f shrink(const std::vector<Ball>& balls, Vec3f q);
    void place(Ball& ball) const;
    void addLevel(const std::vector<Enlargement>& enlargements);

    std::vector<std::vector<Ball>> _levels;
    float _cosine, _sine;
};

/// Signed distances at the corners of a regular grid; negative inside.
struct SampledBody {
    std::array<int, 3> size{}; ///< corners along each axis
    std::vector<Vec3f>
        places; ///< in the body's space, one per corner; nothing where that is far from the surface
    std::vector<float> values;

    std::size_t index(int x, int y, int z) const
    {
        return (static_cast<std::size_t>(z) * size[1] + y) * size[0] + x;
    }
};

/// Samples the body, keeps its largest piece and takes out single corners until no face and no cell is
/// ambiguous, so that its surface nets are manifold.
SampledBody SampleBody(const MeshRecipe& recipe);

} // namespace content
