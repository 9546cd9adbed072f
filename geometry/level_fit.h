// The coarse shape whose refinement comes closest to a fine one.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/vec3.h"
#include "refinement.h"

#include <memory>
#include <mutex>

namespace geometry {

/// One level's refinement to the next, there and back.
class FitStep {
public:
    /// @param rows  that make the finer level; must outlive this
    explicit FitStep(const SparseRows& rows);
    ~FitStep();

    const SparseRows& refining() const { return _rows; }
    const SparseRows& gathering() const { return _transposed; }

    /// What multiplies with the inverse of this step's own normal matrix; null where the factor would be too
    /// large.
    class Inverse;
    const Inverse* inverse() const;

private:
    const SparseRows& _rows;
    SparseRows _transposed;
    mutable std::once_flag _isFactorised;
    mutable std::unique_ptr<const Inverse> _inverse;
};

/// The normal equations of "the refined shape comes closest to the fine one", for a correction of the start.
/// The correction is held back very gently, which decides what the fine shape leaves open, such as vertices
/// that no face uses.
class LevelFit {
public:
    /// @param steps  coarse to fine, at least one
    explicit LevelFit(std::vector<std::shared_ptr<const FitStep>> steps);

    /// Conjugate gradients. The normal matrix of several steps is near a multiple of the first one's alone,
    /// as to what it does to waves of any length, so the inverse of that, where there is one, leaves few
    /// iterations to do.
    /// @param misfit    one per fine vertex
    /// @param accuracy  of the residual, at which to stop
    /// @return          one per coarse vertex
    std::vector<Vec3f> solve(std::vector<Vec3f> misfit, double accuracy);

private:
    using Values = std::vector<Vec3f>;

    void gather(Values& coarse);
    void applyMatrix(const Values& direction, Values& image);
    void precondition(const Values& residual, Values& scaled) const;

    std::vector<std::shared_ptr<const FitStep>> _steps;
    std::vector<Values> _values; ///< of each step's finer level
};

} // namespace geometry
