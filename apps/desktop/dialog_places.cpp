// Dialogs beside the figures rather than over them.
// SPDX-License-Identifier: MIT

#include "dialog_places.h"

#include <dz3dviewport.h>
#include <dzmainwindow.h>
#include <dzviewport.h>
#include <dzviewportmgr.h>
#include <openhost/figure_area.h>

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QScreen>
#include <QTimer>

#include <algorithm>

namespace desktop {

namespace {

constexpr int gap = 8; ///< pixels between a dialog and the figures

int AreaOf(const QRect& rect)
{
    return rect.isEmpty() ? 0 : rect.width() * rect.height();
}

/// From their left and upper edges on, which have what is used first.
QPoint Within(QPoint place, const QSize& size, const QRect& screen)
{
    place.setX(std::max(screen.left(), std::min(place.x(), screen.right() + 1 - size.width())));
    place.setY(std::max(screen.top(), std::min(place.y(), screen.bottom() + 1 - size.height())));
    return place;
}

bool HasOwnPlace(const QWidget& dialog)
{
    return dialog.testAttribute(Qt::WA_Moved) || dialog.inherits("kst::DialogBase") ||
           dialog.inherits("QMessageBox") || dialog.inherits("QFileDialog");
}

} // namespace

QPoint PlaceBeside(const QRect& dialog, const QRect& figures, const QRect& screen)
{
    QRect best(Within(dialog.topLeft(), dialog.size(), screen), dialog.size());
    for (const int left : {figures.right() + 1 + gap, figures.left() - gap - dialog.width(), screen.left(),
                           screen.right() + 1 - dialog.width()}) {
        const QRect place(Within(QPoint(left, dialog.top()), dialog.size(), screen), dialog.size());
        if (AreaOf(place & figures) < AreaOf(best & figures))
            best = place;
    }
    return best.topLeft();
}

DialogPlaces::DialogPlaces(DzMainWindow& window) : _window(window)
{
    qApp->installEventFilter(this);
}

bool DialogPlaces::eventFilter(QObject* object, QEvent* event)
{
    // From outside it comes when a window is restored, which stays where it was.
    if (event->type() != QEvent::Show || event->spontaneous())
        return false;
    auto* const dialog = qobject_cast<QDialog*>(object);
    if (!dialog || !dialog->parentWidget() || dialog->parentWidget()->window() != &_window ||
        HasOwnPlace(*dialog))
        return false;
    // Nobody knows a window's frame before it is seen; that of the main window is as wide.
    const QSize frame = _window.frameGeometry().size() - _window.geometry().size();
    const QRect screen = _window.screen()->availableGeometry();
    const QSize most = dialog->size().boundedTo(screen.size() - frame);
    if (most != dialog->size()) // with large texts it may be larger
        dialog->resize(most);
    const QRect area = figures();
    if (area.isEmpty())
        return false;
    QRect outer(QPoint(), dialog->size() + frame);
    outer.moveCenter(_window.frameGeometry().center()); // where the toolkit would put it
    dialog->move(PlaceBeside(outer, area, screen));
    // Until it has taken the event in, it would go where the toolkit puts it; the next time the figures may
    // stand elsewhere.
    QTimer::singleShot(0, dialog, [dialog] { dialog->setAttribute(Qt::WA_Moved, false); });
    return false;
}

QRect DialogPlaces::figures() const
{
    const DzViewport* const viewport = _window.getViewportMgr()->getActiveViewport();
    const Dz3DViewport* const view = viewport ? viewport->get3DViewport() : nullptr;
    if (!view || !view->isVisible())
        return QRect();
    return openhost::FigureArea(*view).translated(view->mapToGlobal(QPoint()));
}

} // namespace desktop
