// One line of a terminal that is written anew while work goes on.
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>
#include <memory>
#include <string>

namespace cli {

/// On standard error, a few times a second, from a thread of its own, so that it goes on also while one step
/// takes long. Cut to the terminal's width, and gone when it is cleared or the object goes.
class ProgressLine {
public:
    ProgressLine();
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    /// From now on, for the whole process: as lines of their own, "progress: 42 %  ...", for a program that
    /// reads them.
    static void tellInLines();
    /// Whether a person sees standard error as it is written, or a program wants the lines.
    static bool isPossible();

    /// Changes what `text` looks at, never while that runs.
    void change(const std::function<void()>& work);
    /// From now on, at once and now and then.
    /// @param text  of the line; called on another thread
    void show(std::function<std::string()> text);
    void clear();

private:
    struct Impl;
    std::unique_ptr<Impl> _impl;
};

} // namespace cli
