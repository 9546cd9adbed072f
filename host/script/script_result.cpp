// What a script gives back.
// SPDX-License-Identifier: MIT

#include "script_result.h"

#include <functional>

namespace openhost {

namespace {

using ObjectChange = std::function<QVariant(QObject*)>;

QVariant WithObjects(const QVariant& value, const ObjectChange& change)
{
    if (value.userType() == QMetaType::QObjectStar)
        return change(*static_cast<QObject* const*>(value.constData()));
    if (value.userType() == QMetaType::QVariantList) {
        QVariantList list = value.toList();
        for (QVariant& one : list)
            one = WithObjects(one, change);
        return list;
    }
    if (value.userType() == QMetaType::QVariantMap) {
        QVariantMap map = value.toMap();
        for (QVariant& one : map)
            one = WithObjects(one, change);
        return map;
    }
    return value;
}

} // namespace

ScriptResult::ScriptResult(const QVariant& value) : _value(value)
{
    WithObjects(value, [this](QObject* object) {
        _objects.insert(object, object);
        return QVariant();
    });
}

QVariant ScriptResult::value() const
{
    return WithObjects(
        _value, [this](QObject* object) { return QVariant::fromValue<QObject*>(_objects.value(object)); });
}

} // namespace openhost
