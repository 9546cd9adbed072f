// Writing pictures as PNG files.
// SPDX-License-Identifier: MIT

#include "geometry/picture.h"

#include "base/atomic_file.h"
#include "base/errors.h"

#include <png.h>

#include <cassert>

namespace geometry {

std::vector<std::uint8_t> EncodePng(const Picture& picture)
{
    assert(picture.rgb.size() ==
           3 * static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height));
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(picture.width);
    image.height = static_cast<png_uint_32>(picture.height);
    image.format = PNG_FORMAT_RGB;
    png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(image);
    std::vector<std::uint8_t> bytes(size);
    if (!png_image_write_to_memory(&image, bytes.data(), &size, 0, picture.rgb.data(), 0, nullptr))
        throw base::Error(std::string("cannot encode a picture: ") + image.message);
    bytes.resize(size);
    return bytes;
}

void WritePng(const std::filesystem::path& file, const Picture& picture)
{
    const std::vector<std::uint8_t> bytes = EncodePng(picture);
    base::AtomicFile output(file, base::Durability::Temporary);
    output.write({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    output.commit();
}

} // namespace geometry
