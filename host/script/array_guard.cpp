// Arrays that are too long for the engine.
// SPDX-License-Identifier: MIT

#include "array_guard.h"

#include "script_limits.h"

#include <QScriptEngine>

namespace openhost {

namespace {

/// All that walk through the elements.
const char* const arrayMethods[] = {
    "concat", "every",  "filter",         "forEach",     "indexOf", "join",  "lastIndexOf",
    "map",    "reduce", "reverse",        "reduceRight", "shift",   "slice", "some",
    "sort",   "splice", "toLocaleString", "toString",    "unshift",
};

QScriptValue ThrowTooLong(QScriptContext& context, const QScriptValue& value)
{
    return context.throwError(QScriptContext::RangeError,
                              QStringLiteral("an array of %1 elements is too long; at most %2 are taken")
                                  .arg(value.property(QStringLiteral("length")).toUInt32())
                                  .arg(longestScriptArray));
}

/// Stands for the method that is its data.
QScriptValue CallChecked(QScriptContext* context, QScriptEngine*)
{
    if (IsTooLong(context->thisObject()))
        return ThrowTooLong(*context, context->thisObject());
    QScriptValueList arguments;
    for (int i = 0; i < context->argumentCount(); ++i) {
        // What is joined to an array is walked through as well.
        if (context->argument(i).isArray() && IsTooLong(context->argument(i)))
            return ThrowTooLong(*context, context->argument(i));
        arguments.append(context->argument(i));
    }
    return context->callee().data().call(context->thisObject(), arguments);
}

} // namespace

bool IsTooLong(const QScriptValue& value)
{
    return value.isObject() && value.property(QStringLiteral("length")).toUInt32() > longestScriptArray;
}

void GuardArrayMethods(QScriptEngine& engine)
{
    QScriptValue prototype =
        engine.globalObject().property(QStringLiteral("Array")).property(QStringLiteral("prototype"));
    for (const char* const name : arrayMethods) {
        const QScriptValue method = prototype.property(QLatin1String(name));
        QScriptValue checked =
            engine.newFunction(CallChecked, method.property(QStringLiteral("length")).toInt32());
        checked.setData(method);
        prototype.setProperty(QLatin1String(name), checked, QScriptValue::SkipInEnumeration);
    }
}

} // namespace openhost
