// What a loaded figure is.
// SPDX-License-Identifier: MIT

#include "dials.h"
#include "dzfacetmesh.h"
#include "dzfacetshape.h"
#include "dzmorph.h"
#include "dznode.h"
#include "dznumericproperty.h"
#include "dzobject.h"
#include "dzskeleton.h"
#include "facts/file_facts.h"
#include "figure_kind.h"
#include "ks_daz-helpers.h"

#include <algorithm>

#include <nlohmann/json.hpp>

namespace cli {

namespace {

int VertexCount(const DzNode& node)
{
    const DzObject* const object = node.getObject();
    const auto* const shape = object ? qobject_cast<DzFacetShape*>(object->getCurrentShape()) : nullptr;
    return shape && shape->getFacetMesh() ? shape->getFacetMesh()->getNumVertices() : 0;
}

/// Rounded to what single precision holds near 1.
Json Number(double value)
{
    return Rounded(value, 6);
}

Json DialFacts(const Dial& dial, Detail detail)
{
    const DzNumericProperty& property = *dial.property;
    Json facts{{"name", dial.name},
               {"label", dial.label},
               {"value", Number(property.getDoubleValue())},
               {"default", Number(property.getDoubleDefaultValue())},
               {"path", property.getPath().toStdString()}};
    if (detail == Detail::Summary)
        return facts;
    facts["min"] = Number(property.getDoubleMin());
    facts["max"] = Number(property.getDoubleMax());
    const auto* const morph = qobject_cast<const DzMorph*>(dial.modifier);
    facts["asset"] = morph ? morph->getAssetUri().toString().toStdString() : std::string();
    return facts;
}

} // namespace

Json FigureFacts(const DzNode& figure, Detail detail)
{
    const std::string uri = figure.getAssetUri().toString().toStdString();
    const auto* const skeleton = qobject_cast<const DzSkeleton*>(&figure);
    const std::vector<Dial> dials = OwnDials(figure);
    Json listed = Json::array();
    for (const Dial& dial : dials)
        if (detail == Detail::Full || !IsAtDefault(dial))
            listed.push_back(DialFacts(dial, detail));
    Json facts;
    facts["label"] = figure.getLabel().toStdString();
    facts["kind"] = FigureKindName(kst::daz::GetBaseFigure(uri));
    facts["asset"] = uri;
    facts["vertices"] = VertexCount(figure);
    facts["bones"] = skeleton ? skeleton->bones().size() : 0;
    facts["height_cm"] = Rounded(figure.getWSBoundingBox().getSize().m_y, 2);
    facts["dial_count"] = dials.size();
    facts["set_dial_count"] = static_cast<std::size_t>(
        std::count_if(dials.begin(), dials.end(), [](const Dial& dial) { return !IsAtDefault(dial); }));
    facts[detail == Detail::Full ? "dials" : "set_dials"] = std::move(listed);
    return facts;
}

} // namespace cli
