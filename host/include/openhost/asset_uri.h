// Which asset of a content library defines something in the scene.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzuri.h"

class QObject;

namespace openhost {

/// Of a dial or an object. Empty for what was made in the scene, or loaded from a file that users save.
DzUri AssetUriOf(const QObject& made);

} // namespace openhost
