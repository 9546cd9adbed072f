// The coarse shape whose refinement comes closest to a fine one.
// SPDX-License-Identifier: MIT

#include "level_fit.h"

#include "for_each_index.h"

#include <tbb/parallel_reduce.h>

#include <algorithm>

namespace geometry {

namespace {

constexpr double restraint = 1e-6; ///< beside diagonal entries of about one and more
constexpr int maxSteps = 200;
/// Least of the eigenvalues of a step's scaled normal matrix beside the largest: where vertices take turns to
/// lie up and down, which four faces at each do not refine to much.
constexpr float leastShare = 1.0f / 64.0f;
/// Each costs as much as the step there and back, which is little beside the finer steps.
constexpr int inverseIterations = 8;

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

} // namespace

FitStep::FitStep(const SparseRows& rows) : _rows(rows), _transposed(rows.transposed()) {}

StepInverse::StepInverse(const FitStep& step, int iterations)
    : _step(step), _iterations(iterations), _inverseDiagonal(step.gathering().size())
{
    // The weights of a row add up to 1, so the sum of a source's weights is that of its row in the matrix.
    for (std::size_t s = 0; s < _inverseDiagonal.size(); ++s) {
        double sum = restraint, diagonal = restraint;
        step.gathering().forEachEntry(s, [&](std::uint32_t, float weight) {
            sum += double(weight);
            diagonal += double(weight) * double(weight);
        });
        _inverseDiagonal[s] = static_cast<float>(1.0 / diagonal);
        _largest = std::max(_largest, static_cast<float>(sum / diagonal));
    }
    for (Values* const values : {&_way, &_image})
        values->resize(_inverseDiagonal.size());
    _fine.resize(step.refining().size());
}

void StepInverse::subtractImage()
{
    _step.refining().apply(base::Span<const Vec3f>(_way), base::Span<Vec3f>(_fine));
    _step.gathering().apply(base::Span<const Vec3f>(_fine), base::Span<Vec3f>(_image));
    ForEachIndex(_rest.size(), 4096,
                 [&](std::size_t v) { _rest[v] -= _image[v] + _way[v] * float(restraint); });
}

void StepInverse::apply(const Values& from, Values& to)
{
    const float center = _largest * (1.0f + leastShare) / 2.0f, reach = _largest * (1.0f - leastShare) / 2.0f;
    const float first = reach / center;
    _rest = from;
    ForEachIndex(from.size(), 4096, [&](std::size_t v) {
        _way[v] = from[v] * (_inverseDiagonal[v] / center);
        to[v] = _way[v];
    });
    float share = first;
    for (int i = 1; i < _iterations; ++i) {
        subtractImage();
        const float next = 1.0f / (2.0f / first - share);
        ForEachIndex(from.size(), 4096, [&](std::size_t v) {
            _way[v] = _way[v] * (next * share) + _rest[v] * (_inverseDiagonal[v] * 2.0f * next / reach);
            to[v] += _way[v];
        });
        share = next;
    }
}

LevelFit::LevelFit(std::vector<std::shared_ptr<const FitStep>> steps)
    : _steps(std::move(steps)), // Of one step alone conjugate gradients make the same without help.
      _inverse(*_steps.at(0), _steps.size() > 1 ? inverseIterations : 1)
{
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

std::vector<Vec3f> LevelFit::solve(std::vector<Vec3f> misfit, double accuracy)
{
    const std::size_t count = _steps.front()->gathering().size();
    _values.back() = std::move(misfit);
    Values residual(count), solution(count), scaled(count), image(count);
    gather(residual);
    const double enough = DotProduct(residual, residual) * accuracy * accuracy;
    _inverse.apply(residual, scaled);
    Values direction = scaled;
    double error = DotProduct(residual, scaled);
    for (int step = 0; step < maxSteps && DotProduct(residual, residual) > enough; ++step) {
        applyMatrix(direction, image);
        const auto length = static_cast<float>(error / DotProduct(direction, image));
        ForEachIndex(count, 4096, [&](std::size_t v) {
            solution[v] += direction[v] * length;
            residual[v] -= image[v] * length;
        });
        _inverse.apply(residual, scaled);
        const double next = DotProduct(residual, scaled);
        const auto turn = static_cast<float>(next / error);
        ForEachIndex(count, 4096, [&](std::size_t v) { direction[v] = scaled[v] + direction[v] * turn; });
        error = next;
    }
    return solution;
}

} // namespace geometry
