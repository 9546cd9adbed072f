// The text of a file from a content library, whatever its packaging.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/limits.h"

#include <filesystem>
#include <string>

namespace dson {

/// The bytes of a file, expanded if they are a gzip.
/// @throws base::IoError      the file cannot be read
/// @throws base::FormatError  the compressed data is cut off or damaged, or the file is too large
std::string ReadBytes(const std::filesystem::path& file);

/// Reads a file whole, expands gzip, drops a byte-order mark and turns UTF-16 into UTF-8.
/// @throws base::IoError      the file cannot be read
/// @throws base::FormatError  the compressed data is cut off, damaged or too large, or the text is UTF-16
/// cut off
std::string ReadText(const std::filesystem::path& file);

} // namespace dson
