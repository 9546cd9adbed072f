// Driving host objects by the names of their methods, where the host offers no header.
// SPDX-License-Identifier: MIT

#include "ks_qt-magic.h"

#include "ks_exception.h"
#include "ks_qt-compat.h"

#include <QMetaObject>

#include <dzapp.h>
#include <dzclassfactory.h>

namespace kst {
namespace qt {

QMetaMethod MagicBase::FindMethodOrThrow(const QMetaObject& metaObject, const char* signature)
{
    const QByteArray normalized = QMetaObject::normalizedSignature(signature);
    const int index = metaObject.indexOfMethod(normalized.constData());
    if (index < 0)
        throw Exception("failed to resolve method {}::{}", metaObject.className(), signature);
    return metaObject.method(index);
}

QMetaProperty MagicBase::FindQtPropertyOrThrow(const QMetaObject& metaObject, const char* name)
{
    const int index = metaObject.indexOfProperty(name);
    if (index < 0)
        throw Exception("failed to resolve property {}::{}", metaObject.className(), name);
    return metaObject.property(index);
}

QObject* MagicBase::CreateInstanceViaFactory_X(const char* className)
{
    const DzClassFactory* const factory = dzApp->findClassFactory(QLatin1String(className));
    if (!factory)
        throw Exception("cannot find {} factory", className);
    QObject* const object = factory->createInstance();
    if (!object)
        throw Exception("{} factory failed to create object", className);
    return object;
}

std::mutex& MagicBase::GetInitMutex()
{
    static std::mutex mutex;
    return mutex;
}

void MagicBase::ResolveTable_X(const QMetaObject& metaObject, std::vector<MagicMethod>& table)
{
    for (MagicMethod& entry : table) {
        entry.method = FindMethodOrThrow(metaObject, entry.signature);
        entry.returnType = ReturnTypeName(entry.method);
    }
}

void MagicBase::ThrowCannotInvoke(const QMetaObject& metaObject, const QMetaMethod& method)
{
    throw Exception("failed to invoke {}::{}", metaObject.className(), Signature(method).constData());
}

} // namespace qt
} // namespace kst
