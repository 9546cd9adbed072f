// What can go wrong, by whose fault it is.
// SPDX-License-Identifier: MIT

#pragma once

#include <stdexcept>
#include <string>
#include <utility>

#include <fmt/format.h>

namespace base {

/// Base of all errors here. The text is a short lower-case phrase without a full stop.
class Error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A file cannot be opened, read or written.
class IoError : public Error {
public:
    explicit IoError(const std::string& text) : Error(text) {}
    template <class... Args>
    IoError(fmt::format_string<Args...> format, Args&&... args)
        : Error(fmt::format(format, std::forward<Args>(args)...))
    {
    }
};

/// A file's content cannot be understood.
class FormatError : public Error {
public:
    explicit FormatError(const std::string& text) : Error(text) {}
    template <class... Args>
    FormatError(fmt::format_string<Args...> format, Args&&... args)
        : Error(fmt::format(format, std::forward<Args>(args)...))
    {
    }
};

} // namespace base
