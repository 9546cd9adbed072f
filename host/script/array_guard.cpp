// Arrays that are too long for the engine.
// SPDX-License-Identifier: MIT

#include "array_guard.h"

#include "script_limits.h"

#include <QScriptEngine>
#include <QScriptValueIterator>

#include <algorithm>
#include <set>

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

/// Goes through all that would be copied.
class CopyCheck {
public:
    void enter(const QScriptValue& value)
    {
        const bool isPlain = value.isObject() && !value.isFunction() && !value.isQObject() &&
                             !value.isVariant() && !value.isDate() && !value.isRegExp();
        // What is below itself is copied once.
        if (why || !isPlain || !_above.insert(value.objectId()).second)
            return;
        if (value.isArray())
            count(value.property(QStringLiteral("length")).toUInt32());
        if (_above.size() > deepestScriptResult)
            why = "is nested too deeply";
        for (QScriptValueIterator member(value); !why && member.hasNext();) {
            member.next();
            count(value.isArray() ? 0 : 1);
            enter(member.value());
        }
        _above.erase(value.objectId());
    }

    const char* why = nullptr;

private:
    void count(unsigned more)
    {
        _left -= std::min(_left, more);
        if (_left == 0)
            why = "holds too long an array";
    }

    unsigned _left = longestScriptArray + 1;
    std::set<qint64> _above;
};

} // namespace

bool IsTooLong(const QScriptValue& value)
{
    return value.isObject() && value.property(QStringLiteral("length")).toUInt32() > longestScriptArray;
}

const char* WhyNotCopied(const QScriptValue& value)
{
    if (IsTooLong(value))
        return "is too long an array";
    CopyCheck check;
    check.enter(value);
    return check.why;
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
