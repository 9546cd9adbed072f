// What scripts throw, in words.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

class QScriptValue;

namespace openhost {

/// An error as it names itself, a text as it is, other objects and arrays as JSON would write them, cut short
/// where that gets long. Runs the script's own toString() where an object has one.
QString DescribeThrown(const QScriptValue& value);

} // namespace openhost
