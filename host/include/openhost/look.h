// Colours of the application's windows.
// SPDX-License-Identifier: MIT

#pragma once

namespace openhost {

enum class Look {
    Dark, ///< in which figures stand out
    Light
};

/// Of all windows, those that are open too; dark at first.
void SetLook(Look look);
Look CurrentLook();

} // namespace openhost
