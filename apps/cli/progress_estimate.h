// How far work is, and how long it still takes.
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace cli {

/// A step that is to come.
struct ExpectedStep {
    std::string name;
    double seconds = 0; ///< as measured on some machine; only their shares matter in the end
};

/// Equal pieces of work of which some are done.
struct CountedWork {
    std::size_t done = 0, total = 0;
    std::size_t worked = 0;  ///< of those done, what took its time; others say nothing of the pace
    std::size_t abreast = 1; ///< worked on at the same time
};

/// Clockless: all times are seconds since the work began, and never fall from call to call.
class ProgressEstimate {
public:
    struct Told {
        std::optional<int> percent;        ///< 0 to 99; never falls while the same steps are expected
        std::optional<double> secondsLeft; ///< not before it is worth something
    };

    /// The steps of the whole work, in order; the first is the one at work.
    void expect(std::vector<ExpectedStep> steps);
    /// Steps that are not expected belong to the one before.
    void begin(const std::string& name, double now);
    /// Of the step at work, when no steps are expected; it begins with the first call.
    void count(const CountedWork& work, double now);

    Told tell(double now);

private:
    double shareOfSteps(double now) const;
    double shareOfStep(double now) const;
    double pace() const;
    std::optional<double> roughSecondsLeft(double share, double now) const;
    std::optional<double> smoothed(std::optional<double> secondsLeft, double now);

    std::vector<ExpectedStep> _steps;
    std::size_t _step = 0; ///< at work
    double _stepBegan = 0;
    double _secondsEnded = 0, _expectedEnded = 0, _expected = 0; ///< of steps that have ended; of all
    std::optional<CountedWork> _counted;
    double _countBegan = 0;
    double _share = 0;
    std::optional<double> _end; ///< as told last
    double _toldAt = 0;
};

/// To what people read at a glance: "8 s", "40 s", "3 min", "2 h".
std::string RoughTime(double seconds);

} // namespace cli
