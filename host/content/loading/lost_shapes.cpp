// What would turn the dials of shapes that could not be made.
// SPDX-License-Identifier: MIT

#include "lost_shapes.h"

#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dznode.h"
#include "dzobject.h"
#include "figure/deltas_access.h"
#include "library/content_paths.h"
#include "loading/channel_properties.h"
#include "openhost/missing_shapes.h"

#include <cmath>
#include <limits>

namespace openhost {

namespace {

/// Goes with its node.
class Holder : public QObject {
public:
    Holder(QObject& node, LostShapes held) : QObject(&node), shapes(std::move(held)) {}
    LostShapes shapes;
};

bool IsWorn(double value)
{
    return std::abs(value) > std::numeric_limits<float>::epsilon();
}

/// What the first loss of a shape says, under the shape's own name.
void AddLoss(base::Diagnostics& all, const base::Diagnostics& lost, const DzMorph& morph)
{
    if (lost.empty())
        return;
    all.push_back(lost.front());
    all.back().asset = morph.getName().toStdString();
}

} // namespace

LostShape::LostShape(const dson::Uri& uri, std::string name, base::Diagnostic why,
                     std::optional<dson::Channel> channel)
    : _path(PathKey(uri.path)), _id(uri.id), _name(std::move(name)), _why(std::move(why)),
      _channel(std::move(channel))
{
}

bool LostShape::isNamedBy(const dson::Uri& uri) const
{
    return isCalled(uri.id) && (uri.path.empty() || PathKey(uri.path) == _path);
}

void LostShape::drive(const dson::Formula& formula, const PropertyResolver& resolve)
{
    Drive drive{formula, {}};
    for (const dson::Operation& operation : formula.operations) {
        if (operation.kind != dson::Operation::Kind::PushUrl)
            continue;
        DzNumericProperty* const input = resolve(operation.url);
        if (!input)
            return;
        drive.inputs[operation.url] = input;
    }
    _drives.push_back(std::move(drive));
}

double LostShape::evaluate() const
{
    DzFloatProperty dial(QString::fromStdString(_name), true, true, 0.0f);
    if (_channel) {
        dson::Channel channel = *_channel;
        channel.locked = false;
        ApplyChannel(dial, channel);
    }
    if (_value)
        dial.setDoubleRawValue(*_value);
    for (const Drive& drive : _drives)
        MakeLink(
            drive.formula,
            [&](const std::string& uri) -> DzNumericProperty* {
                if (uri == drive.formula.output)
                    return &dial;
                const auto input = drive.inputs.find(uri);
                return input == drive.inputs.end() ? nullptr : input->second.data();
            },
            true);
    return dial.getDoubleValue();
}

LostShape* LostShapes::find(const dson::Uri& uri)
{
    const auto called = _byCall.find(uri.id);
    if (called == _byCall.end())
        return nullptr;
    for (LostShape* const shape : called->second)
        if (shape->isNamedBy(uri))
            return shape;
    return nullptr;
}

LostShape* LostShapes::findCalled(const std::string& nameOrId)
{
    const auto called = _byCall.find(nameOrId);
    return called == _byCall.end() ? nullptr : called->second.front();
}

LostShape& LostShapes::add(LostShape shape)
{
    _shapes.push_back(std::move(shape));
    LostShape& added = _shapes.back();
    _byCall[added.id()].push_back(&added);
    if (added.name() != added.id())
        _byCall[added.name()].push_back(&added);
    return added;
}

void LostShapes::Attach(DzNode& node, LostShapes shapes)
{
    new Holder(node, std::move(shapes));
}

LostShapes* LostShapes::Of(const DzNode& node)
{
    for (QObject* const child : node.children())
        if (auto* const holder = dynamic_cast<Holder*>(child))
            return &holder->shapes;
    return nullptr;
}

MissingShapes FindMissingShapes(const DzNode& figure)
{
    MissingShapes missing;
    if (LostShapes* const lost = LostShapes::Of(figure))
        for (const LostShape& shape : lost->all())
            if (IsWorn(shape.evaluate()))
                missing.shapes.push_back(shape.why());
    const DzObject* const object = figure.getObject();
    for (int i = 0; object && i < object->getNumModifiers(); ++i) {
        const auto* const morph = qobject_cast<const DzMorph*>(object->getModifier(i));
        if (!morph || !morph->getDeltas() || !IsWorn(morph->getValueControl()->getDoubleValue()))
            continue;
        // Of a shape that has lost some displacements, the others are worn.
        if (DeltasAccess::deltas(*morph->getDeltas()).empty())
            AddLoss(missing.shapes, DeltasAccess::lostDeltas(*morph->getDeltas()), *morph);
        AddLoss(missing.details, DeltasAccess::lostDetail(*morph->getDeltas()), *morph);
    }
    return missing;
}

bool DialMissingShape(const DzNode& figure, const QString& name, double value)
{
    LostShapes* const lost = LostShapes::Of(figure);
    LostShape* const shape = lost ? lost->findCalled(name.toStdString()) : nullptr;
    if (shape)
        shape->set(value);
    return shape != nullptr;
}

std::optional<base::Diagnostic> WhyShapeIsMissing(const DzNode& figure, const QString& name)
{
    LostShapes* const lost = LostShapes::Of(figure);
    const LostShape* const shape = lost ? lost->findCalled(name.toStdString()) : nullptr;
    return shape ? std::optional<base::Diagnostic>(shape->why()) : std::nullopt;
}

} // namespace openhost
