// The main window's menus.
// SPDX-License-Identifier: MIT

#pragma once

class DzActionMgr;
class QMainWindow;

namespace openhost {

/// Puts each action that asks for a menu into it, and makes the menus that are missing; those left empty go.
/// Titles that differ only in their mnemonic name one menu; its action's data is the title without it, before
/// translation.
void FillMenus(QMainWindow& window, const DzActionMgr& actions);

} // namespace openhost
