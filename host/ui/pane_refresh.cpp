// Bringing a view up to date when that is worth the work.
// SPDX-License-Identifier: MIT

#include "pane_refresh.h"

#include <QEvent>
#include <QWidget>

#include <utility>

namespace openhost {

PaneRefresh::PaneRefresh(QWidget& view, std::function<void()> refresh)
    : QObject(&view), _view(view), _refresh(std::move(refresh))
{
    _timer.setSingleShot(true);
    _timer.setInterval(0);
    connect(&_timer, SIGNAL(timeout()), SLOT(handleTimeout()));
    view.installEventFilter(this);
}

void PaneRefresh::settle()
{
    _timer.stop();
    if (!_isStale)
        return;
    _isStale = false;
    _refresh();
}

void PaneRefresh::mark()
{
    _isStale = true;
    if (_view.isVisible())
        _timer.start();
}

void PaneRefresh::handleTimeout()
{
    if (_view.isVisible())
        settle();
}

bool PaneRefresh::eventFilter(QObject* object, QEvent* event)
{
    if (event->type() == QEvent::Show && _isStale)
        _timer.start();
    return QObject::eventFilter(object, event);
}

} // namespace openhost
