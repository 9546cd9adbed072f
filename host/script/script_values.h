// Places and boxes in scripts.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzbox3.h"
#include "dzvec3.h"

#include <QScriptValue>

namespace openhost {

/// Objects of the script's own, which its functions can change; the host takes any object with such members.
QScriptValue VectorToScript(QScriptEngine* engine, const DzVec3& vector);
void VectorFromScript(const QScriptValue& value, DzVec3& vector);
QScriptValue BoxToScript(QScriptEngine* engine, const DzBox3& box);
void BoxFromScript(const QScriptValue& value, DzBox3& box);

/// Makes known what makes them with `new`, and what they can do.
void RegisterScriptValues(QScriptEngine& engine);

} // namespace openhost
