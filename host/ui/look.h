// Colours of the application's windows.
// SPDX-License-Identifier: MIT

#pragma once

class QApplication;

namespace openhost {

/// A dark look in which figures stand out.
void ApplyLook(QApplication& application);

} // namespace openhost
