// Whole-file gzip.
// SPDX-License-Identifier: MIT

#include "dson/gzip.h"

#include "base/cancellation.h"
#include "base/errors.h"
#include "dson/limits.h"

#include <algorithm>
#include <cstdint>
#include <memory>

#include <libdeflate.h>
#include <zlib.h>

namespace dson {

namespace {

/// zlib counts in 32 bits; larger inputs are handed over in pieces.
constexpr std::size_t maxPiece = std::size_t{1} << 30;
/// What takes no time worth asking whether it is still wanted.
constexpr std::size_t briefPiece = std::size_t{1} << 22, mostAtOnce = std::size_t{1} << 26;
/// Check sum and length behind the data of a member.
constexpr std::size_t trailerSize = 8;

/// Ends a zlib stream when the scope ends.
struct StreamGuard {
    z_stream& stream;
    int (*end)(z_stream*);
    ~StreamGuard() { end(&stream); }
};

/// Length of the gzip header, or 0 when it is not complete.
std::size_t HeaderLength(std::string_view bytes)
{
    enum Flag { HeaderCrc = 2, Extra = 4, Name = 8, Comment = 16 };
    if (bytes.size() < 10 || bytes[2] != 8)
        return 0;
    const auto flags = static_cast<unsigned char>(bytes[3]);
    std::size_t length = 10;
    if (flags & Extra) {
        if (bytes.size() < length + 2)
            return 0;
        length += 2 + static_cast<unsigned char>(bytes[length]) +
                  256u * static_cast<unsigned char>(bytes[length + 1]);
    }
    for (const int textFlag : {static_cast<int>(Name), static_cast<int>(Comment)}) {
        if (!(flags & textFlag))
            continue;
        const std::size_t end = length < bytes.size() ? bytes.find('\0', length) : std::string_view::npos;
        if (end == std::string_view::npos)
            return 0;
        length = end + 1;
    }
    if (flags & HeaderCrc)
        length += 2;
    return length < bytes.size() ? length : 0;
}

std::uint32_t LittleEndian(std::string_view bytes)
{
    std::uint32_t value = 0;
    for (int i = 3; i >= 0; --i)
        value = value << 8 | static_cast<unsigned char>(bytes[static_cast<std::size_t>(i)]);
    return value;
}

/// Room to expand into: as much as the trailer says, if that can be, and a little for who parses the text.
/// More is made where that was not true.
std::size_t FirstRoom(std::string_view bytes, std::size_t limit)
{
    constexpr std::size_t least = 1 << 16, padding = 64, likelyRatio = 16;
    const std::size_t told = bytes.size() < 4 ? 0 : LittleEndian(bytes.substr(bytes.size() - 4));
    const std::size_t room = std::min({told + padding, likelyRatio * bytes.size(), limit + 1});
    return std::max(room, std::min(least, limit + 1));
}

void CheckTrailer(std::string_view trailer, const std::string& text, const std::string& name)
{
    if (trailer.size() < trailerSize)
        throw base::FormatError("{}: the compressed data is cut off", name);
    const std::uint32_t crc = LittleEndian(trailer);
    const std::uint32_t length = LittleEndian(trailer.substr(4));
    if (crc == 0 && length == 0)
        return;
    const std::uint32_t actual = libdeflate_crc32(0, text.data(), text.size());
    if (crc != actual || length != static_cast<std::uint32_t>(text.size()))
        throw base::FormatError("{}: the compressed data is damaged", name);
}

/// Expands to the end of the compressed data in one go.
/// @param text  room for the result; cut to its size
/// @return how many bytes of the data that took; 0 when it did not work, be it for want of room
std::size_t ExpandAtOnce(std::string_view data, std::string& text)
{
    const std::unique_ptr<libdeflate_decompressor, decltype(&libdeflate_free_decompressor)> decompressor(
        libdeflate_alloc_decompressor(), libdeflate_free_decompressor);
    std::size_t taken = 0, filled = 0;
    if (!decompressor ||
        libdeflate_deflate_decompress_ex(decompressor.get(), data.data(), data.size(), text.data(),
                                         text.size(), &taken, &filled) != LIBDEFLATE_SUCCESS)
        return 0;
    text.resize(filled);
    return taken;
}

/// Expands piece by piece, making room where more is needed, and tells what is wrong.
/// @param text  room to begin with; cut to its size, which beyond the limit is as far as it went
/// @return how many bytes of the data that took
std::size_t ExpandInPieces(std::string_view data, std::string& text, const std::string& name,
                           std::size_t limit)
{
    z_stream stream{};
    if (inflateInit2(&stream, -15) != Z_OK)
        throw base::Error("cannot set up decompression");
    const StreamGuard guard{stream, inflateEnd};
    std::size_t at = 0, filled = 0;
    int state = Z_OK;
    while (state != Z_STREAM_END) {
        base::ThrowIfCancelled();
        if (filled == text.size())
            text.resize(std::min(2 * filled, limit + 1));
        const std::size_t piece = std::min(maxPiece, data.size() - at);
        const std::size_t room = std::min(briefPiece, text.size() - filled);
        stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(data.data() + at));
        stream.avail_in = static_cast<uInt>(piece);
        stream.next_out = reinterpret_cast<Bytef*>(text.data() + filled);
        stream.avail_out = static_cast<uInt>(room);
        state = inflate(&stream, Z_NO_FLUSH);
        at += piece - stream.avail_in;
        if (state == Z_BUF_ERROR || (state == Z_OK && at == data.size() && stream.avail_out != 0))
            throw base::FormatError("{}: the compressed data is cut off", name);
        if (state != Z_OK && state != Z_STREAM_END)
            throw base::FormatError("{}: the compressed data is damaged", name);
        filled += room - stream.avail_out;
        if (filled > limit)
            break;
    }
    text.resize(filled);
    return at;
}

/// @param bytes  cut to what stands behind the member
/// @return its text; where that is longer than the limit, as far as it went
std::string ExpandMember(std::string_view& bytes, const std::string& name, std::size_t limit)
{
    const std::size_t header = HeaderLength(bytes);
    if (header == 0)
        throw base::FormatError("{}: the compressed data is cut off", name);
    const std::string_view data = bytes.substr(header);
    std::string text(FirstRoom(bytes, limit), '\0');
    base::ThrowIfCancelled();
    std::size_t taken = text.size() <= mostAtOnce ? ExpandAtOnce(data, text) : 0;
    if (taken == 0 || text.size() > limit)
        taken = ExpandInPieces(data, text, name, limit);
    if (text.size() > limit)
        return text;
    CheckTrailer(data.substr(taken), text, name);
    bytes = data.substr(taken + trailerSize);
    return text;
}

} // namespace

bool IsGzip(std::string_view bytes)
{
    return bytes.size() >= 2 && bytes[0] == '\x1f' && bytes[1] == '\x8b';
}

std::string Compress(std::string_view text)
{
    z_stream stream{};
    constexpr int gzipWindow = 15 + 16, level = 6, memory = 8;
    if (deflateInit2(&stream, level, Z_DEFLATED, gzipWindow, memory, Z_DEFAULT_STRATEGY) != Z_OK)
        throw base::Error("cannot set up compression");
    const StreamGuard guard{stream, deflateEnd};
    std::string result;
    char buffer[1 << 16];
    std::size_t at = 0;
    int state = Z_OK;
    while (state != Z_STREAM_END) {
        const std::size_t piece = std::min(maxPiece, text.size() - at);
        stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data() + at));
        stream.avail_in = static_cast<uInt>(piece);
        at += piece;
        do {
            base::ThrowIfCancelled();
            stream.next_out = reinterpret_cast<Bytef*>(buffer);
            stream.avail_out = sizeof buffer;
            state = deflate(&stream, at == text.size() ? Z_FINISH : Z_NO_FLUSH);
            result.append(buffer, sizeof buffer - stream.avail_out);
        } while (stream.avail_out == 0);
    }
    return result;
}

std::string Decompress(std::string_view bytes, const std::string& name, std::size_t limit)
{
    const std::size_t likely = std::max(freelyExpanded, mostExpansion * bytes.size());
    const std::size_t most = std::min(limit, likely);
    std::string text;
    do {
        std::string member = ExpandMember(bytes, name, most - text.size());
        if (member.size() > most - text.size()) {
            if (likely < limit)
                throw base::FormatError("{}: expands to more than {} times its size", name, mostExpansion);
            throw base::FormatError("{}: expands to more than {} bytes", name, limit);
        }
        if (text.empty())
            text = std::move(member); // as good as all files have but one
        else
            text += member;
    } while (IsGzip(bytes));
    return text;
}

} // namespace dson
