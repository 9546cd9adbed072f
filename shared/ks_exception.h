// The errors of the plug-in: texts that are shown to the user as they stand.
// SPDX-License-Identifier: MIT

#pragma once

#include <exception>
#include <string>
#include <string_view>

#include <fmt/format.h>

namespace kst {

/// A failure. The text is a short lower-case phrase without a final full stop; names in it are quoted.
class Exception : public std::exception {
public:
    /// The text as it stands, braces included.
    explicit Exception(std::string_view text) : _message(text) {}

    /// Formats the arguments into the text's "{}" placeholders.
    /// @throws fmt::format_error  the format does not fit the arguments
    template <class First, class... Rest>
    Exception(std::string_view format, const First& first, const Rest&... rest)
        : _message(fmt::vformat(format, fmt::make_format_args(first, rest...)))
    {
    }

    ~Exception() override = default;

    const char* what() const noexcept override { return _message.c_str(); }

private:
    std::string _message;
};

/// The user decided not to go on; the outermost handler stays silent.
class CanceledException : public Exception {
public:
    CanceledException() : Exception("operation canceled") {}
};

} // namespace kst
