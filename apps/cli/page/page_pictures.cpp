// Pictures in pages.
// SPDX-License-Identifier: MIT

#include "page/page_pictures.h"

#include "geometry/picture_box.h"
#include "geometry/picture_stage.h"

#include <QByteArray>
#include <nlohmann/json.hpp>

namespace cli {

namespace {

using geometry::View;

void Include(geometry::Box3f& box, const geometry::Box3f& other)
{
    if (other.isEmpty())
        return;
    box.include(other.min);
    box.include(other.max);
}

geometry::Box3f BoxOf(const std::vector<geometry::PictureItem>& items, std::size_t& farOff)
{
    geometry::Box3f box;
    for (const geometry::PictureItem& item : items)
        Include(box, geometry::BoxToShow(item.mesh, &farOff));
    return box;
}

geometry::Picture Draw(const geometry::PictureStage& stage, geometry::Lighting lighting, View view,
                       const geometry::Box3f& frame)
{
    geometry::PictureOptions options;
    options.view = view;
    options.width = pagePictureWidth;
    options.height = pagePictureHeight;
    options.lighting = lighting;
    if (!frame.isEmpty())
        options.frame = frame;
    return geometry::RenderStage(stage, options);
}

} // namespace

std::string DataUri(const geometry::Picture& picture)
{
    const std::vector<std::uint8_t> png = geometry::EncodePng(picture);
    const QByteArray bytes(reinterpret_cast<const char*>(png.data()), static_cast<int>(png.size()));
    return "data:image/png;base64," + bytes.toBase64().toStdString();
}

PictureFrames FramesOf(const std::vector<std::vector<geometry::PictureItem>>& figures)
{
    PictureFrames frames;
    for (const auto& items : figures) {
        Include(frames.whole, BoxOf(items, frames.farOff));
        if (!items.empty())
            Include(frames.head, geometry::HeadToShow(items.front().mesh));
    }
    return frames;
}

Json DrawRows(const std::vector<PictureRow>& rows, const PictureFrames& frames)
{
    constexpr std::pair<const char*, View> views[] = {{"front", View::Front},
                                                      {"three-quarter", View::ThreeQuarter},
                                                      {"side", View::Side},
                                                      {"back", View::Back},
                                                      {"face", View::Face}};
    Json drawn = Json::array();
    for (const PictureRow& row : rows) {
        const geometry::PictureStage stage(row.items);
        Json images = Json::array();
        for (const auto& [name, view] : views)
            images.push_back({{"view", name},
                              {"image", DataUri(Draw(stage, row.lighting, view,
                                                     view == View::Face ? frames.head : frames.whole))}});
        drawn.push_back({{"title", row.title}, {"alt", row.alt}, {"images", images}});
    }
    return drawn;
}

} // namespace cli
