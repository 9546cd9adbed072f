// The one place that asks for the toolkit's version.
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QMetaMethod>

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

} // namespace qt
} // namespace kst
