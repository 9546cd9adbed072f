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
#include "load_windows.h"
#include "openhost/operations.h"
#include "options_dialog.h"
#include "save_file_dialog.h"
#include "saving/save_file_question.h"
#include "scene/load_questions.h"
#include "scene/option_table.h"
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
    std::unique_ptr<DzApp> app;
    LoadWindows windows; ///< at work with a display

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
    QString folder = options.settingsFolder;
    if (folder.isEmpty())
        folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                 QLatin1String("/gantrel");
    SetSettingsFolder(folder);
    _impl->app.reset(new DzApp(argc, argv, AppOptions(options, folder)));
    if (!options.headless) {
        SetLoadQuestions(&_impl->windows);
        SetOptionsAsker(OptionsDialog::Ask);
        SetSaveFileAsker(AskForSaveFile);
    }
    Dress(*_impl->app, _impl->parts());
    _impl->furnish();
    emit _impl->app->starting();
}

OpenHost::~OpenHost()
{
    purge();
    SetLoadQuestions(nullptr);
    SetOptionsAsker(nullptr);
    SetSaveFileAsker(nullptr);
    _impl->app.reset();
}

void OpenHost::reset()
{
    purge();
    SetOperationListener(nullptr);
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
