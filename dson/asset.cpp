// Ready-made DSON values.
// SPDX-License-Identifier: MIT

#include "dson/asset.h"

namespace dson {

Formula MakeDeltaAdd(const std::string& outputUri, const std::string& inputUri, double factor)
{
    Formula formula;
    formula.output = outputUri;
    formula.operations.resize(3);
    formula.operations[0].kind = Operation::Kind::PushUrl;
    formula.operations[0].url = inputUri;
    formula.operations[1].kind = Operation::Kind::PushValue;
    formula.operations[1].value = factor;
    formula.operations[2].kind = Operation::Kind::Mult;
    return formula;
}

namespace {

/// @param axis  before the name; empty for all axes at once
Channel MakeTransformChannel(const char* id, const std::string& axis, const std::string& name, double value,
                             double limit)
{
    Channel channel;
    channel.id = id;
    channel.name = axis + name;
    channel.label = axis.empty() ? name : axis + " " + name;
    channel.value = value;
    channel.min = -limit;
    channel.max = limit;
    return channel;
}

} // namespace

Node MakeNode(const std::string& id, const std::string& label, const std::string& type)
{
    Node node;
    node.id = node.name = id;
    node.label = label;
    node.type = type;
    node.inheritsScale = type != "bone";
    static const char* const axes[3] = {"x", "y", "z"};
    static const char* const letters[3] = {"X", "Y", "Z"};
    for (int axis = 0; axis < 3; ++axis) {
        const std::string letter = letters[axis];
        node.translation[axis] = MakeTransformChannel(axes[axis], letter, "Translate", 0.0, 10000.0);
        node.rotation[axis] = MakeTransformChannel(axes[axis], letter, "Rotate", 0.0, 180.0);
        node.scale[axis] = MakeTransformChannel(axes[axis], letter, "Scale", 1.0, 10000.0);
    }
    node.generalScale = MakeTransformChannel("general_scale", "", "Scale", 1.0, 10000.0);
    return node;
}

Modifier MakeMorph(const std::string& name, const std::string& group)
{
    Modifier modifier;
    modifier.id = modifier.name = name;
    modifier.group = group;
    Channel& channel = modifier.channel;
    channel.id = "value";
    channel.name = "Value";
    channel.label = name;
    channel.min = 0.0;
    channel.max = 1.0;
    channel.clamped = true;
    channel.displayAsPercent = true;
    channel.autoFollow = true;
    channel.stepSize = 0.01;
    modifier.morph.emplace();
    return modifier;
}

} // namespace dson
