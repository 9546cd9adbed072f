// Pictures as files of the kind that their names ask for.
// SPDX-License-Identifier: MIT

#include "openhost/picture_file.h"

#include "base/ascii.h"
#include "base/atomic_file.h"
#include "base/errors.h"

#include <QBuffer>
#include <QImage>
#include <QImageWriter>

#include <algorithm>

namespace openhost {

namespace {

enum class PictureFormat { Png, Jpeg };

PictureFormat FormatOf(const std::filesystem::path& file)
{
    std::string extension = file.extension().u8string();
    std::transform(extension.begin(), extension.end(), extension.begin(), base::ToLowerAscii);
    if (extension == ".png")
        return PictureFormat::Png;
    if (extension == ".jpg" || extension == ".jpeg")
        return PictureFormat::Jpeg;
    throw base::FormatError("cannot write {}: a picture is a .png, .jpg or .jpeg file", file.u8string());
}

QByteArray EncodeJpeg(const std::filesystem::path& file, const geometry::Picture& picture)
{
    constexpr int quality = 92; // of 100; soft shades show no blocks from here on
    const QImage image(picture.rgb.data(), picture.width, picture.height, 3 * picture.width,
                       QImage::Format_RGB888);
    QBuffer bytes;
    bytes.open(QIODevice::WriteOnly);
    QImageWriter writer(&bytes, "jpeg");
    writer.setQuality(quality);
    if (!writer.write(image))
        throw base::IoError("cannot write {}: {}", file.u8string(), writer.errorString().toStdString());
    return bytes.data();
}

} // namespace

void CheckPictureName(const std::filesystem::path& file)
{
    FormatOf(file);
}

void WritePicture(const std::filesystem::path& file, const geometry::Picture& picture)
{
    if (FormatOf(file) == PictureFormat::Png)
        return geometry::WritePng(file, picture);
    const QByteArray bytes = EncodeJpeg(file, picture);
    base::AtomicFile output(file, base::Durability::Temporary);
    output.write({bytes.constData(), static_cast<std::size_t>(bytes.size())});
    output.commit();
}

} // namespace openhost
