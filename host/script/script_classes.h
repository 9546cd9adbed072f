// The host's classes in scripts.
// SPDX-License-Identifier: MIT

#pragma once

#include <QScriptValue>

class QObject;

namespace openhost {

/// The host's object in a script, which may do all with it but delete it. Null for null.
QScriptValue WrapObject(QScriptEngine& engine, QObject* object);

/// Makes known the types that the host's methods take and give, and as global names the constructors of all
/// classes that the host and its plug-ins can make, each with its enumerations.
void RegisterScriptClasses(QScriptEngine& engine);

} // namespace openhost
