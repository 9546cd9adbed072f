// The one place that asks for the toolkit's version.
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QMetaMethod>
#include <QString>
#include <QVariant>
#include <QWidget>

namespace kst {
namespace qt {

/// The method's normalised signature, such as "setSource(DzNode*)".
inline QByteArray Signature(const QMetaMethod& method)
{
#if QT_VERSION >= 0x050000
    return method.methodSignature();
#else
    return QByteArray(method.signature());
#endif
}

/// The declared return type; "void" for none, where the older toolkit says "".
inline QByteArray ReturnTypeName(const QMetaMethod& method)
{
    const char* const name = method.typeName();
    return name && *name ? QByteArray(name) : QByteArray("void");
}

// What a screen reader calls a widget, by the property's name: a toolkit built without accessibility lacks
// the methods, and keeps what it is told all the same.
inline void SetAccessibleName(QWidget& widget, const QString& name)
{
    widget.setProperty("accessibleName", name);
}
inline QString AccessibleName(const QWidget& widget)
{
    return widget.property("accessibleName").toString();
}

} // namespace qt
} // namespace kst
