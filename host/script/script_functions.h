// Functions and objects that scripts find as globals.
// SPDX-License-Identifier: MIT

#pragma once

class QScriptEngine;

namespace openhost {

/// Scene, App, MainWindow, MessageBox, and functions from print to startProgress.
void RegisterScriptFunctions(QScriptEngine& engine);

/// The errno with which print() failed; 0 for none.
int OutputError();

} // namespace openhost
