// Progress on the terminal, and how long each stage took.
// SPDX-License-Identifier: MIT

#pragma once

#include "progress_estimate.h"
#include "progress_line.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace cli {

/// One line on a terminal that tells what is going on, such as "42 %  about 8 s left  Saving the morphs";
/// nothing where stderr is no terminal. The line is gone when the object goes, so that a report or an error
/// stands alone.
class Progress {
public:
    /// @param wanted  false for none at all, as with --json
    explicit Progress(bool wanted);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// The stages of the whole work, in order, so that the share of it can be told; the first is the one at
    /// work.
    void expect(std::vector<ExpectedStep> stages);
    /// Begins a stage and ends the former one.
    /// @param name  of the stage in reports, such as "match"
    /// @param text  what the terminal shows; the name where empty
    /// @throws base::Cancelled  the user asked to end
    void stage(const std::string& name, const std::string& text = {});
    /// The same from where nothing may be thrown.
    void begin(const std::string& name, const std::string& text = {});
    /// How far the stage is, which the terminal shows now and then, so that it may be called often.
    void count(const CountedWork& work, const std::string& text);
    /// Ends the last stage.
    void finish();

    /// Hears the name of each stage that begins. Must not throw.
    void tellStagesTo(std::function<void(const std::string& name)> listener)
    {
        _listener = std::move(listener);
    }

    /// Name and seconds of each finished stage, in order.
    const std::vector<std::pair<std::string, double>>& seconds() const { return _seconds; }
    double totalSeconds() const; ///< since the object was made

private:
    using Clock = std::chrono::steady_clock;

    std::string line();

    Clock::time_point _begin = Clock::now(), _stageBegin = _begin;
    std::string _stage;
    std::function<void(const std::string&)> _listener;
    std::vector<std::pair<std::string, double>> _seconds;
    std::string _text;
    std::size_t _percent = 0; ///< of what is counted; each new one is shown at once
    ProgressEstimate _estimate;
    std::optional<ProgressLine> _line; ///< goes first, as it looks at the others
};

} // namespace cli
