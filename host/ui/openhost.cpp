// Starting and ending the host.
// SPDX-License-Identifier: MIT

#include "openhost/openhost.h"

#include "app/app_access.h"
#include "app/app_parts.h"
#include "app/settings_store.h"
#include "dzapp.h"
#include "dzcontentmgr.h"
#include "dzplugin.h"
#include "dzpluginmgr.h"
#include "dzscene.h"
#include "openhost/testing.h"
#include "openhost/window_attendant.h"
#include "startup.h"

#include <QCoreApplication>
#include <QDir>
#include <QStandardPaths>

namespace openhost {

namespace {

DzApp::Options AppOptions(const OpenHost::Options& options, const QString& settingsFolder)
{
    DzApp::Options result;
    result.logFilename = options.logFilename;
    result.tempPath = options.tempPath;
    result.documentationPath = options.documentationPath;
    result.appDataPath = settingsFolder;
    result.headless = options.headless;
    result.echoLog = options.echoLog;
    result.terminalProgress = options.terminalProgress;
    result.attendant = options.attendant;
    return result;
}

void AddContentDirectories(const QStringList& directories)
{
    for (const QString& directory : directories)
        dzApp->getContentMgr()->addContentDirectory(directory, false);
}

} // namespace

struct OpenHost::Impl {
    Options options;
    WindowAttendant windows; ///< at work with a display
    std::unique_ptr<DzApp> app;

    AppParts& parts() { return AppAccess::Parts(*app); }

    void furnish()
    {
        Furnish(parts());
        AddContentDirectories(options.contentDirectories);
        SetHdMorphSupport(options.hdMorphs);
    }
};

OpenHost::OpenHost(int& argc, char** argv, const Options& options) : _impl(new Impl)
{
    if (options.headless && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    _impl->options = options;
    if (!options.attendant && !options.headless)
        _impl->options.attendant = &_impl->windows;
    QString folder = options.settingsFolder;
    if (folder.isEmpty())
        folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                 QLatin1String("/gantrel");
    SetSettingsFolder(folder);
    _impl->app.reset(new DzApp(argc, argv, AppOptions(_impl->options, folder)));
    Dress(*_impl->app, _impl->parts());
    _impl->furnish();
    emit _impl->app->starting();
}

OpenHost::~OpenHost()
{
    purge();
    _impl->app.reset();
}

void OpenHost::reset()
{
    purge();
    _impl->parts().clear();
    _impl->furnish();
}

void OpenHost::purge()
{
    if (dzScene)
        dzScene->purgeRemoved();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
}

bool OpenHost::loadPlugin(const QString& filename, QString* error)
{
    return _impl->app->getPluginMgr()->loadPlugin(filename, error) != nullptr;
}

int OpenHost::exec()
{
    return QApplication::exec();
}

void SetHdMorphSupport(bool isPresent)
{
    static DzPlugin addOn(QStringLiteral("Morph Loader Pro SubDivision Resolution"),
                          QStringLiteral("Gantrel open host"),
                          QStringLiteral("Loads morphs from subdivided meshes."), 1, 0, 0, 0);
    if (isPresent)
        dzApp->getPluginMgr()->addPlugin(&addOn);
    else
        dzApp->getPluginMgr()->removePlugin(addOn.getName());
}

} // namespace openhost
