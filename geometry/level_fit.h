// The coarse shape whose refinement comes closest to a fine one.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/vec3.h"
#include "refinement.h"

#include <memory>
#include <vector>

namespace geometry {

/// One level's refinement to the next, there and back.
class FitStep {
public:
    /// @param rows  that make the finer level; must outlive this
    explicit FitStep(const SparseRows& rows);

    const SparseRows& refining() const { return _rows; }
    const SparseRows& gathering() const { return _transposed; }

private:
    const SparseRows& _rows;
    SparseRows _transposed;
};

/// About the inverse of the normal matrix of one step, by a fixed number of Chebyshev iterations scaled by
/// the diagonal (Saad, "Iterative methods for sparse linear systems", 2003, algorithm 12.1): symmetric and
/// positive definite, as conjugate gradients want it, and without a factor, which would cost more than all
/// the rest.
class StepInverse {
public:
    /// @param step        must outlive this
    /// @param iterations  1 or more; 1 is the diagonal alone
    StepInverse(const FitStep& step, int iterations);

    /// @param from  one per coarse vertex
    void apply(const std::vector<Vec3f>& from, std::vector<Vec3f>& to);

private:
    void subtractImage(); ///< of the way from the rest

    const FitStep& _step;
    int _iterations;
    std::vector<float> _inverseDiagonal;
    float _largest = 1.0f; ///< no eigenvalue of the scaled matrix is above
    std::vector<Vec3f> _rest, _way, _image, _fine;
};

/// The normal equations of "the refined shape comes closest to the fine one", for a correction of the start.
/// The correction is held back very gently, which decides what the fine shape leaves open, such as vertices
/// that no face uses.
class LevelFit {
public:
    /// @param steps  coarse to fine, at least one
    explicit LevelFit(std::vector<std::shared_ptr<const FitStep>> steps);

    /// Conjugate gradients. The normal matrix of several steps is near a multiple of the first one's alone,
    /// as to what it does to waves of any length, so the inverse of that leaves few iterations to do.
    /// @param misfit    one per fine vertex
    /// @param accuracy  of the residual, at which to stop
    /// @return          one per coarse vertex
    std::vector<Vec3f> solve(std::vector<Vec3f> misfit, double accuracy);

private:
    using Values = std::vector<Vec3f>;

    void gather(Values& coarse);
    void applyMatrix(const Values& direction, Values& image);

    std::vector<std::shared_ptr<const FitStep>> _steps;
    StepInverse _inverse;
    std::vector<Values> _values; ///< of each step's finer level
};

} // namespace geometry
