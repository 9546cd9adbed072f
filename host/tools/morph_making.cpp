// Morphs that programs make of shapes which they have computed.
// SPDX-License-Identifier: MIT

#include "openhost/morph_making.h"

#include "base/errors.h"
#include "dzmorph.h"
#include "dzmorphdeltas.h"
#include "dznode.h"
#include "dzobject.h"
#include "dzpresentation.h"
#include "figure/deltas_access.h"
#include "figure/pipeline.h"
#include "loading/kept_parts.h"
#include "reverse_deformation.h"
#include "scene/node_transform.h"

#include <fmt/format.h>

namespace openhost {

namespace {

using base::Span;
using geometry::Vec3f;

Pipeline& PipelineOf(const DzNode& figure)
{
    DzObject* const object = figure.getObject();
    if (!object || !object->pipeline().hasMesh())
        throw base::Error(figure.getLabel().toStdString() + " has no mesh");
    return object->pipeline();
}

std::vector<Vec3f> Copy(Span<const Vec3f> positions)
{
    return {positions.begin(), positions.end()};
}

} // namespace

struct MorphMaker::Impl {
    Impl(const DzNode& figure, int atLevel)
        : label(figure.getLabel().toStdString()), pipeline(PipelineOf(figure)), level(atLevel),
          place(WorldTransform(figure)), shaping(ShapingOffsets(pipeline, level)),
          neutral(pipeline.base().positions), rest(Copy(pipeline.formedCage())),
          posed(Copy(pipeline.posedCage())), skin(pipeline.skinPose())
    {
        RequireInvertible(place, figure);
        if (level == 0)
            return;
        subdivision = pipeline.subdivision(level);
        details = pipeline.activeDetails();
    }

    std::size_t vertexCount() const
    {
        return level == 0 ? neutral.size() : subdivision->topology(level)->vertexCount;
    }
    /// In figure space, as the skin leaves it.
    std::vector<Vec3f> posedShape(Span<const Vec3f> world) const
    {
        std::vector<Vec3f> positions = UndoPlace(place, {world.begin(), world.end()});
        for (std::size_t v = 0; v < shaping.size(); ++v)
            positions[v] -= shaping[v];
        return positions;
    }
    geometry::SubdividedMorph ofCage(Span<const Vec3f> shape, float tolerance) const
    {
        std::vector<Vec3f> deltas = UndoSkin(skin, shape);
        for (std::size_t v = 0; v < deltas.size(); ++v)
            deltas[v] -= rest[v];
        geometry::SubdividedMorph made;
        made.deltas = geometry::MakeDeltas(deltas, 0.0f);
        geometry::DropShort(made.deltas, tolerance);
        return made;
    }
    geometry::SubdividedMorph ofFineMesh(Span<const Vec3f> shape, float tolerance) const
    {
        geometry::PresentShape present{neutral, rest, posed, {}, details};
        if (!skin.atRest)
            present.pose = {skin.weights, skin.poses, skin.blend};
        geometry::MorphSplitOptions options;
        options.tolerance = tolerance;
        return geometry::SplitMorph(*subdivision, shape, level, present, options);
    }

    const std::string label;
    Pipeline& pipeline;
    const int level;
    const NodeTransform place;
    const std::vector<Vec3f> shaping, neutral, rest, posed;
    const SkinPose skin;
    std::shared_ptr<const geometry::Subdivision> subdivision; ///< null for the cage
    std::vector<geometry::ActiveDetail> details;
};

MorphMaker::MorphMaker(const DzNode& figure, int level) : _impl(std::make_unique<const Impl>(figure, level))
{
}

MorphMaker::~MorphMaker() = default;

geometry::SubdividedMorph MorphMaker::make(Span<const Vec3f> world, float tolerance) const
{
    if (world.size() != _impl->vertexCount())
        throw base::FormatError("the shape has {} vertices but {} has {}", world.size(), _impl->label,
                                _impl->vertexCount());
    const std::vector<Vec3f> shape = _impl->posedShape(world);
    return _impl->level == 0 ? _impl->ofCage(shape, tolerance) : _impl->ofFineMesh(shape, tolerance);
}

DzMorph& AddMorph(DzNode& figure, const QString& name, geometry::SubdividedMorph made)
{
    const auto vertexCount = static_cast<int>(PipelineOf(figure).base().vertexCount());
    DzMorphDeltas* const deltas = DeltasAccess::create(std::move(made.deltas), vertexCount);
    DeltasAccess::assignDetail(*deltas, std::move(made.detail));
    auto morph = std::make_unique<DzMorph>(deltas);
    morph->setName(name);
    morph->setLabel(name);
    if (figure.getObject()->addModifier(morph.get()) != DZ_NO_ERROR)
        throw base::Error(
            fmt::format("{} does not take a morph {}", figure.getLabel().toStdString(), name.toStdString()));
    return *morph.release();
}

void SetPresentation(DzMorph& morph, const QString& type, std::string json)
{
    auto presentation = std::make_unique<DzPresentation>();
    presentation->setType(type);
    morph.setPresentation(presentation.release());
    KeptModifier kept;
    kept.definition.members.emplace_back("presentation", std::move(json));
    Keep(morph, std::move(kept));
}

} // namespace openhost
