// Whole-file gzip.
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace dson {

/// True when the bytes begin as a gzip member does.
bool IsGzip(std::string_view bytes);

/// One gzip member without name and time: the same text gives the same bytes.
std::string Compress(std::string_view text);

/// Expands gzip members that stand one behind the other, and ignores what else follows. An all-zero trailer
/// is accepted, since shipped files have it; any other that does not match the data is refused.
/// @param name   stands for the data in error messages, usually the file name
/// @param limit  the most bytes that all may expand to
/// @throws base::FormatError  truncated, damaged, larger than the limit, or larger than such a file can come
/// to be by compressing anything but the same again and again
std::string Decompress(std::string_view bytes, const std::string& name, std::size_t limit);

} // namespace dson
