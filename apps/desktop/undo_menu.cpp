// The entries that take back and do again.
// SPDX-License-Identifier: MIT

#include "undo_menu.h"

#include "status_line.h"

#include <dzundostack.h>

#include <QAction>

namespace desktop {

namespace {

/// Labels may hold what a menu takes for an underlined letter.
QString AsEntry(QString caption)
{
    return caption.replace('&', QLatin1String("&&"));
}

} // namespace

UndoMenu::UndoMenu(StatusLine& status) : _status(status)
{
    dzUndoStack->setRecording(true);
    connect(dzUndoStack, SIGNAL(changed()), SLOT(update()));
    connect(dzUndoStack, SIGNAL(restarted(QString)), SLOT(tellRestart(QString)));
}

void UndoMenu::serve(QAction& undo, QAction& redo)
{
    _undo = &undo;
    _redo = &redo;
    update();
}

void UndoMenu::update()
{
    if (!_undo)
        return;
    const QString undo = AsEntry(dzUndoStack->getUndoCaption()),
                  redo = AsEntry(dzUndoStack->getRedoCaption());
    _undo->setText(undo.isEmpty() ? tr("&Undo") : tr("&Undo %1").arg(undo));
    _undo->setEnabled(dzUndoStack->canUndo());
    _redo->setText(redo.isEmpty() ? tr("&Redo") : tr("&Redo %1").arg(redo));
    _redo->setEnabled(dzUndoStack->canRedo());
    if (dzUndoStack->canUndo())
        forgetRestart();
}

void UndoMenu::tellRestart(const QString& what)
{
    _status.tell(StatusLine::Undo, tr("Cannot be undone: %1, and what was done before it.").arg(what));
}

void UndoMenu::forgetRestart()
{
    _status.tell(StatusLine::Undo, QString());
}

} // namespace desktop
