// How the list of jobs looks.
// SPDX-License-Identifier: MIT

#pragma once

class QTableView;
class QWidget;

namespace desktop {

class JobQueue;

/// With bars that show how far jobs are.
/// @param queue   borrowed
/// @param parent  owns what is made
QTableView* MakeJobTable(JobQueue& queue, QWidget& parent);

} // namespace desktop
