// Classes that scripts make of arguments.
// SPDX-License-Identifier: MIT

#pragma once

#include <QScriptContext>

namespace openhost {

/// A factory that takes arguments, and gives null for those that do not fit.
class TakesArguments {
public:
    virtual ~TakesArguments() = default;
    /// As one would write them.
    virtual const char* arguments() const = 0;
};

/// Throws in the script.
/// @param arguments  that the class takes, as one would write them
QScriptValue RefuseArguments(QScriptContext& context, const QString& className, const QString& arguments);

} // namespace openhost
