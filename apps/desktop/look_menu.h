// The menu of the windows' colours.
// SPDX-License-Identifier: MIT

#pragma once

#include <QMenu>

namespace desktop {

enum class LookChoice;

/// Of all windows, at once.
void TakeLook(LookChoice choice);

/// Takes the remembered look at once.
class LookMenu : public QMenu {
    Q_OBJECT

public:
    LookMenu();

private slots:
    void choose(QAction* entry);
    void showChoice(); ///< which the preferences may have changed
};

} // namespace desktop
