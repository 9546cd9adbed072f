// What mouse and keys do in the view.
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QString>

class QAction;
class QMenu;
class QWidget;

namespace desktop {

/// A table of it in the middle of the view, hidden at first.
/// @param view   owns it
/// @param entry  shows and hides it
/// @param menu   whose keys are told
QWidget* MakeMouseHelp(QWidget& view, QAction& entry, const QMenu& menu);

} // namespace desktop
