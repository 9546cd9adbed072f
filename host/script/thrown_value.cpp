// What scripts throw, in words.
// SPDX-License-Identifier: MIT

#include "thrown_value.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QScriptEngine>
#include <QScriptValueIterator>

#include <algorithm>
#include <iterator>

namespace openhost {

namespace {

/// A sentence is to stay one, also when somebody throws all that there is.
constexpr int deepest = 4;
constexpr int mostMembers = 24;
constexpr int longestText = 200;

const QString cut = QStringLiteral("...");

QString Quoted(const QString& text)
{
    const QString shown = text.size() > longestText ? text.left(longestText) + cut : text;
    const QByteArray list = QJsonDocument(QJsonArray{shown}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(list.mid(1, list.size() - 2));
}

/// The engine writes into what is thrown where that happened.
const char* const enginesMembers[] = {
    "lineNumber", "expressionBeginOffset", "expressionCaretOffset", "expressionEndOffset", "sourceId",
    "fileName"};

bool IsEnginesMember(const QString& name)
{
    return std::any_of(std::begin(enginesMembers), std::end(enginesMembers),
                       [&name](const char* one) { return name == QLatin1String(one); });
}

/// Whether the engine would say no more of it than that it is an object.
bool NeedsMembers(const QScriptValue& value)
{
    if (!value.isObject() || value.isFunction() || value.isError() || value.isDate() || value.isRegExp() ||
        value.isQObject() || value.isQMetaObject())
        return false;
    const QScriptValue plain = value.engine()->globalObject().property(QStringLiteral("Object"));
    const QScriptValue its = value.property(QStringLiteral("toString"));
    return value.isArray() || !its.isFunction() ||
           its.strictlyEquals(
               plain.property(QStringLiteral("prototype")).property(QStringLiteral("toString")));
}

/// Writes one value, with so many members in all.
class Description {
public:
    QString textOf(const QScriptValue& value, int depth = 0)
    {
        if (!value.isValid()) // a place of an array that has nothing
            return QStringLiteral("undefined");
        if (value.isString())
            return Quoted(value.toString());
        if (value.isFunction() && !value.isRegExp()) // which can be called as well
            return QStringLiteral("a function");
        if (!NeedsMembers(value))
            return value.toString();
        if (depth == deepest)
            return cut;
        return value.isArray() ? arrayText(value, depth) : objectText(value, depth);
    }

private:
    QString arrayText(const QScriptValue& array, int depth)
    {
        const quint32 length = array.property(QStringLiteral("length")).toUInt32();
        QStringList members;
        for (quint32 i = 0; i < length && hasRoom(members); ++i)
            members << textOf(array.property(i), depth + 1);
        return QLatin1Char('[') + members.join(QStringLiteral(", ")) + QLatin1Char(']');
    }

    QString objectText(const QScriptValue& object, int depth)
    {
        const bool wasThrown = object.property(QStringLiteral("sourceId")).isValid();
        QStringList members;
        for (QScriptValueIterator member(object); member.hasNext();) {
            member.next();
            if (member.value().isFunction() || (wasThrown && IsEnginesMember(member.name())))
                continue;
            if (!hasRoom(members))
                break;
            members << Quoted(member.name()) + QStringLiteral(": ") + textOf(member.value(), depth + 1);
        }
        return QLatin1Char('{') + members.join(QStringLiteral(", ")) + QLatin1Char('}');
    }

    bool hasRoom(QStringList& members)
    {
        if (_left == 0) {
            members << cut;
            return false;
        }
        --_left;
        return true;
    }

    int _left = mostMembers;
};

} // namespace

QString DescribeThrown(const QScriptValue& value)
{
    const bool isPlainText = value.isString() && !value.toString().isEmpty();
    return isPlainText ? value.toString() : Description().textOf(value);
}

} // namespace openhost
