// Trace lines in the host's log.
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>

#include <fmt/format.h>

namespace kst {

/// Writes "Entering {}" when made and "Leaving {}" when it goes away, also on the way of an exception.
class Debug {
public:
    explicit Debug(std::string_view name);
    ~Debug();
    Debug(const Debug&) = delete;
    Debug& operator=(const Debug&) = delete;

    /// Writes one line, the product's prefix in front, and flushes the host's log at once, so that the log is
    /// complete even if the host crashes in the next step.
    static void Log(std::string_view text);

    template <class First, class... Rest>
    static void Log(std::string_view format, const First& first, const Rest&... rest)
    {
        Log(std::string_view(fmt::vformat(format, fmt::make_format_args(first, rest...))));
    }

private:
    std::string _name;
};

} // namespace kst
