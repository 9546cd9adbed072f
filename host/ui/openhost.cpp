// Starting and ending the host.
// SPDX-License-Identifier: MIT

#include "openhost/openhost.h"

#include "dzapp.h"
#include "dzcontentmgr.h"
#include "dzplugin.h"
#include "dzpluginmgr.h"
#include "dzscene.h"
#include "scene/settings_store.h"

#include <QCoreApplication>
#include <QDir>
#include <QStandardPaths>

namespace openhost {

struct OpenHost::Impl {
    Options options;
    std::unique_ptr<DzApp> app;
};

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
    return result;
}

void AddContentDirectories(const QStringList& directories)
{
    for (const QString& directory : directories)
        dzApp->getContentMgr()->addContentDirectory(directory, false);
}

} // namespace

OpenHost::OpenHost(int& argc, char** argv, const Options& options) : _impl(new Impl)
{
    if (options.headless && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    _impl->options = options;
    QString folder = options.settingsFolder;
    if (folder.isEmpty())
        folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                 QLatin1String("/gantrel");
    SetSettingsFolder(folder);
    _impl->app.reset(new DzApp(argc, argv, AppOptions(options, folder)));
    AddContentDirectories(options.contentDirectories);
    SetHdMorphSupport(options.hdMorphs);
}

OpenHost::~OpenHost()
{
    purge();
    _impl->app.reset();
}

void OpenHost::reset()
{
    purge();
    _impl->app->reset();
    AddContentDirectories(_impl->options.contentDirectories);
    SetHdMorphSupport(_impl->options.hdMorphs);
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
