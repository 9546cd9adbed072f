// Looking at what a conversion made.
// SPDX-License-Identifier: MIT

#include "conversions/conversion_results.h"

#include "base/folders.h"
#include "command.h"
#include "conversions/comparison.h"
#include "dson/uri.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dzmorphdeltas.h"
#include "dzpresentation.h"
#include "figure_kind.h"
#include "geometry/obj.h"
#include "geometry/picture_box.h"
#include "geometry/picture_stage.h"
#include "interrupt.h"
#include "ks_daz-helpers.h"
#include "ks_morphlist.h"
#include "openhost/rig_adjustment.h"
#include "openhost/scene_picture.h"
#include "openhost/shapes.h"
#include "option_words.h"
#include "report.h"

namespace cli {

namespace {

namespace fs = std::filesystem;

/// Of each vertex to the nearest of the other surfaces.
std::vector<std::vector<float>> DistancesOf(const std::vector<geometry::PolygonMeshView>& from,
                                            const std::vector<geometry::PolygonMeshView>& to)
{
    std::vector<std::vector<float>> distances;
    for (const geometry::PolygonMeshView& mesh : from) {
        std::vector<float> nearest = geometry::SurfaceDistances(mesh.positions, to.front());
        for (std::size_t i = 1; i < to.size(); ++i) {
            const std::vector<float> others = geometry::SurfaceDistances(mesh.positions, to[i]);
            std::transform(nearest.begin(), nearest.end(), others.begin(), nearest.begin(),
                           [](float a, float b) { return std::min(a, b); });
        }
        distances.push_back(std::move(nearest));
    }
    return distances;
}

geometry::Picture Draw(const geometry::PictureStage& stage, geometry::View view, const geometry::Box3f& frame)
{
    geometry::PictureOptions options;
    options.view = view;
    options.width = view == geometry::View::Face ? 600 : 640;
    options.height = view == geometry::View::Face ? 600 : 800;
    if (view != geometry::View::Face)
        options.frame = frame;
    return geometry::RenderStage(stage, options);
}

const char* const sourcePicture = "source.png";
const char* const convertedPicture = "converted.png";
const char* const bodyPicture = "comparison-body.png";
const char* const facePicture = "comparison-face.png";

/// In their order, so that it is known what is there when one cannot be written.
std::vector<fs::path> WritePictures(const fs::path& folder, const std::vector<std::string>& names,
                                    const std::vector<geometry::Picture>& pictures)
{
    const std::vector<std::vector<std::uint8_t>> encoded = geometry::EncodePngs(pictures);
    std::vector<fs::path> files;
    for (std::size_t i = 0; i < names.size(); ++i) {
        files.push_back(folder / names[i]);
        geometry::WritePng(files.back(), encoded[i]);
        NoteWritten(FileText(files.back()) + " is written");
    }
    return files;
}

} // namespace

FigureReport DescribeFigure(DzFigure& figure)
{
    FigureReport report;
    report.label = figure.getLabel().toStdString();
    report.assetUri = kst::daz::GetNodeAssetUri(figure);
    report.kind = FigureKindName(kst::daz::GetBaseFigure(report.assetUri));
    report.vertices = openhost::CageVertexCount(figure);
    return report;
}

void TellOfHeight(base::Diagnostics& diagnostics)
{
    diagnostics.push_back({base::Severity::Warning,
                           {},
                           {},
                           OptionWord("--base") +
                               " height=auto: the height dial cannot make the target as tall as the source"});
}

void DescribeOutcome(const GntOutcome& outcome, ConversionReport& report)
{
    report.activeMorphs = outcome.activeMorphCount;
    report.cloneShape = std::string(GntClonePropertyName(outcome.params->cloneShape));
    for (const GntJob& job : GNT_JOBS)
        if (outcome.request.jobs.test(job.flag))
            report.jobs.emplace_back(job.keyword);
    if (outcome.request.resolution == GntResolution::Subd)
        report.subdLevel = outcome.request.subdLevel;
    if (!outcome.isHeightMatched)
        TellOfHeight(report.diagnostics);
    for (const auto& morph : outcome.missing)
        report.missing.emplace_back(morph.first, morph.second);
}

MorphReport DescribeMorph(DzFigure& target, const GntCreatedMorph& morph)
{
    MorphReport report;
    report.name = morph.name;
    report.label = morph.property->getLabel().toStdString();
    report.kind = GNT_JOBS.at(static_cast<std::size_t>(morph.kind)).keyword;
    report.path = morph.property->getPath().toStdString();
    const DzMorph& made = kst::MorphList::FindMorph_X(target, morph.name);
    const geometry::SparseDeltas& deltas = openhost::MorphDeltas(made);
    report.verticesMoved = deltas.size();
    for (const geometry::DetailLevel& level : openhost::MorphDetail(made).levels)
        report.detailVerticesMoved += level.size();
    report.largestDisplacementMm = 10.0 * geometry::LargestLength(deltas);
    return report;
}

void AdjustRig(const GntOutcome& outcome, ConversionReport& report)
{
    DzFigure& target = outcome.params->figTarget;
    openhost::NewMorphs morphs;
    for (const GntCreatedMorph& created : outcome.created) {
        DzMorph& morph = kst::MorphList::FindMorph_X(target, created.name);
        if (created.kind == GntFull)
            morphs.whole = &morph;
        else
            morphs.parts.push_back(&morph);
    }
    for (const openhost::AdjustedRig& adjusted : openhost::AdjustRig(target, morphs))
        for (MorphReport& told : report.created)
            if (told.name == adjusted.morph->getName().toStdString()) {
                told.jointsMoved = adjusted.joints;
                told.largestJointShiftMm = millimetresPerCentimetre * adjusted.largestShiftCm;
            }
}

fs::path SavedFile(DzFigure& target, const std::string& morph, const fs::path& library)
{
    const QString uri = kst::MorphList::FindMorph_X(target, morph).getAssetUri().toString();
    const std::string path = dson::ParseUri(uri.toStdString()).path;
    return path.empty() ? fs::path() : fs::path(library.u8string() + path);
}

void AddSavedFiles(DzFigure& target, const fs::path& library, ConversionReport& report)
{
    for (MorphReport& morph : report.created)
        morph.savedFile = FileText(SavedFile(target, morph.name, library));
}

void MeasureDistance(const GntOutcome& outcome, Measuring how, ConversionReport& report)
{
    TemporaryValues dials;
    for (const GntCreatedMorph& morph : outcome.created)
        dials.set(*morph.property, morph.property->getValue());
    GntWearMorphs(outcome.created);
    const Comparison comparison(outcome, outcome.request.resolution);
    const Body source = BodyOf(outcome.params->figSource), target = BodyOf(outcome.params->figTarget);
    for (const Body* const body : {&source, &target})
        report.measuredParts.insert(report.measuredParts.end(), body->parts.begin(), body->parts.end());
    if (how == Measuring::Sample) {
        report.distance = geometry::EstimateDistances(source.meshes, target.meshes);
        return;
    }
    report.distances = {DistancesOf(source.meshes, target.meshes), DistancesOf(target.meshes, source.meshes)};
    std::vector<float> all = report.distances.all();
    geometry::DistanceEstimate measured;
    measured.measured = measured.all = all.size();
    measured.summary = geometry::Summarize(std::move(all));
    report.distance = measured;
}

void ExportFigure(DzFigure& figure, const fs::path& file, GntResolution resolution)
{
    const AtResolution shown(figure, resolution);
    geometry::ObjPart part;
    part.mesh = openhost::WorldMesh(figure);
    part.name = figure.getLabel().toStdString();
    const geometry::TexCoords texCoords = openhost::WorldTexCoords(figure);
    if (!texCoords.cornerIndices.empty())
        part.texCoords = &texCoords;
    geometry::WriteObj(file, {&part, 1});
}

std::vector<std::string> PictureNames()
{
    return {sourcePicture, convertedPicture, bodyPicture, facePicture};
}

std::vector<fs::path> DrawPictures(const GntOutcome& outcome, const fs::path& folder)
{
    using geometry::View;
    base::MakeFolders(folder);
    const Comparison comparison(outcome, outcome.request.resolution);
    // With eyes, mouth, hair and clothes in their places.
    const std::vector<geometry::PictureItem> a = openhost::FigureItems(outcome.params->figSource).items,
                                             b = openhost::FigureItems(outcome.params->figTarget).items;
    // One frame for both, so that a difference in size is seen.
    geometry::Box3f frame;
    for (const auto& items : {a, b})
        for (const geometry::PictureItem& item : items)
            if (const geometry::Box3f box = geometry::BoxToShow(item.mesh); !box.isEmpty()) {
                frame.include(box.min);
                frame.include(box.max);
            }
    const geometry::PictureStage stageA(a), stageB(b);
    const geometry::Picture frontA = Draw(stageA, View::Front, frame),
                            frontB = Draw(stageB, View::Front, frame);
    // What is drawn is written at once: whoever interrupts the rest keeps it.
    std::vector<fs::path> files = WritePictures(folder, {sourcePicture, convertedPicture}, {frontA, frontB});
    const std::vector<geometry::Picture> bodies{frontA, frontB, Draw(stageA, View::ThreeQuarter, frame),
                                                Draw(stageB, View::ThreeQuarter, frame)};
    const std::vector<geometry::Picture> faces{Draw(stageA, View::Face, frame),
                                               Draw(stageB, View::Face, frame)};
    const std::vector<fs::path> joined =
        WritePictures(folder, {bodyPicture, facePicture}, {geometry::Join(bodies), geometry::Join(faces)});
    files.insert(files.end(), joined.begin(), joined.end());
    return files;
}

} // namespace cli
