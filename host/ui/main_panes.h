// The main window's panes.
// SPDX-License-Identifier: MIT

#pragma once

class DzMainWindow;

namespace openhost {

/// Makes every pane of the host and docks it. Panes fill themselves when they are first shown or asked, so
/// that this is cheap.
void AddPanes(DzMainWindow& window);

} // namespace openhost
