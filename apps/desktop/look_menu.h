// The menu of the windows' colours.
// SPDX-License-Identifier: MIT

#pragma once

#include <QMenu>

namespace desktop {

/// Takes the remembered look at once.
class LookMenu : public QMenu {
    Q_OBJECT

public:
    LookMenu();

private slots:
    void choose(QAction* entry);
};

} // namespace desktop
