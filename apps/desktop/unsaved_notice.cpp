// Telling of morphs that are not saved.
// SPDX-License-Identifier: MIT

#include "unsaved_notice.h"

#include "quoted.h"
#include "status_line.h"
#include "unsaved_morphs.h"

#include <dzprogress.h>
#include <dzscene.h>

#include <QAction>
#include <QApplication>
#include <QEvent>
#include <QMainWindow>

namespace desktop {

UnsavedNotice::UnsavedNotice(QMainWindow& window, StatusLine& status) : _status(status)
{
    for (QTimer* const timer : {&_soon, &_afterWork}) {
        timer->setSingleShot(true);
        connect(timer, SIGNAL(timeout()), SLOT(update()));
    }
    connect(dzScene, SIGNAL(nodeListChanged()), &_soon, SLOT(start()));
    connect(&openhost::Events(), SIGNAL(sceneEdited(openhost::SceneEdit, DzElement*)),
            SLOT(handleEdit(openhost::SceneEdit)));
    window.installEventFilter(this);
}

void UnsavedNotice::serve(QAction& entry)
{
    _entry = &entry;
    update();
}

void UnsavedNotice::handleEdit(openhost::SceneEdit edit)
{
    if (edit == openhost::SceneEdit::Morph)
        _soon.start();
}

bool UnsavedNotice::eventFilter(QObject*, QEvent* event)
{
    if (event->type() == QEvent::WindowActivate || event->type() == QEvent::WindowDeactivate)
        _soon.start();
    return false;
}

void UnsavedNotice::update()
{
    // Work that is under way makes morphs that go again.
    if (DzProgress::getDepth() > 0) {
        _afterWork.start(200);
        return;
    }
    for (const QWidget* const dialog : QApplication::topLevelWidgets())
        if (dialog->objectName() == QLatin1String("SuccessDialog"))
            connect(dialog, SIGNAL(destroyed()), &_soon, SLOT(start()), Qt::UniqueConnection);
    const QStringList labels = MorphsAtRisk(false);
    _status.tell(
        StatusLine::Morphs,
        labels.isEmpty()
            ? QString()
            : tr("Not saved yet: %1. File > Save Morphs... saves new morphs.").arg(Enumerated(labels)));
    if (_entry)
        _entry->setEnabled(!UnsavedMorphs().empty());
}

} // namespace desktop
