// How far work is, and how long it still takes.
// SPDX-License-Identifier: MIT

#include "progress_estimate.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <fmt/format.h>

namespace cli {

namespace {

/// Before, a first short step would tell of all others.
constexpr double secondsToLearn = 2, shareToLearn = 0.1;
constexpr std::size_t piecesToLearn = 3;
/// In which what is told nears what is thought, so that a step of another length than expected does not let
/// the number leap.
constexpr double secondsToFollow = 3;

/// A step that takes longer than expected nears its end and does not reach it.
double HeldBack(double share)
{
    constexpr double even = 0.8, rest = 1 - even;
    return share <= even ? share : 1 - rest * std::exp(-(share - even) / rest);
}

} // namespace

void ProgressEstimate::expect(std::vector<ExpectedStep> steps)
{
    _steps = std::move(steps);
    _step = 0;
    _secondsEnded = _expectedEnded = _expected = 0;
    for (const ExpectedStep& step : _steps)
        _expected += step.seconds;
    _share = 0;
    _end.reset();
}

void ProgressEstimate::begin(const std::string& name, double now)
{
    if (_counted) {
        _counted.reset();
        _share = 0;
        _end.reset();
    }
    if (_steps.empty())
        _stepBegan = now;
    const auto isNamed = [&](const ExpectedStep& step) { return step.name == name; };
    const auto from = _steps.begin() + static_cast<std::ptrdiff_t>(_step);
    const auto found = std::find_if(from, _steps.end(), isNamed);
    if (found == _steps.end() || found == from)
        return;
    _secondsEnded += now - _stepBegan;
    for (auto step = from; step != found; ++step)
        _expectedEnded += step->seconds;
    _step = static_cast<std::size_t>(found - _steps.begin());
    _stepBegan = now;
}

void ProgressEstimate::count(const CountedWork& work, double now)
{
    if (!_counted)
        _countBegan = now;
    _counted = work;
}

/// Seconds that one that is expected takes. Weighed with one at the measured pace, as the first are short.
double ProgressEstimate::pace() const
{
    return (_secondsEnded + 1) / (_expectedEnded + 1);
}

double ProgressEstimate::shareOfStep(double now) const
{
    const double expected = pace() * _steps[_step].seconds;
    return expected > 0 ? HeldBack((now - _stepBegan) / expected) : 0;
}

double ProgressEstimate::shareOfSteps(double now) const
{
    if (_step == _steps.size() || _expected <= 0)
        return 1;
    return (_expectedEnded + shareOfStep(now) * _steps[_step].seconds) / _expected;
}

std::optional<double> ProgressEstimate::roughSecondsLeft(double share, double now) const
{
    if (_counted) {
        const double seconds = now - _countBegan;
        if (seconds < secondsToLearn || _counted->worked < std::max(piecesToLearn, _counted->abreast))
            return std::nullopt;
        return seconds * static_cast<double>(_counted->total - _counted->done) /
               static_cast<double>(_counted->worked);
    }
    if (now < secondsToLearn || share < shareToLearn)
        return std::nullopt;
    return pace() * _expected * (1 - share);
}

std::optional<double> ProgressEstimate::smoothed(std::optional<double> secondsLeft, double now)
{
    if (!secondsLeft)
        return std::nullopt;
    const double end = now + *secondsLeft;
    if (_end)
        *_end += (end - *_end) * (1 - std::exp(-(now - _toldAt) / secondsToFollow));
    else
        _end = end;
    _toldAt = now;
    return std::max(*_end - now, 0.0);
}

ProgressEstimate::Told ProgressEstimate::tell(double now)
{
    double share = 0;
    if (_counted)
        share = _counted->total > 0
                    ? static_cast<double>(_counted->done) / static_cast<double>(_counted->total)
                    : 0;
    else if (!_steps.empty())
        share = shareOfSteps(now);
    else
        return {};
    _share = std::max(_share, share);
    return {std::min(static_cast<int>(100 * _share), 99), smoothed(roughSecondsLeft(_share, now), now)};
}

std::string RoughTime(double seconds)
{
    const auto whole = [&](double unit) { return std::lround(seconds / unit); };
    if (seconds < 20)
        return fmt::format("{} s", std::max(whole(1), 1l));
    if (seconds < 57.5)
        return fmt::format("{} s", 5 * whole(5));
    if (seconds < 115)
        return fmt::format("{} s", 10 * whole(10));
    return seconds < 7200 ? fmt::format("{} min", whole(60)) : fmt::format("{} h", whole(3600));
}

} // namespace cli
