// Whether the scene has been changed since it was last as in its file.
// SPDX-License-Identifier: MIT

#include "apps/desktop/scene_changes.h"

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

SceneChanges::SceneChanges(std::function<void()> onToggle, std::function<bool(const QString&)> mayReplace)
    : _onToggle(std::move(onToggle)), _mayReplace(std::move(mayReplace))
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
    _onToggle();
}

bool SceneChanges::allow(const QString& operation, const QString& detail)
{
    if (operation == QLatin1String("replaceScene"))
        return _mayReplace(detail);
    static const QStringList changing{QStringLiteral("add"),     QStringLiteral("remove"),
                                      QStringLiteral("rename"),  QStringLiteral("visible"),
                                      QStringLiteral("morph"),   QStringLiteral("property"),
                                      QStringLiteral("transfer")};
    if (!_isChanged && changing.contains(operation) && !IsOfPerspectiveView(detail))
        setChanged(true);
    return true;
}

} // namespace desktop
