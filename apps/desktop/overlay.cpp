// What stands in a corner of the view.
// SPDX-License-Identifier: MIT

#include "overlay.h"

#include <QEvent>
#include <QKeyEvent>
#include <QLayout>
#include <QMetaMethod>
#include <QStyle>

#include <algorithm>

namespace desktop {

Overlay::Overlay(QWidget& view, Qt::Alignment corner) : QFrame(&view), _corner(corner)
{
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setCursor(Qt::ArrowCursor);
    setAttribute(Qt::WA_NoMousePropagation); // the view is not to turn and select behind it
    view.installEventFilter(this);
}

void Overlay::setPreferredSize(const QSize& size)
{
    _preferred = size;
}

void Overlay::takeCorner()
{
    if (!layout())
        return;
    layout()->activate();
    const int margin = fontMetrics().height() / 2;
    // Below what the view writes along its upper edge.
    const int top = 2 * fontMetrics().height();
    const QRect room = parentWidget()->rect().adjusted(margin, top, -margin, -margin);
    const int width =
        std::min(_preferred.width() > 0 ? _preferred.width() : sizeHint().width(), room.width());
    int height = layout()->hasHeightForWidth() ? layout()->heightForWidth(width) : sizeHint().height();
    if (_preferred.height() > 0)
        height = _preferred.height();
    const QSize size(width, std::min(std::max(height, minimumSizeHint().height()), room.height()));
    setGeometry(QStyle::alignedRect(Qt::LeftToRight, _corner, size, room));
}

bool Overlay::eventFilter(QObject* object, QEvent* event)
{
    if (event->type() == QEvent::Resize && object == parent())
        takeCorner();
    return QFrame::eventFilter(object, event);
}

void Overlay::showEvent(QShowEvent* event)
{
    QFrame::showEvent(event);
    takeCorner();
}

void Overlay::keyPressEvent(QKeyEvent* event)
{
    static const QMetaMethod heard = QMetaMethod::fromSignal(&Overlay::dismissed);
    if (event->key() == Qt::Key_Escape && isSignalConnected(heard))
        emit dismissed();
    else
        QFrame::keyPressEvent(event);
}

} // namespace desktop
