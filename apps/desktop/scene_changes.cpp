// Whether the scene has been changed since it was last as in its file.
// SPDX-License-Identifier: MIT

#include "scene_changes.h"

#include <dzapp.h>
#include <dzcamera.h>
#include <dzmainwindow.h>

#include <QStringList>

namespace desktop {

namespace {

/// Looking from elsewhere changes nothing that is saved.
bool IsOfPerspectiveView(const QString& detail)
{
    const DzMainWindow* const window = dzApp->getInterface();
    const DzViewportMgr* const viewports = window ? window->getViewportMgr() : nullptr;
    const DzCamera* const camera = viewports ? viewports->getPerspectiveView() : nullptr;
    return camera && detail.startsWith(camera->getName() + QLatin1Char('.'));
}

} // namespace

SceneChanges::SceneChanges(ChangeAnswers answers) : _answers(std::move(answers))
{
    openhost::SetOperationListener(this);
}

SceneChanges::~SceneChanges()
{
    openhost::SetOperationListener(nullptr);
}

void SceneChanges::setChanged(bool isChanged)
{
    if (isChanged == _isChanged)
        return;
    _isChanged = isChanged;
    _answers.onToggle();
}

bool SceneChanges::allow(const QString& operation, const QString& detail)
{
    if (operation == QLatin1String("replaceScene"))
        return _answers.mayReplace(detail);
    if (operation == QLatin1String("leftOut"))
        _answers.onLeftOut(detail);
    static const QStringList changing{QStringLiteral("add"),     QStringLiteral("remove"),
                                      QStringLiteral("rename"),  QStringLiteral("visible"),
                                      QStringLiteral("morph"),   QStringLiteral("property"),
                                      QStringLiteral("transfer")};
    if (!_isChanged && changing.contains(operation) && !IsOfPerspectiveView(detail))
        setChanged(true);
    return true;
}

} // namespace desktop
