// Colours of the application's windows.
// SPDX-License-Identifier: MIT

#pragma once

class QApplication;

namespace openhost {

/// The style of all windows, in a dark look.
void DressWindows(QApplication& application);

} // namespace openhost
