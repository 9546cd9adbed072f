// What single dials do to a figure's mesh.
// SPDX-License-Identifier: MIT

#include "morphs/source_shapes.h"

#include "base/counted.h"
#include "dials.h"
#include "dson/reader.h"
#include "dzapp.h"
#include "dzbone.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dzmorphdeltas.h"
#include "dzobject.h"
#include "geometry/limits.h"
#include "openhost/diagnostics.h"
#include "openhost/missing_shapes.h"
#include "openhost/shapes.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include <fmt/format.h>

namespace cli {

namespace {

using geometry::Vec3f;

constexpr const char* placingProperties[] = {"XTranslate", "YTranslate", "ZTranslate", "XRotate", "YRotate",
                                             "ZRotate",    "Scale",      "XScale",     "YScale",  "ZScale"};

bool IsPlacing(const DzNumericProperty& property)
{
    return std::any_of(std::begin(placingProperties), std::end(placingProperties),
                       [&](const char* name) { return property.getName() == QLatin1String(name); });
}

/// A dial that stands at a value until it is let go of, and then as it stood before.
class HeldDial {
public:
    HeldDial(DzNumericProperty& dial, double value)
        : _dial(dial), _raw(dial.getDoubleRawValue()), _wasOverriding(dial.isOverridingControllers()),
          _wasLocked(dial.isLocked())
    {
        _dial.lock(false);
        _dial.setDoubleValue(value);
        // What drives it may multiply by nothing.
        if (!isAt(value)) {
            _dial.setOverrideControllers(true);
            _dial.setDoubleRawValue(value);
        }
    }
    ~HeldDial()
    {
        _dial.setDoubleRawValue(_raw);
        _dial.setOverrideControllers(_wasOverriding);
        _dial.lock(_wasLocked);
    }
    HeldDial(const HeldDial&) = delete;
    HeldDial& operator=(const HeldDial&) = delete;

    bool isAt(double value) const
    {
        constexpr double tolerance = 1e-6; // of what single precision leaves
        return std::abs(_dial.getDoubleValue() - value) <= tolerance * std::max(1.0, std::abs(value));
    }

private:
    DzNumericProperty& _dial;
    const double _raw;
    const bool _wasOverriding, _wasLocked;
};

/// @return whether it stood elsewhere
bool Reset(DzNumericProperty& property)
{
    if (property.getDoubleRawValue() == property.getDoubleDefaultValue())
        return false;
    const bool wasLocked = property.isLocked();
    property.lock(false);
    property.setDoubleRawValue(property.getDoubleDefaultValue());
    property.lock(wasLocked);
    return true;
}

/// Dials of morphs, and what files have added to nodes; of nodes themselves how they are placed.
std::size_t ResetAll(const std::vector<Dial>& dials)
{
    const DzNode plain;
    return static_cast<std::size_t>(std::count_if(dials.begin(), dials.end(), [&](const Dial& dial) {
        const bool isShape = dial.modifier
                                 ? qobject_cast<DzMorph*>(dial.modifier) != nullptr
                                 : IsPlacing(*dial.property) || !plain.findProperty(dial.property->getName());
        return isShape && !IsAlias(dial) && Reset(*dial.property);
    }));
}

std::size_t SetAside(const DzFigure& figure)
{
    std::size_t count = ResetAll(DialsOf(figure)) + ResetAll(BoneDials(figure));
    for (const DzBone* const bone : figure.bones())
        for (const char* const name : placingProperties)
            if (auto* const property =
                    qobject_cast<DzNumericProperty*>(bone->findProperty(QLatin1String(name))))
                count += Reset(*property) ? 1 : 0;
    return count;
}

std::vector<Vec3f> Positions(const DzFigure& figure)
{
    const base::Span<const Vec3f> world = openhost::WorldMesh(figure).positions;
    return {world.begin(), world.end()};
}

float LargestLength(const std::vector<Vec3f>& displacements)
{
    float largest = 0.0f;
    for (const Vec3f displacement : displacements)
        largest = std::max(largest, geometry::Length(displacement));
    return largest;
}

/// Of the shapes that the figure wears; empty for nothing.
std::string LostDetail(const DzNode& figure)
{
    const base::Diagnostics lost = openhost::FindMissingShapes(figure).details;
    return lost.empty() ? std::string() : base::ToLine(lost.front());
}

} // namespace

SourceShapes::SourceShapes(DzFigure& figure, const std::string& file, base::Diagnostics& diagnostics)
    : _figure(figure)
{
    if (const std::size_t count = SetAside(figure))
        diagnostics.push_back({base::Severity::Warning, file, figure.getLabel().toStdString(),
                               fmt::format("its own shape and pose are set aside: {} not at rest",
                                           base::Counted(count, "dial is", "dials are"))});
    _rest = Positions(figure);
}

SourceShapes::Shape SourceShapes::measure(const ShapeDial& dial, double value, bool hasOwnRest)
{
    Shape shape;
    const openhost::DiagnosticsCollector met(dzApp->diagnostics());
    std::vector<Vec3f> before;
    if (hasOwnRest || dial.dial->getDoubleValue() != 0.0) {
        const HeldDial atNothing(*dial.dial, 0.0);
        before = Positions(_figure);
    }
    const std::vector<Vec3f>& from = before.empty() ? _rest : before;
    const HeldDial turned(*dial.dial, value);
    shape.isHeld = !turned.isAt(value);
    shape.value = dial.dial->getDoubleValue();
    shape.displacements = Positions(_figure);
    for (std::size_t v = 0; v < shape.displacements.size(); ++v)
        shape.displacements[v] -= from[v];
    if (const base::Diagnostic* const error = base::FirstError(met.all()))
        shape.problem = base::ToLine(*error);
    else if (_rest.size() > openhost::CageVertexCount(_figure))
        shape.problem = LostDetail(_figure);
    if (shape.problem.empty() && !(LargestLength(shape.displacements) <= geometry::farthestPosition))
        shape.problem = fmt::format("moves vertices by more than {:g} cm, which is nothing real",
                                    geometry::farthestPosition);
    return shape;
}

void SourceShapes::unload()
{
    const DzObject& object = *_figure.getObject();
    for (int i = 0; i < object.getNumModifiers(); ++i)
        if (const auto* const morph = qobject_cast<DzMorph*>(object.getModifier(i)))
            if (morph->getValueControl()->getValue() == 0.0f)
                morph->getDeltas()->unLoadDeltas();
}

} // namespace cli
