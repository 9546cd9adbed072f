// Logs of any size, line by line.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/input_file.h"

#include <cstddef>
#include <optional>
#include <string>

namespace cli {

class LogLines {
public:
    /// @param name  of a file; a hyphen for standard input
    /// @throws base::IoError  it cannot be opened
    explicit LogLines(const std::string& name);

    /// Without its end; nothing behind the last one.
    /// @throws base::IoError      it cannot be read
    /// @throws base::FormatError  the line is longer than a table may be
    std::optional<std::string> next();
    std::size_t number() const { return _number; } ///< of that line, from 1

private:
    std::string _name;
    base::InputFile _file;
    std::string _bytes;
    std::size_t _at = 0, _number = 0; ///< where the next line begins in the bytes
    bool _isAtEnd = false;
};

} // namespace cli
