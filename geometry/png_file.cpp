// Writing pictures as PNG files.
// SPDX-License-Identifier: MIT

#include "geometry/picture.h"

#include "base/atomic_file.h"
#include "base/cancellation.h"
#include "base/errors.h"

#include <png.h>
#include <tbb/parallel_for.h>

#include <cassert>
#include <csetjmp>
#include <new>

namespace geometry {

namespace {

/// A PNG while it is made; the library's errors end in `message`.
struct PngMaking {
    std::vector<std::uint8_t> bytes;
    std::string message;
};

void TakeBytes(png_structp png, png_bytep data, std::size_t size)
{
    auto& bytes = static_cast<PngMaking*>(png_get_io_ptr(png))->bytes;
    try {
        bytes.insert(bytes.end(), data, data + size);
        return;
    } catch (const std::bad_alloc&) {
        // No exception may pass through the library.
    }
    png_error(png, "out of memory");
}

/// What is said first tells most.
void TakeMessage(png_structp png, png_const_charp message)
{
    std::string& kept = static_cast<PngMaking*>(png_get_error_ptr(png))->message;
    if (kept.empty())
        kept = message;
}

[[noreturn]] void TakeError(png_structp png, png_const_charp message)
{
    TakeMessage(png, message);
    png_longjmp(png, 1);
}

/// Has nothing that a jump out of the library would leave behind.
bool WriteImage(png_structp png, png_infop info, const Picture& picture)
{
    if (setjmp(png_jmpbuf(png)))
        return false;
    png_set_IHDR(png, info, static_cast<png_uint_32>(picture.width), static_cast<png_uint_32>(picture.height),
                 8, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    // What the filters gain for smooth shades, a twentieth, costs three times the time.
    png_set_filter(png, PNG_FILTER_TYPE_BASE, PNG_FILTER_NONE);
    png_write_info(png, info);
    const std::size_t rowBytes = 3 * static_cast<std::size_t>(picture.width);
    for (std::size_t row = 0; row < static_cast<std::size_t>(picture.height); ++row)
        png_write_row(png, picture.rgb.data() + rowBytes * row);
    png_write_end(png, info);
    return true;
}

} // namespace

std::vector<std::uint8_t> EncodePng(const Picture& picture)
{
    assert(picture.rgb.size() ==
           3 * static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height));
    PngMaking making;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, &making, TakeError, TakeMessage);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    bool isMade = false;
    if (info) {
        png_set_write_fn(png, &making, TakeBytes, nullptr);
        isMade = WriteImage(png, info, picture);
    }
    png_destroy_write_struct(&png, &info);
    if (!isMade)
        throw base::Error("cannot encode a picture: " + making.message);
    return std::move(making.bytes);
}

std::vector<std::vector<std::uint8_t>> EncodePngs(base::Span<const Picture> pictures)
{
    std::vector<std::vector<std::uint8_t>> encoded(pictures.size());
    tbb::parallel_for(std::size_t{0}, pictures.size(), [&](std::size_t i) {
        base::ThrowIfCancelled();
        encoded[i] = EncodePng(pictures[i]);
    });
    return encoded;
}

void WritePng(const std::filesystem::path& file, const Picture& picture)
{
    WritePng(file, EncodePng(picture));
}

void WritePng(const std::filesystem::path& file, base::Span<const std::uint8_t> bytes)
{
    base::AtomicFile output(file, base::Durability::Temporary);
    output.write({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    output.commit();
}

} // namespace geometry
