// What scripts find in the host, for those who tell of it.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <vector>

struct QMetaObject;

namespace openhost {

struct ScriptClass {
    const QMetaObject* metaObject = nullptr;
    bool isMade = false; ///< a script can make one with `new`
    QString arguments;   ///< of that, as one would write them
};

/// The host's classes that scripts meet, with those that they are kinds of; by name.
std::vector<ScriptClass> ScriptClasses();

struct ScriptValueMethod {
    const char* name;
    const char* arguments; ///< as one would write them; one at most
    const char* what;
    const char* code; ///< its argument is called a
};

/// What is a script's own value rather than an object of the host.
struct ScriptValueClass {
    QString name, arguments, what;
    std::vector<ScriptValueMethod> methods;
};

std::vector<ScriptValueClass> ScriptValueClasses();

} // namespace openhost
