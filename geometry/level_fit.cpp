// The coarse shape whose refinement comes closest to a fine one.
// SPDX-License-Identifier: MIT

#include "level_fit.h"

#include "for_each_index.h"
#include "geometry/errors.h"

#include <Eigen/SparseCholesky>
#include <tbb/parallel_reduce.h>

#include <cassert>

namespace geometry {

namespace {

constexpr double restraint = 1e-6; ///< beside diagonal entries of about one and more
constexpr int maxSteps = 200;
/// Beyond this many unknowns the factor costs more time than it saves, and memory besides.
constexpr std::size_t mostFactorised = 60000;

using Values = std::vector<Vec3f>;

/// Partial sums over fixed pieces are added in order, so that the result is the same on every run.
double DotProduct(const Values& a, const Values& b)
{
    return tbb::parallel_deterministic_reduce(
        tbb::blocked_range<std::size_t>(0, a.size(), 4096), 0.0,
        [&](const auto& range, double sum) {
            for (std::size_t v = range.begin(); v != range.end(); ++v)
                sum += double(Dot(a[v], b[v]));
            return sum;
        },
        std::plus<>());
}

/// The rows' products among each other, by source: what they make of each other's weights.
Eigen::SparseMatrix<float> NormalMatrix(const SparseRows& rows, const SparseRows& transposed)
{
    const auto count = static_cast<Eigen::Index>(transposed.size());
    Eigen::SparseMatrix<float> matrix(count, count);
    std::vector<double> sums(transposed.size(), 0.0);
    std::vector<std::uint32_t> met;
    for (std::size_t column = 0; column < transposed.size(); ++column) {
        if (column % 4096 == 0)
            base::ThrowIfCancelled();
        met.assign(1, static_cast<std::uint32_t>(column));
        sums[column] = restraint;
        transposed.forEachEntry(column, [&](std::uint32_t row, float weight) {
            rows.forEachEntry(row, [&](std::uint32_t source, float other) {
                if (sums[source] == 0.0)
                    met.push_back(source);
                sums[source] += double(weight) * double(other);
            });
        });
        std::sort(met.begin(), met.end());
        met.erase(std::unique(met.begin(), met.end()), met.end());
        matrix.startVec(static_cast<Eigen::Index>(column));
        for (const std::uint32_t source : met) {
            if (source >= column) // the solver looks at the lower half only
                matrix.insertBack(static_cast<Eigen::Index>(source), static_cast<Eigen::Index>(column)) =
                    static_cast<float>(sums[source]);
            sums[source] = 0.0;
        }
    }
    matrix.finalize();
    return matrix;
}

} // namespace

class FitStep::Inverse {
public:
    Inverse(const SparseRows& rows, const SparseRows& transposed) : _solver(NormalMatrix(rows, transposed))
    {
        if (_solver.info() != Eigen::Success)
            throw TopologyError("the fit of {} vertices has no solution", transposed.size());
    }

    void apply(const Values& from, Values& to) const
    {
        tbb::parallel_for(0, 3, [&](int axis) {
            Eigen::VectorXf column(static_cast<Eigen::Index>(from.size()));
            for (std::size_t v = 0; v < from.size(); ++v)
                column[static_cast<Eigen::Index>(v)] = from[v][axis];
            column = _solver.solve(column).eval();
            for (std::size_t v = 0; v < from.size(); ++v)
                to[v][axis] = column[static_cast<Eigen::Index>(v)];
        });
    }

private:
    // Half the memory of doubles; conjugate gradients make up for what is lost.
    Eigen::SimplicialLDLT<Eigen::SparseMatrix<float>> _solver;
};

FitStep::FitStep(const SparseRows& rows) : _rows(rows), _transposed(rows.transposed()) {}
FitStep::~FitStep() = default;

const FitStep::Inverse* FitStep::inverse() const
{
    if (_transposed.size() > mostFactorised)
        return nullptr;
    std::call_once(_isFactorised, [&] { _inverse = std::make_unique<const Inverse>(_rows, _transposed); });
    return _inverse.get();
}

LevelFit::LevelFit(std::vector<std::shared_ptr<const FitStep>> steps) : _steps(std::move(steps))
{
    assert(!_steps.empty());
    for (const std::shared_ptr<const FitStep>& step : _steps)
        _values.emplace_back(step->refining().size());
}

/// From the finest of the values, which are used up on the way.
void LevelFit::gather(Values& coarse)
{
    for (std::size_t s = _steps.size(); s-- > 0;)
        _steps[s]->gathering().apply(base::Span<const Vec3f>(_values[s]),
                                     base::Span<Vec3f>(s == 0 ? coarse : _values[s - 1]));
}

void LevelFit::applyMatrix(const Values& direction, Values& image)
{
    for (std::size_t s = 0; s < _steps.size(); ++s)
        _steps[s]->refining().apply(base::Span<const Vec3f>(s == 0 ? direction : _values[s - 1]),
                                    base::Span<Vec3f>(_values[s]));
    gather(image);
    ForEachIndex(image.size(), 4096, [&](std::size_t v) { image[v] += direction[v] * float(restraint); });
}

void LevelFit::precondition(const Values& residual, Values& scaled) const
{
    if (const FitStep::Inverse* const inverse = _steps.front()->inverse())
        inverse->apply(residual, scaled);
    else
        scaled = residual;
}

std::vector<Vec3f> LevelFit::solve(std::vector<Vec3f> misfit, double accuracy)
{
    const std::size_t count = _steps.front()->gathering().size();
    _values.back() = std::move(misfit);
    Values residual(count), solution(count), scaled(count), image(count);
    gather(residual);
    const double enough = DotProduct(residual, residual) * accuracy * accuracy;
    precondition(residual, scaled);
    Values direction = scaled;
    double error = DotProduct(residual, scaled);
    for (int step = 0; step < maxSteps && DotProduct(residual, residual) > enough; ++step) {
        applyMatrix(direction, image);
        const auto length = static_cast<float>(error / DotProduct(direction, image));
        ForEachIndex(count, 4096, [&](std::size_t v) {
            solution[v] += direction[v] * length;
            residual[v] -= image[v] * length;
        });
        precondition(residual, scaled);
        const double next = DotProduct(residual, scaled);
        const auto turn = static_cast<float>(next / error);
        ForEachIndex(count, 4096, [&](std::size_t v) { direction[v] = scaled[v] + direction[v] * turn; });
        error = next;
    }
    return solution;
}

} // namespace geometry
