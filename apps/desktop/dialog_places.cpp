// Dialogs beside the figures rather than over them.
// SPDX-License-Identifier: MIT

#include "dialog_places.h"

#include "desktop_settings.h"

#include <dz3dviewport.h>
#include <dzmainwindow.h>
#include <dzviewport.h>
#include <dzviewportmgr.h>
#include <openhost/figure_area.h>

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QTimer>

#include <algorithm>

namespace desktop {

namespace {

constexpr int gap = 8;    ///< pixels between a dialog and the figures
constexpr int frame = 40; ///< pixels; one that becomes known late looks like a move

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

/// Questions, and dialogs of plug-ins.
bool IsLeftAlone(const QWidget& dialog)
{
    return dialog.inherits("kst::DialogBase") || dialog.inherits("QMessageBox") ||
           dialog.inherits("QFileDialog");
}

/// The one that tells of progress is as large as it has something to tell.
bool IsRemembered(const QWidget& dialog)
{
    return !dialog.objectName().isEmpty() && dialog.objectName() != QLatin1String("ProgressWindow") &&
           !IsLeftAlone(dialog);
}

QRect PlaceOf(const QWidget& dialog)
{
    return {dialog.pos(), dialog.size()};
}

/// False where there is none, or none of the screens of today shows it.
bool Restore(QWidget& dialog)
{
    const QRect place = IsRemembered(dialog) ? RememberedDialogPlace(dialog.objectName()) : QRect();
    const QScreen* const screen = place.isValid() ? QGuiApplication::screenAt(place.center()) : nullptr;
    if (!screen)
        return false;
    const QRect available = screen->availableGeometry();
    dialog.resize(place.size().boundedTo(available.size()));
    dialog.move(Within(place.topLeft(), dialog.size(), available));
    return true;
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
    auto* const dialog = object->isWidgetType() ? qobject_cast<QDialog*>(object) : nullptr;
    if (!dialog)
        return false;
    // Before that, who manages windows may have moved it.
    if (event->type() == QEvent::WindowActivate && !_begun.contains(dialog))
        _begun.insert(dialog, PlaceOf(*dialog));
    if (event->spontaneous()) // from outside a window is hidden and restored where it was
        return false;
    if (event->type() == QEvent::Show && !Restore(*dialog))
        place(*dialog);
    if (event->type() == QEvent::Hide)
        keep(*dialog);
    return false;
}

void DialogPlaces::keep(const QDialog& dialog)
{
    const QRect now = PlaceOf(dialog), before = _begun.value(&dialog, now);
    _begun.remove(&dialog);
    const bool isMoved = (now.topLeft() - before.topLeft()).manhattanLength() > frame;
    if ((isMoved || now.size() != before.size()) && !dialog.isMaximized() && IsRemembered(dialog))
        RememberDialogPlace(dialog.objectName(), now);
}

void DialogPlaces::place(QDialog& dialog) const
{
    if (!dialog.parentWidget() || dialog.parentWidget()->window() != &_window ||
        dialog.testAttribute(Qt::WA_Moved) || IsLeftAlone(dialog))
        return;
    // Nobody knows a window's frame before it is seen; that of the main window is as wide.
    const QSize edges = _window.frameGeometry().size() - _window.geometry().size();
    const QRect screen = _window.screen()->availableGeometry();
    const QSize most = dialog.size().boundedTo(screen.size() - edges);
    if (most != dialog.size()) // with large texts it may be larger
        dialog.resize(most);
    const QRect area = figures();
    if (area.isEmpty())
        return;
    QRect outer(QPoint(), dialog.size() + edges);
    outer.moveCenter(_window.frameGeometry().center()); // where the toolkit would put it
    dialog.move(PlaceBeside(outer, area, screen));
    // Until it has taken the event in, it would go where the toolkit puts it; the next time the figures may
    // stand elsewhere.
    QTimer::singleShot(0, &dialog, [dialog = &dialog] { dialog->setAttribute(Qt::WA_Moved, false); });
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
