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

} // namespace openhost
