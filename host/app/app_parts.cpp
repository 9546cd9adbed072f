// What the application hands out.
// SPDX-License-Identifier: MIT

#include "app/app_parts.h"

#include "app/progress_display.h"
#include "dzassetiomgr.h"
#include "dzassetmgr.h"
#include "dzcontentmgr.h"
#include "dzexportmgr.h"
#include "dzimportmgr.h"
#include "dzmainwindow.h"
#include "dzpluginmgr.h"
#include "dzrendermgr.h"
#include "dzscene.h"
#include "dzstyle.h"
#include "dzundostack.h"

namespace openhost {

namespace {

bool IsOfClass(const QObject* object, const QString& className)
{
    return object && className == QLatin1String(object->metaObject()->className());
}

bool RemoveChild(const QObject& parent, const QString& className)
{
    for (QObject* const child : parent.children())
        if (IsOfClass(child, className)) {
            delete child;
            return true;
        }
    return false;
}

template <class T>
bool RemoveIf(const QString& className, std::unique_ptr<T>& part)
{
    if (!IsOfClass(part.get(), className))
        return false;
    part.reset();
    return true;
}

template <class... Parts>
bool RemoveOneOf(const QString& className, std::unique_ptr<Parts>&... parts)
{
    return (RemoveIf(className, parts) || ...);
}

} // namespace

AppParts::AppParts() = default;
AppParts::~AppParts() = default;

void AppParts::clear()
{
    mainWindow.reset();
    renderMgr.reset();
    assetIOMgr.reset();
    contentMgr.reset();
    assetMgr.reset();
    importMgr.reset();
    exportMgr.reset();
    undoStack.reset();
    scene.reset();
}

bool AppParts::remove(const QString& className)
{
    return (mainWindow && RemoveChild(*mainWindow, className)) ||
           RemoveOneOf(className, mainWindow, contentMgr, assetMgr, assetIOMgr, exportMgr, importMgr,
                       renderMgr, pluginMgr);
}

} // namespace openhost
