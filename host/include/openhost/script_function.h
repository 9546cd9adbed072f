// Functions that all scripts find as globals.
// SPDX-License-Identifier: MIT

#pragma once

#include <QScriptEngine>

#include <vector>

namespace openhost {

/// Texts are for people who write scripts.
struct ScriptFunction {
    const char* name;
    const char* arguments; ///< as one would write them, such as "steps = 1"
    const char* what;      ///< a sentence or two
    QScriptEngine::FunctionSignature function;
};

/// Scripts that are run from now on have it. A program adds what only it can do.
void RegisterScriptFunction(const ScriptFunction& function);

/// The host's own first.
std::vector<ScriptFunction> ScriptFunctions();

/// Whether what happens now is a script's doing.
bool IsScriptRunning();

} // namespace openhost
