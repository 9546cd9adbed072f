// Looking at what a conversion made.
// SPDX-License-Identifier: MIT

#include "conversion_results.h"

#include "dson/uri.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dzmorphdeltas.h"
#include "figure_kind.h"
#include "geometry/obj.h"
#include "geometry/picture.h"
#include "ks_daz-helpers.h"
#include "ks_morphlist.h"
#include "openhost/shapes.h"

namespace cli {

namespace {

namespace fs = std::filesystem;

const char* const jobNames[] = {"full", "head", "body"};

/// Values of properties that are set for a while.
class TemporaryValues {
public:
    TemporaryValues() = default;
    ~TemporaryValues()
    {
        for (auto saved = _saved.rbegin(); saved != _saved.rend(); ++saved)
            saved->first->setValue(saved->second);
    }
    TemporaryValues(const TemporaryValues&) = delete;
    TemporaryValues& operator=(const TemporaryValues&) = delete;

    void set(DzFloatProperty& property, float value)
    {
        _saved.emplace_back(&property, property.getValue());
        property.setValue(value);
    }

private:
    std::vector<std::pair<DzFloatProperty*, float>> _saved;
};

/// Switches a figure to the resolution of the conversion for a while.
class AtResolution {
public:
    AtResolution(const DzNode& node, GntResolution resolution)
        : _node(node), _before(kst::daz::GetNodeResolution(node))
    {
        kst::daz::SetNodeResolution(_node,
                                    resolution == GntResolution::Base
                                        ? kst::daz::NodeResolution::BaseResolution
                                        : kst::daz::NodeResolution::HighResolution,
                                    false);
    }
    ~AtResolution() { kst::daz::SetNodeResolution(_node, _before, false); }
    AtResolution(const AtResolution&) = delete;
    AtResolution& operator=(const AtResolution&) = delete;

private:
    const DzNode& _node;
    kst::daz::NodeResolution _before;
};

/// Puts the target where the conversion had it: placed like the source, on the floor, legs as the source's.
void PlaceForComparison(const GntParams& params, TemporaryValues& values)
{
    using kst::daz::PropertyLocation;
    for (const char* const name : {"XTranslate", "ZTranslate", "XRotate", "YRotate", "ZRotate"})
        values.set(
            *kst::daz::FindFloatProperty(params.figTarget, PropertyLocation::Node, name, true),
            kst::daz::FindFloatProperty(params.figSource, PropertyLocation::Node, name, true)->getValue());
    values.set(*kst::daz::FindFloatProperty(params.figTarget, PropertyLocation::Node, "YTranslate", true),
               0.0f);
    if (!GntNeedsThighPose(params.cloneShape))
        return;
    values.set(*kst::daz::FindBoneProperty(params.figTarget, "l_thigh", "ZRotate", true), GNT_THIGH_DEGREES);
    values.set(*kst::daz::FindBoneProperty(params.figTarget, "r_thigh", "ZRotate", true), -GNT_THIGH_DEGREES);
}

geometry::Picture Draw(const geometry::PolygonMeshView& mesh, geometry::View view,
                       const geometry::Box3f& frame)
{
    geometry::PictureItem item;
    item.mesh = mesh;
    geometry::PictureOptions options;
    options.view = view;
    options.width = view == geometry::View::Face ? 600 : 640;
    options.height = view == geometry::View::Face ? 600 : 800;
    if (view != geometry::View::Face)
        options.frame = frame;
    return geometry::Render({&item, 1}, options);
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

std::vector<std::string> JobNames(GntJobs jobs)
{
    std::vector<std::string> names;
    for (const GntJobIndex index : {GntFull, GntHead, GntBody})
        if (jobs.test(static_cast<GntJobFlag>(1 << index)))
            names.emplace_back(jobNames[index]);
    return names;
}

MorphReport DescribeMorph(DzFigure& target, const GntCreatedMorph& morph)
{
    MorphReport report;
    report.name = morph.name;
    report.label = morph.property->getLabel().toStdString();
    report.kind = jobNames[morph.kind];
    report.path = morph.property->getPath().toStdString();
    const DzMorph& made = kst::MorphList::FindMorph_X(target, morph.name);
    const geometry::SparseDeltas& deltas = openhost::MorphDeltas(made);
    report.verticesMoved = deltas.size();
    for (const geometry::DetailLevel& level : openhost::MorphDetail(made).levels)
        report.detailVerticesMoved += level.size();
    report.largestDisplacementMm = 10.0 * geometry::LargestLength(deltas);
    return report;
}

void AddSavedFiles(DzFigure& target, const fs::path& library, ConversionReport& report)
{
    for (MorphReport& morph : report.created) {
        const QString uri = kst::MorphList::FindMorph_X(target, morph.name).getAssetUri().toString();
        morph.savedFile = library.u8string() + dson::ParseUri(uri.toStdString()).path;
    }
}

bool MakesWholeFigure(GntJobs jobs)
{
    return jobs.test(GntJobFlag::Full) || (jobs.test(GntJobFlag::Head) && jobs.test(GntJobFlag::Body));
}

void WearMorphs(const std::vector<GntCreatedMorph>& created)
{
    const bool hasFull = !created.empty() && created.front().kind == GntFull;
    for (const GntCreatedMorph& morph : created)
        morph.property->setValue(!hasFull || morph.kind == GntFull ? 1.0f : 0.0f);
}

geometry::DistanceSummary MeasureDistance(const GntParams& params, GntResolution resolution)
{
    const AtResolution source(params.figSource, resolution), target(params.figTarget, resolution);
    TemporaryValues values;
    PlaceForComparison(params, values);
    const geometry::PolygonMeshView a = openhost::WorldMesh(params.figSource),
                                    b = openhost::WorldMesh(params.figTarget);
    std::vector<float> distances = geometry::SurfaceDistances(a.positions, b);
    const std::vector<float> back = geometry::SurfaceDistances(b.positions, a);
    distances.insert(distances.end(), back.begin(), back.end());
    return geometry::Summarize(std::move(distances));
}

void ExportFigure(DzFigure& figure, const fs::path& file, GntResolution resolution)
{
    const AtResolution shown(figure, resolution);
    geometry::ObjPart part;
    part.mesh = openhost::WorldMesh(figure);
    part.name = figure.getLabel().toStdString();
    geometry::WriteObj(file, {&part, 1});
}

std::vector<fs::path> DrawPictures(const GntParams& params, const fs::path& folder, GntResolution resolution)
{
    using geometry::View;
    fs::create_directories(folder);
    const AtResolution source(params.figSource, resolution), target(params.figTarget, resolution);
    TemporaryValues values;
    PlaceForComparison(params, values);
    const geometry::PolygonMeshView a = openhost::WorldMesh(params.figSource),
                                    b = openhost::WorldMesh(params.figTarget);
    // One frame for both, so that a difference in size is seen.
    geometry::Box3f frame = geometry::BoundingBox(a.positions);
    for (const geometry::Vec3f position : b.positions)
        frame.include(position);
    std::vector<fs::path> files;
    const auto write = [&](const char* name, const geometry::Picture& picture) {
        files.push_back(folder / name);
        geometry::WritePng(files.back(), picture);
    };
    const geometry::Picture sourceFront = Draw(a, View::Front, frame),
                            targetFront = Draw(b, View::Front, frame);
    write("source.png", sourceFront);
    write("converted.png", targetFront);
    const std::vector<geometry::Picture> bodies{sourceFront, targetFront, Draw(a, View::ThreeQuarter, frame),
                                                Draw(b, View::ThreeQuarter, frame)};
    write("comparison-body.png", geometry::Join(bodies));
    const std::vector<geometry::Picture> faces{Draw(a, View::Face, frame), Draw(b, View::Face, frame)};
    write("comparison-face.png", geometry::Join(faces));
    return files;
}

} // namespace cli
