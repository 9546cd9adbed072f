// Converted morphs as a page to look at.
// SPDX-License-Identifier: MIT

#include "morphs/morph_page.h"

#include "command.h"
#include "conversions/comparison.h"
#include "dzfacetmesh.h"
#include "dzfigure.h"
#include "dzobject.h"
#include "dzshape.h"
#include "geometry/picture_box.h"
#include "morphs/morph_json.h"
#include "openhost/shapes.h"
#include "page/color_scale.h"
#include "page/page_mesh.h"
#include "page/page_pictures.h"
#include "page/page_writer.h"
#include "progress.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

namespace cli {

namespace {

using geometry::Vec3f;

constexpr std::size_t mostPictures = 12;
constexpr std::size_t mostPageBytes = 10'000'000;
constexpr std::size_t scriptBytes = 1'000'000;    ///< about what every page has
constexpr std::size_t mostMorphBytes = 9'500'000; ///< kept of morphs until it shows how many find place

geometry::PolygonMesh CageAtRest(DzFigure& figure)
{
    const AtResolution base(figure, GntResolution::Base);
    geometry::PolygonMesh cage;
    cage.topology = std::make_shared<geometry::Topology>(*openhost::WorldMesh(figure).topology);
    const auto* const mesh =
        qobject_cast<const DzVertexMesh*>(figure.getObject()->getCurrentShape()->getGeometry());
    for (int v = 0; mesh && v < mesh->getNumVertices(); ++v) {
        const DzVec3 position = mesh->getVertex(v);
        cage.positions.push_back({position.m_x, position.m_y, position.m_z});
    }
    cage.positions.resize(cage.topology->vertexCount);
    return cage;
}

/// Of what moves by more than a little.
geometry::Box3f MovedBox(const std::vector<Vec3f>& positions, const std::vector<Vec3f>& deltas, float largest)
{
    std::vector<Vec3f> moved;
    for (std::size_t v = 0; v < positions.size(); ++v)
        if (geometry::Length(deltas[v]) > 0.1f * largest) {
            moved.push_back(positions[v]);
            moved.push_back(positions[v] + deltas[v]);
        }
    geometry::Box3f figure = geometry::BoxToShow(positions);
    // What moves to the next town is not to be followed there.
    const Vec3f around = figure.size() * 3.0f;
    figure = {figure.min - around, figure.max + around};
    geometry::Box3f box;
    for (const Vec3f position : moved)
        if (geometry::IsInside(position, figure))
            box.include(position);
    return box;
}

/// Around the same middle, so that pictures of both figures have one scale.
geometry::Box3f Resized(const geometry::Box3f& box, Vec3f size)
{
    const Vec3f middle = (box.min + box.max) * 0.5f;
    return {middle - size * 0.5f, middle + size * 0.5f};
}

Vec3f SizeOfBoth(const geometry::Box3f& a, const geometry::Box3f& b)
{
    constexpr float smallest = 16.0f; // cm, so that one sees where on the figure it is
    const auto larger = [](float one, float other) { return 1.25f * std::max({one, other, smallest}); };
    const Vec3f sizeA = a.size(), sizeB = b.size();
    return {larger(sizeA.x, sizeB.x), larger(sizeA.y, sizeB.y), larger(sizeA.z, sizeB.z)};
}

/// From where most of what moves is seen.
geometry::View ViewOf(const geometry::PolygonMesh& mesh, const std::vector<Vec3f>& deltas)
{
    const geometry::Box3f whole = geometry::BoundingBox(mesh.positions);
    const float middle = 0.5f * (whole.min.z + whole.max.z);
    double before = 0.0, behind = 0.0;
    for (std::size_t v = 0; v < deltas.size(); ++v)
        (mesh.positions[v].z >= middle ? before : behind) += geometry::Length(deltas[v]);
    return behind > 1.5 * before ? geometry::View::Back : geometry::View::Front;
}

struct Moved {
    const geometry::PolygonMesh& mesh;
    std::vector<Vec3f> deltas;
};

std::string DrawMoved(const Moved& moved, const ColorScale& scale, geometry::View view,
                      const geometry::Box3f& frame)
{
    std::vector<Vec3f> positions = moved.mesh.positions;
    std::vector<LinearRgb> colors;
    for (std::size_t v = 0; v < positions.size(); ++v) {
        positions[v] = positions[v] + moved.deltas[v];
        colors.push_back(scale.color(geometry::Length(moved.deltas[v])));
    }
    geometry::PictureItem item;
    item.mesh = {moved.mesh.topology.get(), positions};
    item.vertexColors = colors;
    geometry::PictureOptions options;
    options.view = view;
    options.frame = frame;
    options.width = options.height = 240;
    options.lighting = geometry::Lighting::Plain;
    return DataUri(geometry::Render({&item, 1}, options));
}

/// Of its text, also where names are no UTF-8.
std::size_t SizeOf(const Json& json)
{
    return json.dump(-1, ' ', false, Json::error_handler_t::replace).size();
}

Json SettingsOf(const MorphConversionRequest& request)
{
    return {{"command", request.command},
            {"sourceFile", FileText(request.source)},
            {"targetFile", FileText(request.target)},
            {"value", request.value},
            {"controllers", request.takesControllers},
            {"correctives", request.takesCorrectives},
            {"resolution", request.resolution == GntResolution::Subd ? "subdivided" : "base"}};
}

} // namespace

MorphGallery::MorphGallery(DzFigure& source, DzFigure& target)
    : _source(CageAtRest(source)), _target(CageAtRest(target))
{
}

void MorphGallery::add(const ConvertedMorph& told, const std::vector<Vec3f>& displacements,
                       const geometry::SparseDeltas& made)
{
    ++_count;
    const auto isLarger = [](double largestMm, const Shown& other) { return largestMm > other.largestMm; };
    const auto place = std::upper_bound(_shown.begin(), _shown.end(), told.largestDisplacementMm, isLarger);
    const auto rank = static_cast<std::size_t>(place - _shown.begin());
    if (made.empty() || (place == _shown.end() && _bytes >= mostMorphBytes))
        return;
    Shown shown{told.name, told.label, told.largestDisplacementMm, {}, made};
    if (rank < mostPictures)
        shown.displacements.assign(displacements.begin(),
                                   displacements.begin() + static_cast<std::ptrdiff_t>(std::min(
                                                               displacements.size(), _source.vertexCount())));
    _bytes += shown.bytes();
    _shown.insert(place, std::move(shown));
    if (_shown.size() > mostPictures)
        _shown[mostPictures].displacements = {};
    while (_bytes > mostMorphBytes && _shown.size() > mostPictures)
        dropSmallest();
}

void MorphGallery::dropSmallest()
{
    _bytes -= _shown.back().bytes();
    _shown.pop_back();
}

Json MorphGallery::draw(const Shown& shown) const
{
    const Moved made{_target, geometry::ToDense(shown.made, _target.vertexCount())};
    Moved source{_source, shown.displacements};
    source.deltas.resize(_source.vertexCount());
    float largest = geometry::LargestLength(shown.made);
    for (const Vec3f delta : source.deltas)
        largest = std::max(largest, geometry::Length(delta));
    const ColorScale scale = ScaleTo(largest);
    const geometry::Box3f sourceBox = MovedBox(_source.positions, source.deltas, largest),
                          madeBox = MovedBox(_target.positions, made.deltas, largest);
    const Vec3f size = SizeOfBoth(sourceBox, madeBox);
    const geometry::View view = ViewOf(_target, made.deltas);
    return {
        {"name", shown.name},
        {"label", shown.label},
        {"largest", Rounded(shown.largestMm, 2)},
        {"top", scale.topMm},
        {"source", DrawMoved(source, scale, view, Resized(sourceBox.isEmpty() ? madeBox : sourceBox, size))},
        {"made", DrawMoved(made, scale, view, Resized(madeBox, size))}};
}

Json MorphGallery::show(std::size_t tableBytes) const
{
    if (_shown.empty())
        return Json::object();
    Json stills = Json::array();
    for (std::size_t i = 0; i < std::min(mostPictures, _shown.size()); ++i)
        stills.push_back(draw(_shown[i]));
    JoinedMesh cage = Join({_target.view()});
    Json figure = PackMesh(cage), morphs = Json::array();
    const std::size_t used = scriptBytes + tableBytes + SizeOf(figure) + SizeOf(stills);
    std::size_t left = used < mostPageBytes ? mostPageBytes - used : 0;
    for (const Shown& shown : _shown) {
        Json morph = PackDeltas(geometry::ToDense(shown.made, _target.vertexCount()));
        const std::size_t bytes = SizeOf(morph) + shown.label.size();
        if (!morphs.empty() && bytes > left)
            break;
        left -= std::min(left, bytes);
        morph["label"] = shown.label.empty() ? shown.name : shown.label;
        morph["value"] = morphs.empty() ? 1.0 : 0.0;
        morph["displacements"] = DescribeScale(ScaleTo(geometry::LargestLength(shown.made)),
                                               "How far the morph moves each vertex.");
        morphs.push_back(std::move(morph));
    }
    const std::size_t carried = morphs.size();
    figure["morphs"] = std::move(morphs);
    figure["hasPicker"] = true;
    figure["what"] = "The target with the picked morph, to be turned";
    return {{"stills", stills}, {"figure", figure}, {"carried", carried}, {"converted", _count}};
}

Json ShowMorphs(const MorphGallery* gallery, const MorphConversionReport& report, const Progress& progress)
{
    return gallery ? gallery->show(SizeOf(DescribeMorphConversion(report, progress, true))) : Json::object();
}

void WriteMorphPage(const MorphConversionRequest& request, const MorphConversionReport& report, Json shown,
                    const Progress& progress)
{
    Page page;
    page.title = "Morphs of " + report.source;
    page.hasFigures = shown.contains("figure");
    page.data = std::move(shown);
    page.data["colors"] = ColorTable();
    page.data["title"] = page.title;
    page.data["report"] = DescribeMorphConversion(report, progress, true);
    page.data["settings"] = SettingsOf(request);
    page.scripts = {"morphs.js"};
    WritePage(request.page, page);
}

} // namespace cli
