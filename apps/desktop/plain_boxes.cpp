// Message boxes that show names as they are.
// SPDX-License-Identifier: MIT

#include "plain_boxes.h"

#include <QApplication>
#include <QEvent>
#include <QLabel>

namespace desktop {

PlainBoxes::PlainBoxes()
{
    qApp->installEventFilter(this);
}

/// Before it is measured for the first time.
bool PlainBoxes::eventFilter(QObject* object, QEvent* event)
{
    if (event->type() != QEvent::Polish)
        return false;
    auto* const label = qobject_cast<QLabel*>(object);
    if (label && label->textFormat() == Qt::AutoText && label->window()->inherits("QMessageBox"))
        label->setTextFormat(Qt::PlainText);
    return false;
}

} // namespace desktop
