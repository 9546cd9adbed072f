// A conversion as a page to look at.
// SPDX-License-Identifier: MIT

#include "conversions/conversion_page.h"

#include "base/counted.h"
#include "command.h"
#include "conversions/comparison.h"
#include "conversions/conversion_json.h"
#include "dson/reader.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "openhost/scene_picture.h"
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
using Values = std::vector<std::vector<float>>; ///< cm, one per vertex of each mesh

/// A page stays small enough for every browser.
constexpr std::size_t mostVertices = 200000;

std::vector<std::vector<Vec3f>> PositionsOf(DzFigure& figure)
{
    std::vector<std::vector<Vec3f>> positions;
    for (const geometry::PolygonMeshView& mesh : BodyOf(figure).meshes)
        positions.emplace_back(mesh.positions.begin(), mesh.positions.end());
    return positions;
}

/// The dials of the new morphs, for a while.
class MorphDials {
public:
    explicit MorphDials(const GntOutcome& outcome) : _created(outcome.created)
    {
        for (const GntCreatedMorph& morph : _created) {
            _worn.push_back(morph.property->getValue());
            _values.set(*morph.property, 0.0f);
        }
    }

    const std::vector<float>& worn() const { return _worn; } ///< where they stood
    void wear()
    {
        for (std::size_t i = 0; i < _created.size(); ++i)
            _created[i].property->setValue(_worn[i]);
    }
    void wearOnly(std::size_t morph)
    {
        for (std::size_t i = 0; i < _created.size(); ++i)
            _created[i].property->setValue(i == morph ? 1.0f : 0.0f);
    }

private:
    const std::vector<GntCreatedMorph>& _created;
    std::vector<float> _worn;
    TemporaryValues _values;
};

Values DisplacementsOf(const GntOutcome& outcome)
{
    DzFigure& target = outcome.params->figTarget;
    MorphDials dials(outcome);
    const std::vector<std::vector<Vec3f>> neutral = PositionsOf(target);
    dials.wear();
    const std::vector<std::vector<Vec3f>> worn = PositionsOf(target);
    Values lengths(worn.size());
    for (std::size_t m = 0; m < worn.size(); ++m)
        for (std::size_t v = 0; v < worn[m].size(); ++v)
            lengths[m].push_back(geometry::Length(worn[m][v] - neutral[m][v]));
    return lengths;
}

std::vector<float> Joined(const Values& values)
{
    std::vector<float> all;
    for (const std::vector<float>& some : values)
        all.insert(all.end(), some.begin(), some.end());
    return all;
}

/// What the colours of the target stand for.
struct Difference {
    Values values;
    ColorScale scale;
    std::string title, alt, text;
};

Difference DifferenceOf(const GntOutcome& outcome, const ConversionReport& report)
{
    if (report.distance)
        return {report.distances.target, ChooseScale(Joined(report.distances.target)), "Difference",
                "the converted figure coloured by its distance to the source",
                "Distance of each vertex of the converted figure to the source\u2019s surface."};
    Difference difference{DisplacementsOf(outcome),
                          {},
                          "Displacement",
                          "the converted figure coloured by how far the morphs move it",
                          "How far the new morphs move each vertex; the distance to the source is not "
                          "measured where the morphs make a part of the figure."};
    difference.scale = ChooseScale(Joined(difference.values));
    return difference;
}

std::vector<std::vector<LinearRgb>> ColorsOf(const Difference& difference, const Body& body)
{
    std::vector<std::vector<LinearRgb>> colors;
    for (std::size_t m = 0; m < body.meshes.size(); ++m) {
        std::vector<LinearRgb>& own = colors.emplace_back(body.meshes[m].vertexCount(), ColorOfNothing());
        if (m < difference.values.size() && difference.values[m].size() == own.size())
            std::transform(difference.values[m].begin(), difference.values[m].end(), own.begin(),
                           [&](float cm) { return difference.scale.color(cm); });
    }
    return colors;
}

/// Draws into the page's data.
void DrawFigures(const GntOutcome& outcome, const Difference& difference, Json& shown)
{
    const Comparison comparison(outcome, outcome.request.resolution);
    // With eyes, mouth, hair and clothes in their places; what was measured is coloured alone.
    PictureRow source{"Source", "the source", openhost::FigureItems(outcome.params->figSource).items};
    PictureRow target{"Converted", "the converted figure",
                      openhost::FigureItems(outcome.params->figTarget).items};
    const Body body = BodyOf(outcome.params->figTarget);
    const std::vector<std::vector<LinearRgb>> colors = ColorsOf(difference, body);
    PictureRow map{difference.title, difference.alt, {}, geometry::Lighting::Plain};
    for (std::size_t m = 0; m < body.meshes.size(); ++m) {
        geometry::PictureItem item;
        item.mesh = body.meshes[m];
        item.vertexColors = colors[m];
        map.items.push_back(item);
    }
    const PictureFrames frames = FramesOf({source.items, target.items});
    shown["pictures"] = DrawRows({source, target, map}, frames);
    if (frames.farOff > 0)
        shown["picturesNote"] = fmt::format("{} too far off to be in the pictures.",
                                            base::Counted(frames.farOff, "vertex lies", "vertices lie"));
}

Json HistogramOf(const ConversionReport& report)
{
    constexpr std::size_t bars = 60;
    const std::vector<float> distances = report.distances.all();
    const ColorScale scale = ChooseScale(distances);
    const double step = scale.topMm / bars;
    std::vector<std::size_t> counts(bars, 0);
    for (const float cm : distances)
        if (const double mm = millimetresPerCentimetre * cm; std::isfinite(cm) && mm <= scale.topMm)
            ++counts[std::min(bars - 1, static_cast<std::size_t>(mm / step))];
    const std::string beyond =
        scale.beyondCount > 0
            ? fmt::format(" {} of them lie beyond the right end, the farthest at {:.3g} mm.",
                          Grouped(scale.beyondCount), scale.largestMm)
            : std::string();
    return {{"step", step},
            {"counts", counts},
            {"what", "How many vertices are how far from the other figure"},
            {"text", fmt::format("The {} vertices of both figures, each to the nearest point of the other "
                                 "figure\u2019s surface.{}",
                                 Grouped(scale.count), beyond)}};
}

/// Of the cage's vertices, which stand first among those of every level.
Json StepsOf(const Difference& difference, const Body& cage)
{
    std::vector<std::uint8_t> steps;
    for (std::size_t m = 0; m < cage.meshes.size(); ++m)
        for (std::size_t v = 0; v < cage.meshes[m].vertexCount(); ++v)
            steps.push_back(m < difference.values.size() && v < difference.values[m].size()
                                ? difference.scale.step(difference.values[m][v])
                                : ColorScale{}.step(NAN));
    return PackBytes(steps);
}

Json MorphsOf(const GntOutcome& outcome, const JoinedMesh& neutral, MorphDials& dials)
{
    Json morphs = Json::array();
    for (std::size_t i = 0; i < outcome.created.size(); ++i) {
        dials.wearOnly(i);
        const JoinedMesh moved = Join(BodyOf(outcome.params->figTarget).meshes);
        std::vector<Vec3f> deltas(moved.positions.size());
        std::transform(moved.positions.begin(), moved.positions.end(), neutral.positions.begin(),
                       deltas.begin(), [](Vec3f a, Vec3f b) { return a - b; });
        Json morph = PackDeltas(deltas);
        morph["label"] = outcome.created[i].property->getLabel().toStdString();
        morph["value"] = dials.worn()[i];
        morphs.push_back(std::move(morph));
    }
    return morphs;
}

Json FigureToTurn(const GntOutcome& outcome, const ConversionReport& report, const Difference& difference)
{
    const Comparison comparison(outcome, GntResolution::Base);
    const JoinedMesh source = Join(BodyOf(outcome.params->figSource).meshes);
    const ColorScale moved =
        report.distance ? ChooseScale(Joined(DisplacementsOf(outcome))) : difference.scale;
    MorphDials dials(outcome);
    const JoinedMesh neutral = Join(BodyOf(outcome.params->figTarget).meshes);
    if (source.positions.size() + neutral.positions.size() > mostVertices)
        return nullptr;
    Json figure = PackMesh(neutral);
    figure["morphs"] = MorphsOf(outcome, neutral, dials);
    figure["source"] = PackMesh(source);
    figure["displacements"] =
        DescribeScale(moved, "How far the morphs move each vertex; the end fits the morphs as worn.");
    if (report.distance)
        figure["distances"] = {{"values", StepsOf(difference, BodyOf(outcome.params->figTarget))},
                               {"scale", DescribeScale(difference.scale, difference.text)}};
    return figure;
}

std::string FigureNote(const ConversionReport& report, const Json& figure)
{
    if (figure.is_null())
        return fmt::format("The figures have more than {} vertices, too many for a page.", mostVertices);
    std::string note;
    if (report.subdLevel)
        note = fmt::format("The page carries the base mesh of a conversion at level {}; the pictures show "
                           "the detail. ",
                           *report.subdLevel);
    if (std::any_of(report.created.begin(), report.created.end(),
                    [](const MorphReport& morph) { return morph.jointsMoved.has_value(); }))
        note += "The joints follow the morphs here; the distances were measured before they did. ";
    return note;
}

std::vector<std::string> BasesOf(const GntRequest& request)
{
    std::vector<std::string> bases;
    for (const auto& [base, value] : request.bases)
        bases.push_back(fmt::format("{}={:g}", BaseName(base), value));
    if (request.matchHeight)
        bases.push_back("height=auto");
    return bases;
}

} // namespace

Json ShowConversion(const GntOutcome& outcome, const ConversionReport& report)
{
    const Difference difference = DifferenceOf(outcome, report);
    Json shown{{"colors", ColorTable()},
               {"pictureWidth", pagePictureWidth},
               {"pictureHeight", pagePictureHeight},
               {"scale", DescribeScale(difference.scale, difference.text)},
               {"figure", FigureToTurn(outcome, report, difference)}};
    DrawFigures(outcome, difference, shown);
    shown["figureNote"] = FigureNote(report, shown["figure"]);
    if (report.distance)
        shown["histogram"] = HistogramOf(report);
    return shown;
}

void WriteConversionPage(const ConversionRequest& request, const ConversionReport& report, Json shown,
                         const Progress& progress)
{
    Page page;
    page.title = "Conversion of " + report.source.label;
    page.data = std::move(shown);
    page.data["title"] = page.title;
    page.data["report"] = DescribeConversion(report, progress, true);
    page.data["sourceFile"] = FileText(request.source);
    page.data["targetFile"] = FileText(request.target);
    page.data["bases"] = BasesOf(request.morphs);
    page.data["command"] = request.command;
    page.scripts = {"conversion.js"};
    page.hasFigures = true;
    WritePage(request.page, page);
}

} // namespace cli
