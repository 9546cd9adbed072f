// The wait cursor for a scope.
// SPDX-License-Identifier: MIT

#include "ks_wait-cursor.h"

#include "ks_gui.h"

#include <QApplication>
#include <QCursor>

namespace kst {

WaitCursor::WaitCursor(bool busyOnly) : _busyOnly(busyOnly)
{
    again();
}

WaitCursor::~WaitCursor()
{
    restore();
}

void WaitCursor::again()
{
    gui::AssertGuiThread();
    if (_pushed)
        return;
    QApplication::setOverrideCursor(_busyOnly ? Qt::BusyCursor : Qt::WaitCursor);
    _pushed = true;
}

void WaitCursor::restore()
{
    gui::AssertGuiThread();
    if (!_pushed)
        return;
    QApplication::restoreOverrideCursor();
    _pushed = false;
}

} // namespace kst
