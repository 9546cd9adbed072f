// A class of a test's own in the host's place.
// SPDX-License-Identifier: MIT

#pragma once

#include <dzclassfactory.h>

/// Makes objects of the class, and counts them.
template <class T>
class FactoryOf : public DzClassFactory {
public:
    FactoryOf() : DzClassFactory(&T::staticMetaObject, DzGuid()) {}
    QObject* createInstance() const override
    {
        ++made;
        return new T;
    }
    QObject* createInstance(const QVariantList&) const override { return createInstance(); }
    mutable int made = 0;
};
