// The host's classes in scripts.
// SPDX-License-Identifier: MIT

#pragma once

class QScriptEngine;

namespace openhost {

/// Makes known the types that the host's methods take and give, and as global names the constructors of all
/// classes that the host and its plug-ins can make, each with its enumerations.
void RegisterScriptClasses(QScriptEngine& engine);

} // namespace openhost
