// Looking at what a conversion of the list of jobs has made.
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

class QWidget;

namespace desktop {

/// Turns the dials of the figure that is selected to their full strength, in one step. Those that it does not
/// have are told in a box.
void ShowResult(QWidget& window, const QStringList& dials);

} // namespace desktop
