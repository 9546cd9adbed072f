// The desktop application's menu entries among those of the host and its plug-ins.
// SPDX-License-Identifier: MIT

#pragma once

#include <QMenu>
#include <QPointer>

#include <functional>

#include <dzaction.h>

class QMainWindow;

namespace desktop {

struct ActionTexts {
    const char* text;        ///< with its mnemonic
    const char* description; ///< a sentence
    const char* menu;        ///< with its mnemonic
    QKeySequence keys;
    bool startsGroup = false; ///< a line stands before it in the menu
    QMenu* above = nullptr;   ///< a menu that stands before it, borrowed; null for none
};

/// Runs a function when it is chosen.
class MenuAction : public DzAction {
    Q_OBJECT

public:
    MenuAction(const ActionTexts& texts, std::function<void()> work);

    QString getDefaultMenuPath() const override { return _menu; }
    QKeySequence getDefaultAccel() const override { return _keys; }
    bool startsGroup() const { return _startsGroup; }
    QMenu* above() const { return _above; } ///< null when it is gone

protected:
    void executeAction() override;

private:
    QString _menu;
    QKeySequence _keys;
    bool _startsGroup;
    QPointer<QMenu> _above; ///< which may go first
    std::function<void()> _work;
};

/// Puts the menus into the order that people look for, with lines between groups. To be called whenever the
/// host has filled them anew.
/// @param view   borrowed; stands behind File and Edit
/// @param panes  borrowed; stands before the help
void ArrangeMenus(QMainWindow& window, QMenu& view, QMenu& panes);

} // namespace desktop
