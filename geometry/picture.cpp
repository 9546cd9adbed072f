// Tracing shaded pictures: camera, studio lights, ambient occlusion, supersampling.
// SPDX-License-Identifier: MIT

#include "geometry/picture.h"

#include "base/cancellation.h"
#include "base/counted.h"
#include "base/errors.h"
#include "geometry/limits.h"
#include "geometry/picture_box.h"
#include "geometry/picture_stage.h"
#include "picture_row.h"
#include "picture_shadows.h"
#include "picture_tone.h"
#include "rasterizer.h"

#include <tbb/parallel_for.h>

#include <algorithm>
#include <cmath>

namespace geometry {

namespace {

constexpr float pi = 3.14159265f;

float Angle(View view)
{
    switch (view) {
    case View::Front:
    case View::Face:
        return 0.0f;
    case View::Side:
        return 0.5f * pi;
    case View::Back:
        return pi;
    case View::ThreeQuarter:
        return 35.0f * pi / 180.0f;
    }
    return 0.0f;
}

Box3f WholeBox(base::Span<const PictureItem> items)
{
    Box3f whole;
    for (const PictureItem& item : items)
        if (const Box3f box = BoxToShow(item.mesh); !box.isEmpty()) {
            whole.include(box.min);
            whole.include(box.max);
        }
    return whole;
}

Box3f FrameOf(base::Span<const PictureItem> items, const PictureOptions& options)
{
    if (options.frame)
        return *options.frame;
    Box3f box;
    if (options.view == View::Face && !items.empty())
        box = HeadToShow(items[0].mesh);
    if (box.isEmpty())
        box = WholeBox(items);
    if (box.isEmpty())
        box = {{-1, -1, -1}, {1, 1, 1}};
    return box;
}

void CheckOptions(const PictureOptions& options)
{
    CheckPictureSize(options.width, options.height);
    if (options.samplesPerAxis < 1 || options.samplesPerAxis > 16)
        throw base::Error(fmt::format("{} samples per axis are not within 1 to 16", options.samplesPerAxis));
}

void CheckColors(base::Span<const PictureItem> items)
{
    for (const PictureItem& item : items) {
        if (!item.vertexColors.empty() && item.vertexColors.size() != item.mesh.vertexCount())
            throw base::Error(fmt::format("{} given for {}",
                                          base::Counted(item.vertexColors.size(), "colour is", "colours are"),
                                          base::CountedVertices(item.mesh.vertexCount())));
        const std::size_t surfaces = item.mesh.topology ? item.mesh.topology->surfaceNames.size() : 0;
        if (!item.surfaceColors.empty() && item.surfaceColors.size() != surfaces)
            throw base::Error(fmt::format(
                "{} given for {}", base::Counted(item.surfaceColors.size(), "colour is", "colours are"),
                base::Counted(surfaces, "surface", "surfaces")));
    }
}

/// Pixels at a time, which bounds the memory for their samples.
constexpr int bandPixels = 1 << 21;

class Renderer {
public:
    explicit Renderer(const PictureView& view)
        : _view(view), _rasterizer(view.stage.meshes(), view.camera, view.samples()), _gatherer(view)
    {
        if (view.lighting == Lighting::Studio)
            _shadows.emplace(view);
    }

    Picture draw() const
    {
        Picture picture{_view.width, _view.height, {}, true};
        picture.rgb.resize(3 * static_cast<std::size_t>(_view.width) *
                           static_cast<std::size_t>(_view.height));
        const int rows = std::max(1, bandPixels / _view.width);
        for (int first = 0; first < _view.height; first += rows)
            drawBand(first, std::min(first + rows, _view.height), picture);
        return picture;
    }

private:
    void drawBand(int first, int last, Picture& picture) const
    {
        const int reach = _shadows ? ShadowTracer::reach(_view.samplesPerAxis) : 0;
        const int from = std::max(0, first - reach), to = std::min(_view.height, last + reach);
        std::vector<PixelRow> rows = gatherRows(from, to, picture.isEmpty);
        tbb::parallel_for(first, last, [&](int row) {
            base::ThrowIfCancelled();
            if (_shadows)
                _shadows->light(rows, static_cast<std::size_t>(row - from));
            writeRow(rows[static_cast<std::size_t>(row - from)], row, picture);
        });
    }

    /// @param isEmpty  becomes false where a face is seen
    std::vector<PixelRow> gatherRows(int from, int to, bool& isEmpty) const
    {
        const int n = _view.samplesPerAxis;
        const std::size_t samples =
            static_cast<std::size_t>(_view.samples().width) * static_cast<std::size_t>(n);
        std::vector<std::uint32_t> faces(samples * static_cast<std::size_t>(to - from));
        _rasterizer.draw(n * from, n * to, faces);
        isEmpty = isEmpty &&
                  std::all_of(faces.begin(), faces.end(), [](std::uint32_t face) { return face == noFace; });
        std::vector<PixelRow> rows(static_cast<std::size_t>(to - from));
        tbb::parallel_for(std::size_t{0}, rows.size(), [&](std::size_t i) {
            base::ThrowIfCancelled();
            rows[i] = _gatherer.gather(from + static_cast<int>(i), faces.data() + samples * i);
        });
        if (_shadows)
            tbb::parallel_for(std::size_t{0}, rows.size(), [&](std::size_t i) {
                base::ThrowIfCancelled();
                _shadows->trace(rows[i]);
            });
        return rows;
    }

    void writeRow(const PixelRow& row, int number, Picture& picture) const
    {
        std::uint8_t* rgb = picture.rgb.data() + 3 * static_cast<std::size_t>(number) * row.colors.size();
        const float share = 1.0f / static_cast<float>(_view.samplesPerAxis * _view.samplesPerAxis);
        for (const Rgb& color : row.colors)
            for (const float light : color)
                *rgb++ = _tone.toByte(light * share);
    }

    const PictureView& _view;
    Rasterizer _rasterizer;
    RowGatherer _gatherer;
    std::optional<ShadowTracer> _shadows;
    ToneCurve _tone;
};

} // namespace

std::optional<View> ParseView(std::string_view text)
{
    constexpr std::pair<std::string_view, View> names[] = {{"front", View::Front},
                                                           {"side", View::Side},
                                                           {"back", View::Back},
                                                           {"three-quarter", View::ThreeQuarter},
                                                           {"face", View::Face}};
    for (const auto& [name, view] : names)
        if (name == text)
            return view;
    return std::nullopt;
}

void CheckPictureSize(int width, int height)
{
    if (width < 1 || height < 1 || width > largestPicture || height > largestPicture)
        throw base::Error(
            fmt::format("picture size {}x{} is not within 1 to {}", width, height, largestPicture));
}

Picture RenderStage(const PictureStage& stage, const PictureOptions& options)
{
    CheckOptions(options);
    CheckColors(stage.items());
    const Box3f frame = FrameOf(stage.items(), options);
    const float aspect = static_cast<float>(options.width) / static_cast<float>(options.height);
    const PictureCamera camera =
        options.camera ? *options.camera : CameraAround(frame, Angle(options.view), aspect);
    const PictureView view{
        stage,         camera,         StudioLight(camera),    options.lighting,
        options.width, options.height, options.samplesPerAxis, std::max(Length(frame.size()), 1e-6f)};
    return Renderer(view).draw();
}

Picture Render(base::Span<const PictureItem> items, const PictureOptions& options)
{
    CheckOptions(options);
    CheckColors(items);
    return RenderStage(PictureStage(items), options);
}

Picture Join(base::Span<const Picture> pictures)
{
    Picture joined;
    joined.isEmpty = true;
    for (const Picture& picture : pictures) {
        joined.isEmpty = joined.isEmpty && picture.isEmpty;
        joined.width += picture.width;
        joined.height = std::max(joined.height, picture.height);
    }
    joined.rgb.assign(3 * static_cast<std::size_t>(joined.width) * static_cast<std::size_t>(joined.height),
                      0);
    std::size_t left = 0;
    for (const Picture& picture : pictures) {
        const std::size_t rowBytes = 3 * static_cast<std::size_t>(picture.width);
        for (std::size_t row = 0; row < static_cast<std::size_t>(picture.height); ++row)
            std::copy_n(picture.rgb.begin() + static_cast<std::ptrdiff_t>(row * rowBytes), rowBytes,
                        joined.rgb.begin() + static_cast<std::ptrdiff_t>(
                                                 3 * (row * static_cast<std::size_t>(joined.width) + left)));
        left += static_cast<std::size_t>(picture.width);
    }
    return joined;
}

} // namespace geometry
