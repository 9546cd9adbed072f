// Scripts that are made of several files.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

class QScriptContext;
class QScriptEngine;
class QScriptValue;

namespace openhost {

/// The global function include(FILE): runs a file's code, whose variables and functions become
/// global.
QScriptValue Include(QScriptContext* context, QScriptEngine* engine);

/// The file that a script names: beside the script, or below a content folder. Empty if there is none.
QString FindIncluded(const QString& name, const QString& fromFile);

} // namespace openhost
