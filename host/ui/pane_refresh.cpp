// Bringing a view up to date when that is worth the work.
// SPDX-License-Identifier: MIT

#include "pane_refresh.h"

#include "dzprogress.h"

#include <QEvent>
#include <QWidget>

#include <utility>

namespace openhost {

namespace {

constexpr int waitMs = 50; ///< between looks at whether long work has ended

} // namespace

PaneRefresh::PaneRefresh(QWidget& view, std::function<void()> refresh)
    : QObject(&view), _view(view), _refresh(std::move(refresh))
{
    _timer.setSingleShot(true);
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
        _timer.start(0);
}

void PaneRefresh::handleTimeout()
{
    if (!_view.isVisible())
        return;
    if (DzProgress::getDepth() > 0)
        _timer.start(waitMs);
    else
        settle();
}

bool PaneRefresh::eventFilter(QObject* object, QEvent* event)
{
    if (event->type() == QEvent::Show && _isStale)
        _timer.start(0);
    return QObject::eventFilter(object, event);
}

} // namespace openhost
