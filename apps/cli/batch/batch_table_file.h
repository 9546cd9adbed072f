// The file that a batch's table is in.
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

namespace cli {

/// @param name  - for standard input
/// @throws base::IoError, base::FormatError  it cannot be read, or is too large for a table
/// @throws base::Cancelled                   while it was waited for
std::string ReadTableFile(const std::string& name);

} // namespace cli
