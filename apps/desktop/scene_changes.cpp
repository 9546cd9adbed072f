// Whether the scene has been changed since it was last as in its file.
// SPDX-License-Identifier: MIT

#include "scene_changes.h"

#include <dzapp.h>
#include <dzcamera.h>
#include <dzmainwindow.h>
#include <dzscene.h>
#include <dzundostack.h>

namespace desktop {

namespace {

/// Looking from elsewhere changes nothing that is saved.
bool IsPerspectiveView(const DzElement* element)
{
    const DzMainWindow* const window = dzApp->getInterface();
    const DzViewportMgr* const viewports = window ? window->getViewportMgr() : nullptr;
    return viewports && element && element == viewports->getPerspectiveView();
}

} // namespace

SceneChanges::SceneChanges()
{
    connect(dzScene, SIGNAL(nodeAdded(DzNode*)), SLOT(handleNodes()));
    connect(dzScene, SIGNAL(nodeRemoved(DzNode*)), SLOT(handleNodes()));
    connect(&openhost::Events(), SIGNAL(sceneEdited(openhost::SceneEdit, DzElement*)),
            SLOT(handleEdit(openhost::SceneEdit, DzElement*)));
    connect(dzUndoStack, SIGNAL(cleanChanged(bool)), SLOT(followSteps(bool)));
}

void SceneChanges::setChanged(bool isChanged)
{
    if (!isChanged)
        dzUndoStack->setClean();
    if (isChanged == _isChanged)
        return;
    _isChanged = isChanged;
    emit toggled();
}

// Every step since is taken back, or done again.
void SceneChanges::followSteps(bool isClean)
{
    if (isClean != _isChanged)
        return;
    _isChanged = !isClean;
    emit toggled();
}

void SceneChanges::handleNodes()
{
    setChanged(true);
}

void SceneChanges::handleEdit(openhost::SceneEdit, DzElement* element)
{
    if (!_isChanged && !IsPerspectiveView(element))
        setChanged(true);
}

} // namespace desktop
