// Source and target side by side, as a conversion compares them.
// SPDX-License-Identifier: MIT

#include "conversions/comparison.h"

#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzpresentation.h"
#include "gnt_convert-figure.h"
#include "openhost/scene_picture.h"
#include "openhost/shapes.h"

namespace cli {

namespace {

/// Puts the target where the conversion had it: placed like the source, on the floor, legs as the source's.
void PlaceForComparison(const GntOutcome& outcome, TemporaryValues& values)
{
    using kst::daz::PropertyLocation;
    DzFigure &source = outcome.params->figSource, &target = outcome.params->figTarget;
    for (const char* const name : GNT_PLACING_PROPERTIES)
        values.set(*kst::daz::FindFloatProperty(target, PropertyLocation::Node, name, true),
                   kst::daz::FindFloatProperty(source, PropertyLocation::Node, name, true)->getValue());
    values.set(*kst::daz::FindFloatProperty(target, PropertyLocation::Node, GNT_LIFTING_PROPERTY, true),
               0.0f);
    const float thighDegrees = *outcome.request.thighDegrees;
    if (thighDegrees == 0.0f)
        return;
    for (const GntThigh& thigh : GNT_THIGHS)
        values.set(*kst::daz::FindBoneProperty(target, thigh.bone, GNT_THIGH_PROPERTY, true),
                   thigh.sign * thighDegrees);
}

/// Eyes, mouth, lashes and the like, which are parts of the body in one generation of figures and figures of
/// their own in another; clothes and hair are neither.
bool IsPartOfBody(const DzNode& node)
{
    const DzPresentation* const presentation = node.getPresentation();
    return presentation && presentation->getType().startsWith(QLatin1String("Follower/Attachment"));
}

} // namespace

TemporaryValues::~TemporaryValues()
{
    for (auto saved = _saved.rbegin(); saved != _saved.rend(); ++saved)
        saved->first->setValue(saved->second);
}

void TemporaryValues::set(DzFloatProperty& property, float value)
{
    _saved.emplace_back(&property, property.getValue());
    property.setValue(value);
}

AtResolution::AtResolution(const DzNode& node, GntResolution resolution)
    : _node(node), _before(kst::daz::GetNodeResolution(node))
{
    kst::daz::SetNodeResolution(_node,
                                resolution == GntResolution::Base ? kst::daz::NodeResolution::BaseResolution
                                                                  : kst::daz::NodeResolution::HighResolution,
                                false);
}

AtResolution::~AtResolution()
{
    kst::daz::SetNodeResolution(_node, _before, false);
}

Comparison::Comparison(const GntOutcome& outcome, GntResolution resolution)
    : source(outcome.params->figSource, resolution), target(outcome.params->figTarget, resolution)
{
    PlaceForComparison(outcome, values);
}

Body BodyOf(DzFigure& figure)
{
    Body body{{openhost::WorldMesh(figure)}, {}};
    const openhost::ScenePicture seen = openhost::FigureItems(figure);
    for (std::size_t i = 0; i < seen.nodes.size(); ++i)
        if (seen.nodes[i] != &figure && IsPartOfBody(*seen.nodes[i])) {
            body.meshes.push_back(seen.items[i].mesh);
            body.parts.push_back(seen.nodes[i]->getLabel().toStdString());
        }
    return body;
}

} // namespace cli
