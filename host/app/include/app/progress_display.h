// Where progress is shown besides a terminal.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <functional>
#include <vector>

namespace openhost {

/// What one progress shows.
struct ProgressLevel {
    QString info;
    int position = 0, total = 0; ///< a total of 0 stands for work of unknown length
};

/// Only work that can be cancelled takes input meanwhile, and only in the display itself: nothing else is to
/// happen to the scene before it ends.
class ProgressDisplay {
public:
    virtual ~ProgressDisplay() = default;

    /// Handles events, too.
    /// @param levels   the outermost first
    /// @param seconds  since the work began; below 0 when nobody wants to know
    /// @param cancel   ends the work; empty when it cannot be cancelled
    virtual void show(const std::vector<ProgressLevel>& levels, double seconds,
                      std::function<void()> cancel) = 0;
    /// The outermost work has ended.
    /// @param closes  whether the display goes now or when the user closes it
    virtual void end(bool closes) = 0;
};

} // namespace openhost
