// Properties that an element is built upon.
// SPDX-License-Identifier: MIT

#pragma once

class DzProperty;

namespace openhost {

/// Marks one that its element points to for as long as it lives: no script can part the two, and one that a
/// script renames is found by its old name, too.
void KeepProperty(DzProperty& property);

bool IsKept(const DzProperty& property);

} // namespace openhost
