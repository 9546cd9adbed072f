// The application: log, folders, managers.
// SPDX-License-Identifier: MIT

#include "dzapp.h"

#include "dzaction.h"
#include "dzactionmgr.h"
#include "dzassetiomgr.h"
#include "dzassetmgr.h"
#include "dzcontentmgr.h"
#include "dzdeleteaction.h"
#include "dzexportmgr.h"
#include "dzimportmgr.h"
#include "dzmainwindow.h"
#include "dzplugin.h"
#include "dzpluginmgr.h"
#include "dzrendermgr.h"
#include "dzscene.h"
#include "dzstyle.h"
#include "headless_dialogs.h"
#include "load_windows.h"
#include "look.h"
#include "openhost/class_registry.h"
#include "openhost/diagnostics.h"
#include "openhost/operations.h"
#include "options_dialog.h"
#include "save_file_dialog.h"
#include "saving/save_file_question.h"
#include "scene/host_log.h"

#include <QDateTime>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QUrl>

#include <cstdio>

DzApp* dzApp = nullptr;

struct DzApp::Impl {
    Options options;
    QFile logFile;
    QString logBuffer;
    DzAuthor author;
    bool closing = false;
    int tempFiles = 0;
    openhost::DiagnosticsHub diagnostics;

    openhost::HeadlessDialogs headlessDialogs{nullptr}; ///< at work without display
    openhost::LoadWindows loadWindows;                  ///< at work with one
    std::unique_ptr<DzStyle> style;
    std::unique_ptr<DzScene> scene;
    std::unique_ptr<DzExportMgr> exportMgr;
    std::unique_ptr<DzImportMgr> importMgr;
    std::unique_ptr<DzAssetMgr> assetMgr;
    std::unique_ptr<DzPluginMgr> pluginMgr;
    std::unique_ptr<DzRenderMgr> renderMgr;
    std::unique_ptr<DzMainWindow> mainWindow;
    std::unique_ptr<DzContentMgr> contentMgr;
    std::unique_ptr<DzAssetIOMgr> assetIOMgr;
};

namespace {

constexpr int logBufferSize = 512;

QString WithoutSlash(const QString& path)
{
    return QDir(path).absolutePath();
}

const char* LogMark(base::Severity severity)
{
    return severity == base::Severity::Note    ? ""
           : severity == base::Severity::Error ? "ERROR: "
                                               : "WARNING: ";
}

} // namespace

DzApp::DzApp(int& argc, char** argv, const Options& options) : QApplication(argc, argv), _impl(new Impl)
{
    dzApp = this;
    _impl->options = options;
    setOrganizationName(QStringLiteral("Gantrel"));
    if (!options.logFilename.isEmpty()) {
        _impl->logFile.setFileName(options.logFilename);
        if (!_impl->logFile.open(QIODevice::WriteOnly | QIODevice::Truncate))
            std::fprintf(stderr, "cannot write the log file \"%s\"\n", qPrintable(options.logFilename));
    }
    connect(&_impl->diagnostics, &openhost::DiagnosticsHub::reported, this,
            [this](const base::Diagnostic& diagnostic) {
                log(QLatin1String(LogMark(diagnostic.severity)) +
                    QString::fromStdString(base::ToLine(diagnostic)));
            });
    if (options.headless) {
        installEventFilter(&_impl->headlessDialogs);
    } else {
        openhost::SetLoadQuestions(&_impl->loadWindows);
        openhost::SetOptionsAsker(openhost::OptionsDialog::Ask);
        openhost::SetSaveFileAsker(openhost::AskForSaveFile);
        openhost::ApplyLook(*this);
    }
    _impl->style.reset(new DzStyle);
    const auto tellStyle = [this] { emit styleChanged(_impl->style.get()); };
    connect(this, &QGuiApplication::paletteChanged, this, tellStyle);
    connect(this, &QGuiApplication::fontChanged, this, tellStyle);
    createManagers();
    emit starting();
}

DzApp::~DzApp()
{
    _impl->closing = true;
    openhost::SetLoadQuestions(nullptr);
    openhost::SetOptionsAsker(nullptr);
    openhost::SetSaveFileAsker(nullptr);
    emit closing();
    deleteManagers();
    _impl->pluginMgr.reset();
    _impl->style.reset();
    flushLogBuffer();
    dzApp = nullptr;
}

void DzApp::createManagers()
{
    dzScene = new DzScene;
    _impl->scene.reset(dzScene);
    _impl->exportMgr.reset(new DzExportMgr);
    _impl->importMgr.reset(new DzImportMgr);
    _impl->assetMgr.reset(new DzAssetMgr);
    _impl->contentMgr.reset(new DzContentMgr);
    _impl->assetIOMgr.reset(new DzAssetIOMgr);
    _impl->renderMgr.reset(new DzRenderMgr);
    _impl->mainWindow.reset(new DzMainWindow);
    if (!_impl->pluginMgr) // loaded modules stay loaded
        _impl->pluginMgr.reset(new DzPluginMgr);
    DzActionMgr* const actions = _impl->mainWindow->getActionMgr();
    actions->addAction(new DzDeleteAction);
    for (int i = 0; i < _impl->pluginMgr->getNumPlugins(); ++i)
        actions->addActions(*_impl->pluginMgr->getPlugin(i));
    connect(_impl->pluginMgr.get(), &DzPluginMgr::pluginLoaded, _impl->mainWindow.get(),
            [this](const QString& name) {
                _impl->mainWindow->getActionMgr()->addActions(*_impl->pluginMgr->findPlugin(name));
            });
    connect(_impl->pluginMgr.get(), &DzPluginMgr::aboutToUnload, _impl->mainWindow.get(),
            [this](const QString& name) {
                _impl->mainWindow->getActionMgr()->removeActions(*_impl->pluginMgr->findPlugin(name));
            });
}

void DzApp::deleteManagers()
{
    openhost::SetOperationListener(nullptr);
    _impl->mainWindow.reset();
    _impl->renderMgr.reset();
    _impl->assetIOMgr.reset();
    _impl->contentMgr.reset();
    _impl->assetMgr.reset();
    _impl->importMgr.reset();
    _impl->exportMgr.reset();
    _impl->scene.reset();
    dzScene = nullptr;
}

void DzApp::reset()
{
    deleteManagers();
    createManagers();
}

namespace {

template <class T>
bool RemoveIf(const QString& className, std::unique_ptr<T>& manager)
{
    if (!manager || className != QLatin1String(T::staticMetaObject.className()))
        return false;
    manager.reset();
    return true;
}

template <class T>
bool RemoveIf(const QString& className, T* manager)
{
    if (!manager || className != QLatin1String(T::staticMetaObject.className()))
        return false;
    delete manager;
    return true;
}

template <class... Managers>
bool RemoveOneOf(const QString& className, Managers&&... managers)
{
    return (RemoveIf(className, managers) || ...);
}

} // namespace

bool DzApp::removeManager(const QString& className)
{
    const DzMainWindow* const window = _impl->mainWindow.get();
    if (window &&
        RemoveOneOf(className, window->getActionMgr(), window->getPaneMgr(), window->getViewportMgr()))
        return true;
    return RemoveOneOf(className, _impl->mainWindow, _impl->contentMgr, _impl->assetMgr, _impl->assetIOMgr,
                       _impl->exportMgr, _impl->importMgr, _impl->renderMgr, _impl->pluginMgr);
}

DzMainWindow* DzApp::getInterface() const
{
    return _impl->mainWindow.get();
}

QWidget* DzApp::getDialogParent() const
{
    if (_impl->options.headless)
        return nullptr;
    return activeModalWidget() ? activeModalWidget() : _impl->mainWindow.get();
}

bool DzApp::showsTerminalProgress() const
{
    return _impl->options.headless && _impl->options.terminalProgress;
}

bool DzApp::isHeadless() const
{
    return _impl->options.headless;
}

void DzApp::log(const QString& line)
{
    if (_impl->options.echoLog)
        std::fprintf(stderr, "%s\n", line.toUtf8().constData());
    _impl->logBuffer += QDateTime::currentDateTime().toString(Qt::ISODateWithMs) + QLatin1Char(' ') + line +
                        QLatin1Char('\n');
    if (_impl->logBuffer.size() > logBufferSize)
        flushLogBuffer();
}

void DzApp::debug(const QString& line)
{
    log(QLatin1String("DEBUG: ") + line);
    emit debugMsg(line);
}

void DzApp::warning(const QString& line)
{
    _impl->diagnostics.report({base::Severity::Warning, {}, {}, line.toStdString()});
}
void DzApp::error(const QString& line)
{
    _impl->diagnostics.report({base::Severity::Error, {}, {}, line.toStdString()});
}

openhost::DiagnosticsHub& DzApp::diagnostics() const
{
    return _impl->diagnostics;
}

bool DzApp::flushLogBuffer()
{
    const QByteArray text = _impl->logBuffer.toUtf8();
    _impl->logBuffer.clear();
    if (!_impl->logFile.isOpen())
        return _impl->options.logFilename.isEmpty();
    return _impl->logFile.write(text) == text.size() && _impl->logFile.flush();
}

QString DzApp::getLogFilename() const
{
    return _impl->options.logFilename;
}

void DzApp::statusLine(const QString& text, bool addToLog)
{
    if (addToLog)
        log(text);
}

QString DzApp::getDocumentationPath() const
{
    return WithoutSlash(_impl->options.documentationPath);
}

QString DzApp::getDocumentsPath() const
{
    return WithoutSlash(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
}

QString DzApp::getAppDataPath() const
{
    return WithoutSlash(_impl->options.appDataPath);
}
QString DzApp::getHomePath() const
{
    return WithoutSlash(applicationDirPath());
}
QString DzApp::getPluginsPath() const
{
    return getHomePath() + QLatin1String("/plugins");
}

QString DzApp::getTempPath() const
{
    return WithoutSlash(_impl->options.tempPath.isEmpty() ? QDir::tempPath() : _impl->options.tempPath);
}

QString DzApp::getTempFilename()
{
    const QDir folder(getTempPath());
    QString name;
    do {
        name = QStringLiteral("temp-%1-%2").arg(applicationPid()).arg(++_impl->tempFiles);
    } while (!folder.entryList(QStringList(name + QLatin1Char('*'))).isEmpty());
    return folder.filePath(name);
}

void DzApp::showURL(const QString& url)
{
    if (_impl->options.headless)
        log(QLatin1String("not shown without display: ") + url);
    else
        QDesktopServices::openUrl(QUrl(url));
}

void DzApp::setBusyCursor()
{
    setOverrideCursor(Qt::WaitCursor);
}
void DzApp::clearBusyCursor()
{
    restoreOverrideCursor();
}

const DzClassFactory* DzApp::findClassFactory(const QString& className) const
{
    const DzClassFactory* const builtIn = openhost::FindBuiltInClassFactory(className);
    if (builtIn || !_impl->pluginMgr)
        return builtIn;
    return _impl->pluginMgr->findClassFactory(className);
}

DzContentMgr* DzApp::getContentMgr() const
{
    return _impl->contentMgr.get();
}
DzAssetIOMgr* DzApp::getAssetIOMgr() const
{
    return _impl->assetIOMgr.get();
}
DzAssetMgr* DzApp::getAssetMgr() const
{
    return _impl->assetMgr.get();
}
DzExportMgr* DzApp::getExportMgr() const
{
    return _impl->exportMgr.get();
}
DzImportMgr* DzApp::getImportMgr() const
{
    return _impl->importMgr.get();
}
DzPluginMgr* DzApp::getPluginMgr() const
{
    return _impl->pluginMgr.get();
}
DzRenderMgr* DzApp::getRenderMgr() const
{
    return _impl->renderMgr.get();
}
DzStyle* DzApp::getStyle() const
{
    return _impl->style.get();
}
DzAuthor DzApp::getCurrentAuthor() const
{
    return _impl->author;
}
void DzApp::setCurrentAuthor(const DzAuthor& author)
{
    _impl->author = author;
}
DzVersion DzApp::getVersion() const
{
    return DzVersion(4, 21, 0, 5);
}
QString DzApp::getOrgName() const
{
    return organizationName();
}
bool DzApp::isClosing() const
{
    return _impl->closing;
}

void openhost::LogNote(const QString& line)
{
    if (dzApp)
        dzApp->log(line);
}

void openhost::Report(const base::Diagnostic& diagnostic)
{
    if (dzApp)
        dzApp->diagnostics().report(diagnostic);
    else
        std::fprintf(stderr, "%s%s\n", LogMark(diagnostic.severity), base::ToLine(diagnostic).c_str());
}
