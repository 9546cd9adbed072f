// Arrays that are too long for the engine.
// SPDX-License-Identifier: MIT

#pragma once

class QScriptEngine;
class QScriptValue;

namespace openhost {

/// Whether it has a length beyond what one call may go through.
bool IsTooLong(const QScriptValue& value);
/// Why a value cannot be copied, with all that it holds, as the end of a sentence; null where it can.
const char* WhyNotCopied(const QScriptValue& value);

/// From now on the methods of arrays throw a RangeError instead of walking through such a thing.
void GuardArrayMethods(QScriptEngine& engine);

} // namespace openhost
