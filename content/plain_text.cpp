// Whole text files, plain or gzip.
// SPDX-License-Identifier: MIT

#include "plain_formats.h"

#include "base/errors.h"

#include <cerrno>
#include <cstring>
#include <fstream>

#include <zlib.h>

namespace content {

namespace {

using base::FormatError;
using base::IoError;

/// No honest skeleton, weight file or table comes near this; what expands further is refused.
constexpr std::size_t mostBytes = std::size_t(512) << 20;

std::string ReadBytes(const std::filesystem::path& file)
{
    std::error_code error;
    const auto size = std::filesystem::file_size(file, error);
    if (error)
        throw base::IoError("cannot read {}: {}", file.string(), error.message());
    if (size > mostBytes)
        throw base::FormatError("{}: larger than {} bytes", file.string(), mostBytes);
    std::ifstream stream(file, std::ios::binary);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    if (!stream || !stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size())))
        throw base::IoError("cannot read {}: {}", file.string(), std::strerror(errno));
    return bytes;
}

/// Ends the inflating however it is left.
struct Inflater {
    z_stream stream{};
    bool ready = inflateInit2(&stream, 15 + 16) == Z_OK;
    ~Inflater()
    {
        if (ready)
            inflateEnd(&stream);
    }
};

std::string Expand(const std::string& bytes, const std::string& name)
{
    Inflater inflater;
    if (!inflater.ready)
        throw base::FormatError("{}: cannot expand", name);
    z_stream& stream = inflater.stream;
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
    stream.avail_in = static_cast<uInt>(bytes.size());
    std::string text;
    std::vector<char> block(std::size_t(1) << 18);
    for (int state = Z_OK; state != Z_STREAM_END;) {
        stream.next_out = reinterpret_cast<Bytef*>(block.data());
        stream.avail_out = static_cast<uInt>(block.size());
        state = inflate(&stream, Z_NO_FLUSH);
        const std::size_t produced = block.size() - stream.avail_out;
        if (state == Z_BUF_ERROR || (state == Z_OK && produced == 0 && stream.avail_in == 0))
            throw base::FormatError("{}: gzip data is truncated", name);
        if (state != Z_OK && state != Z_STREAM_END)
            throw base::FormatError("{}: gzip data is damaged", name);
        if (text.size() + produced > mostBytes)
            throw base::FormatError("{}: gzip data expands to more than {} bytes", name, mostBytes);
        text.append(block.data(), produced);
    }
    return text;
}

} // namespace

std::string ReadPlainText(const std::filesystem::path& file)
{
    std::string bytes = ReadBytes(file);
    const bool isGzip = bytes.size() >= 2 && bytes[0] == '\x1f' && bytes[1] == '\x8b';
    return isGzip ? Expand(bytes, file.string()) : bytes;
}

} // namespace content
