// Bringing a view up to date when that is worth the work.
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QTimer>

#include <functional>

class QWidget;

namespace openhost {

/// Remembers that a view is out of date, and refreshes it once control returns to the event loop and the view
/// can be seen; any number of changes cost one refresh. A new view is out of date. What long work puts into
/// the scene and takes out of it again is not shown: while a progress is shown, views stay as they are.
class PaneRefresh : public QObject {
    Q_OBJECT
public:
    /// @param view  owns this object
    PaneRefresh(QWidget& view, std::function<void()> refresh);

    /// Refreshes an outdated view now, seen or not.
    void settle();

public slots:
    void mark();

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private slots:
    void handleTimeout();

private:
    QWidget& _view;
    std::function<void()> _refresh;
    QTimer _timer;
    bool _isStale = true;
};

} // namespace openhost
