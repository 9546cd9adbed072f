// The text of a file from a content library, whatever its packaging.
// SPDX-License-Identifier: MIT

#include "dson/file_text.h"

#include "base/cancellation.h"
#include "base/errors.h"
#include "base/input_file.h"
#include "dson/gzip.h"
#include "utf8.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

#include <unistd.h>

namespace dson {

namespace {

/// In bytes. What the machine has does not change while the program runs.
std::size_t LargestText()
{
    static const std::size_t memory =
        static_cast<std::size_t>(sysconf(_SC_PHYS_PAGES)) * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    return std::min(maxTextSize, memory / memoryShare);
}

std::string ReadStored(const std::filesystem::path& file)
{
    std::error_code error;
    if (std::filesystem::is_directory(file, error))
        throw base::IoError("cannot read {}: it is a folder", file.string());
    base::InputFile input(file);
    std::string bytes;
    // Whoever parses the text wants some bytes behind it.
    constexpr std::size_t padding = 64;
    const std::size_t largest = LargestText();
    if (input.size() <= largest)
        bytes.reserve(input.size() + padding);
    char buffer[1 << 16];
    while (const std::size_t count = input.read(buffer, sizeof buffer)) {
        bytes.append(buffer, count);
        if (bytes.size() > largest)
            throw base::FormatError("{}: is larger than {} bytes", file.string(), largest);
    }
    return bytes;
}

std::string FromUtf16(std::string_view bytes, bool bigEndian, const std::string& name)
{
    if (bytes.size() % 2 != 0)
        throw base::FormatError("{}: the UTF-16 text is cut off", name);
    const auto unit = [&](std::size_t at) -> std::uint32_t {
        const auto first = static_cast<unsigned char>(bytes[at]),
                   second = static_cast<unsigned char>(bytes[at + 1]);
        return bigEndian ? first << 8 | second : second << 8 | first;
    };
    constexpr std::size_t askingInterval = std::size_t{1} << 20;
    std::string text;
    for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
        if (at % askingInterval < 4)
            base::ThrowIfCancelled();
        std::uint32_t code = unit(at);
        if (code >= 0xD800 && code < 0xDC00 && at + 3 < bytes.size()) {
            const std::uint32_t low = unit(at + 2);
            if (low >= 0xDC00 && low < 0xE000) {
                code = 0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00);
                at += 2;
            }
        }
        AppendUtf8(text, code >= 0xD800 && code < 0xE000 ? 0xFFFD : code);
    }
    return text;
}

bool StartsWith(const std::string& bytes, std::string_view prefix)
{
    return bytes.compare(0, prefix.size(), prefix) == 0;
}

} // namespace

std::string ReadBytes(const std::filesystem::path& file)
{
    std::string bytes = ReadStored(file);
    return IsGzip(bytes) ? Decompress(bytes, file.string(), LargestText()) : bytes;
}

std::string ReadText(const std::filesystem::path& file)
{
    std::string bytes = ReadBytes(file);
    if (StartsWith(bytes, "\xEF\xBB\xBF"))
        return bytes.substr(3);
    // A JSON text starts with an ASCII character, so a zero byte beside it tells UTF-16 without a mark.
    const bool littleEndian =
        StartsWith(bytes, "\xFF\xFE") || (bytes.size() > 1 && bytes[0] != 0 && bytes[1] == 0);
    const bool bigEndian =
        StartsWith(bytes, "\xFE\xFF") || (bytes.size() > 1 && bytes[0] == 0 && bytes[1] == '{');
    if (!littleEndian && !bigEndian)
        return bytes;
    const bool hasMark = StartsWith(bytes, "\xFF\xFE") || StartsWith(bytes, "\xFE\xFF");
    return FromUtf16(std::string_view(bytes).substr(hasMark ? 2 : 0), bigEndian, file.string());
}

} // namespace dson
