// What only tests do to the host.
// SPDX-License-Identifier: MIT

#pragma once

#include "openhost/operation.h"

#include <QString>

class DzClassFactory;

namespace openhost {

class Attendant;

/// Asked before every operation as long as it lives; of several only the newest.
class OperationWatch {
public:
    OperationWatch();
    virtual ~OperationWatch();
    OperationWatch(const OperationWatch&) = delete;
    OperationWatch& operator=(const OperationWatch&) = delete;

    /// @param detail  names the object and what is done to it
    /// @return false to make the operation fail in the way that its result allows; nothing is changed then
    virtual bool allow(Operation operation, const QString& detail) = 0;
};

/// As long as it lives, another attendant answers. It is borrowed.
class AttendantOverride {
public:
    explicit AttendantOverride(Attendant& attendant);
    ~AttendantOverride();
    AttendantOverride(const AttendantOverride&) = delete;
    AttendantOverride& operator=(const AttendantOverride&) = delete;

private:
    Attendant* _former;
};

/// As long as it lives, another factory, or none, stands in for a built-in class: how others fare in a host
/// of another version. The factory is borrowed. Of several for one class the newest counts.
class ClassFactoryOverride {
public:
    ClassFactoryOverride(const QString& className, const DzClassFactory* factory);
    ~ClassFactoryOverride();
    ClassFactoryOverride(const ClassFactoryOverride&) = delete;
    ClassFactoryOverride& operator=(const ClassFactoryOverride&) = delete;

    const QString& className() const { return _className; }
    const DzClassFactory* factory() const { return _factory; }

private:
    QString _className;
    const DzClassFactory* _factory;
};

/// Deletes a manager, or the main window, until the next reset, to see how others fare in a host that lacks
/// it.
/// @return false when there is none of that class
bool RemoveManager(const QString& className);
/// Adds the add-on for subdivided morphs to the running host, or takes it away, until the next reset.
void SetHdMorphSupport(bool isPresent);

} // namespace openhost
