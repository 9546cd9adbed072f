// A small picture of a conversion, one among many.
// SPDX-License-Identifier: MIT

#include "conversions/thumbnail.h"

#include "conversions/comparison.h"
#include "dzfigure.h"
#include "geometry/picture_box.h"
#include "geometry/picture_stage.h"
#include "page/color_scale.h"

#include <algorithm>

#include <QByteArray>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace cli {

namespace {

constexpr int width = 80, height = 104;
/// The same for all conversions, so that they can be told apart at a glance.
constexpr ColorScale scale{5.0, 0.0, 0, 0};

std::vector<geometry::PictureItem> ItemsOf(const Body& body)
{
    std::vector<geometry::PictureItem> items(body.meshes.size());
    for (std::size_t m = 0; m < items.size(); ++m)
        items[m].mesh = body.meshes[m];
    return items;
}

void Include(geometry::Box3f& frame, const Body& body)
{
    for (const geometry::PolygonMeshView& mesh : body.meshes)
        if (const geometry::Box3f box = geometry::BoxToShow(mesh); !box.isEmpty()) {
            frame.include(box.min);
            frame.include(box.max);
        }
}

/// The vertices of the cage stand first among those that were measured.
std::vector<std::vector<LinearRgb>> ColorsOf(const Body& body,
                                             const std::vector<std::vector<float>>& distances)
{
    std::vector<std::vector<LinearRgb>> colors;
    for (std::size_t m = 0; m < body.meshes.size(); ++m) {
        std::vector<LinearRgb>& own = colors.emplace_back(body.meshes[m].vertexCount(), ColorOfNothing());
        for (std::size_t v = 0; m < distances.size() && v < std::min(own.size(), distances[m].size()); ++v)
            own[v] = scale.color(distances[m][v]);
    }
    return colors;
}

geometry::Picture Draw(const geometry::PictureStage& stage, const geometry::Box3f& frame)
{
    geometry::PictureOptions options;
    options.width = width;
    options.height = height;
    options.lighting = geometry::Lighting::Plain; // without shadows, which cost more than all else
    if (!frame.isEmpty())
        options.frame = frame;
    return geometry::RenderStage(stage, options);
}

/// In 32 steps a channel, which nobody sees at this size, and which makes half of the file.
geometry::Picture Coarsened(geometry::Picture picture)
{
    constexpr int step = 8, largest = 255;
    for (std::uint8_t& value : picture.rgb)
        value = static_cast<std::uint8_t>(std::min(largest, (value + step / 2) / step * step));
    return picture;
}

} // namespace

std::string DrawThumbnail(const GntOutcome& outcome, const ConversionReport& report)
{
    const Comparison comparison(outcome, GntResolution::Base);
    const Body source = BodyOf(outcome.params->figSource), target = BodyOf(outcome.params->figTarget);
    geometry::Box3f frame;
    Include(frame, source);
    Include(frame, target);
    const std::vector<geometry::PictureItem> sourceItems = ItemsOf(source);
    std::vector<geometry::PictureItem> items = ItemsOf(target);
    const geometry::PictureStage stage(items);
    std::vector<geometry::Picture> pictures{Draw(geometry::PictureStage(sourceItems), frame),
                                            Draw(stage, frame)};
    if (report.distance) {
        const std::vector<std::vector<LinearRgb>> colors = ColorsOf(target, report.distances.target);
        for (std::size_t m = 0; m < items.size(); ++m)
            items[m].vertexColors = colors[m];
        pictures.push_back(Draw(stage, frame));
    }
    const std::vector<std::uint8_t> png = geometry::EncodePng(Coarsened(geometry::Join(pictures)));
    return QByteArray(reinterpret_cast<const char*>(png.data()), static_cast<int>(png.size()))
        .toBase64()
        .toStdString();
}

Json ThumbnailLegend()
{
    Json described = DescribeScale(scale, {});
    described["over"] = 1;
    described["text"] =
        "Distance of the converted figure to the source\u2019s surface; the same scale for all rows.";
    return {{"colors", ColorTable()}, {"scale", described}, {"pictureHeight", height}};
}

} // namespace cli
