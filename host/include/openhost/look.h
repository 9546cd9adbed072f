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
/// Which of the two the system's own colours are closer to, as they were when the program began.
Look SystemLook();

} // namespace openhost
