// Places and boxes in scripts.
// SPDX-License-Identifier: MIT

#include "script_values.h"

#include "dzclassfactory.h"
#include "openhost/script_reference.h"

#include <QScriptEngine>

#include <cmath>

namespace openhost {

namespace {

const char* const vectorName = "DzVec3";
const char* const boxName = "DzBox3";

/// Runs in the engine: the values are its own.
const ScriptValueMethod vectorMethods[] = {
    {"length", "", "Its length.", "return Math.sqrt(this.lengthSquared());"},
    {"lengthSquared", "", "The square of its length.", "return this.dot(this);"},
    {"normalized", "", "Another of the same direction and the length 1; itself where it has no length.",
     "var length = this.length(); return this.multiply(length > 0 ? 1 / length : 1);"},
    {"dot", "other", "The inner product.", "return this.x * a.x + this.y * a.y + this.z * a.z;"},
    {"cross", "other", "The outer product.",
     "return new DzVec3(this.y * a.z - this.z * a.y, this.z * a.x - this.x * a.z, this.x * a.y - this.y * "
     "a.x);"},
    {"add", "other", "The sum of both.", "return new DzVec3(this.x + a.x, this.y + a.y, this.z + a.z);"},
    {"subtract", "other", "The way from the other to this one.",
     "return new DzVec3(this.x - a.x, this.y - a.y, this.z - a.z);"},
    {"multiply", "factor", "So many times as long.",
     "return new DzVec3(a * this.x, a * this.y, a * this.z);"},
    {"toString", "", "Its coordinates as a text.",
     "return '(' + this.x + ', ' + this.y + ', ' + this.z + ')';"},
};

const ScriptValueMethod boxMethods[] = {
    {"getMin", "", "The corner of the smallest coordinates.", "return this.min;"},
    {"getMax", "", "The corner of the largest coordinates.", "return this.max;"},
    {"getCenter", "", "The middle.", "return this.min.add(this.max).multiply(0.5);"},
    {"getSize", "", "Width, height and depth; none where it is empty.",
     "return this.isValid() ? this.max.subtract(this.min) : new DzVec3();"},
    {"isValid", "", "Whether it holds anything.",
     "return this.min.x <= this.max.x && this.min.y <= this.max.y && this.min.z <= this.max.z;"},
    {"include", "point", "Makes it large enough to hold the point.",
     "this.min = new DzVec3(Math.min(this.min.x, a.x), Math.min(this.min.y, a.y), Math.min(this.min.z, a.z));"
     "this.max = new DzVec3(Math.max(this.max.x, a.x), Math.max(this.max.y, a.y), Math.max(this.max.z, "
     "a.z));"},
    {"toString", "", "Its corners as a text.", "return this.min + ' to ' + this.max;"},
};

void SetCoordinates(QScriptValue& object, double x, double y, double z)
{
    object.setProperty(QStringLiteral("x"), x);
    object.setProperty(QStringLiteral("y"), y);
    object.setProperty(QStringLiteral("z"), z);
}

QScriptValue Refuse(QScriptContext& context, const char* name)
{
    for (const ScriptValueClass& one : ScriptValueClasses())
        if (one.name == QLatin1String(name))
            return DzClassFactory::refuseArguments(context, one.name, one.arguments);
    return QScriptValue();
}

QScriptValue ConstructVector(QScriptContext* context, QScriptEngine* engine)
{
    double coordinates[3] = {};
    const int count = context->argumentCount();
    for (int i = 0; i < std::min(count, 3); ++i)
        coordinates[i] = context->argument(i).toNumber();
    if (!context->isCalledAsConstructor() || (count != 0 && count != 3) || std::isnan(coordinates[0]) ||
        std::isnan(coordinates[1]) || std::isnan(coordinates[2]))
        return Refuse(*context, vectorName);
    QScriptValue object = context->thisObject();
    SetCoordinates(object, coordinates[0], coordinates[1], coordinates[2]);
    return engine->undefinedValue();
}

/// What `new` makes, also where a script has another thing by that name.
QScriptValue Bare(QScriptEngine& engine, const char* name)
{
    QScriptValue object = engine.newObject();
    object.setPrototype(
        engine.globalObject().property(QLatin1String(name)).property(QStringLiteral("prototype")));
    return object;
}

QScriptValue MakeVector(QScriptEngine& engine, double x, double y, double z)
{
    QScriptValue object = Bare(engine, vectorName);
    SetCoordinates(object, x, y, z);
    return object;
}

bool IsVector(const QScriptValue& value)
{
    return value.property(QStringLiteral("x")).isNumber() && value.property(QStringLiteral("y")).isNumber() &&
           value.property(QStringLiteral("z")).isNumber();
}

QScriptValue ConstructBox(QScriptContext* context, QScriptEngine* engine)
{
    const int count = context->argumentCount();
    const bool hasCorners = count == 2 && IsVector(context->argument(0)) && IsVector(context->argument(1));
    if (!context->isCalledAsConstructor() || (count != 0 && !hasCorners))
        return Refuse(*context, boxName);
    const auto corner = [&](int index, double without) {
        DzVec3 given;
        VectorFromScript(context->argument(index), given);
        return hasCorners ? VectorToScript(engine, given) : MakeVector(*engine, without, without, without);
    };
    QScriptValue object = context->thisObject();
    object.setProperty(QStringLiteral("min"), corner(0, HUGE_VAL));
    object.setProperty(QStringLiteral("max"), corner(1, -HUGE_VAL));
    return engine->undefinedValue();
}

void Register(QScriptEngine& engine, const ScriptValueClass& one, QScriptEngine::FunctionSignature construct)
{
    QScriptValue constructor = engine.newFunction(construct);
    QScriptValue prototype = constructor.property(QStringLiteral("prototype"));
    for (const ScriptValueMethod& method : one.methods)
        prototype.setProperty(
            QLatin1String(method.name),
            engine.evaluate(QStringLiteral("(function(a) { %1 })").arg(QLatin1String(method.code))),
            QScriptValue::SkipInEnumeration);
    engine.globalObject().setProperty(one.name, constructor);
}

} // namespace

std::vector<ScriptValueClass> ScriptValueClasses()
{
    return {{QLatin1String(vectorName),
             QStringLiteral("x = 0, y = 0, z = 0"),
             QStringLiteral(
                 "A place or a direction, with the members x, y and z. Its methods change nothing and give "
                 "others."),
             {std::begin(vectorMethods), std::end(vectorMethods)}},
            {QLatin1String(boxName),
             QStringLiteral("min, max"),
             QStringLiteral(
                 "A box along the axes, with the corners min and max; without arguments an empty one."),
             {std::begin(boxMethods), std::end(boxMethods)}}};
}

QScriptValue VectorToScript(QScriptEngine* engine, const DzVec3& vector)
{
    return MakeVector(*engine, double(vector.m_x), double(vector.m_y), double(vector.m_z));
}

void VectorFromScript(const QScriptValue& value, DzVec3& vector)
{
    const auto coordinate = [&](const char* name) {
        return static_cast<float>(value.property(QLatin1String(name)).toNumber());
    };
    vector = DzVec3(coordinate("x"), coordinate("y"), coordinate("z"));
}

QScriptValue BoxToScript(QScriptEngine* engine, const DzBox3& box)
{
    QScriptValue object = Bare(*engine, boxName);
    object.setProperty(QStringLiteral("min"), VectorToScript(engine, box.getMin()));
    object.setProperty(QStringLiteral("max"), VectorToScript(engine, box.getMax()));
    return object;
}

void BoxFromScript(const QScriptValue& value, DzBox3& box)
{
    DzVec3 min;
    DzVec3 max;
    VectorFromScript(value.property(QStringLiteral("min")), min);
    VectorFromScript(value.property(QStringLiteral("max")), max);
    box = DzBox3(min, max);
}

void RegisterScriptValues(QScriptEngine& engine)
{
    const std::vector<ScriptValueClass> classes = ScriptValueClasses();
    Register(engine, classes[0], ConstructVector);
    Register(engine, classes[1], ConstructBox);
}

} // namespace openhost
