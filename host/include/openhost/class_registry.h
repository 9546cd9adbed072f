// Classes that the host makes by name.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzclassfactory.h"

#include <QList>

namespace openhost {

/// Adds a factory that lives as long as the process; of two for one class the first counts.
void RegisterClassFactory(const DzClassFactory* factory);
const DzClassFactory* FindBuiltInClassFactory(const QString& className);
QList<const DzClassFactory*> BuiltInClassFactories();

/// A built-in class. Define one at namespace scope in the class's source file:
/// `const openhost::BuiltInClass<DzObjExporter> registration;`
template <class T>
class BuiltInClass : public DzTCustomClassFactory<T> {
public:
    BuiltInClass() : DzTCustomClassFactory<T>(&T::staticMetaObject, DzGuid()) { RegisterClassFactory(this); }
    QObject* createInstance() const override { return new T; }
    QObject* createInstance(const QVariantList&) const override { return new T; }
};

} // namespace openhost
