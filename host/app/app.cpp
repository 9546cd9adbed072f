// The application: log, folders, managers.
// SPDX-License-Identifier: MIT

#include "dzapp.h"

#include "address_opening.h"
#include "app/app_access.h"
#include "app/app_parts.h"
#include "app/host_log.h"
#include "app/program_ban.h"
#include "dzmainwindow.h"
#include "dzpluginmgr.h"
#include "dzstyle.h"
#include "openhost/class_registry.h"
#include "openhost/diagnostics.h"
#include "openhost/events.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTimer>
#include <QUrl>

#include <cstdio>
#include <utility>

DzApp* dzApp = nullptr;

struct DzApp::Impl {
    Options options;
    QFile logFile;
    QString logBuffer;
    QTimer logFlush; ///< runs while something is buffered
    bool isLogLossTold = false;
    DzAuthor author;
    bool closing = false;
    int tempFiles = 0;
    openhost::DiagnosticsHub diagnostics;

    openhost::HostEvents events;
    openhost::AppParts parts;
};

namespace {

constexpr int logBufferSize = 512;
constexpr int logDelayMs = 1000;

QString WithoutSlash(const QString& path)
{
    return QDir(path).absolutePath();
}

/// The former run may have ended badly, and its log tells why: the file is renamed, and what cannot be
/// renamed is written on.
void OpenLog(QFile& file)
{
    const QFileInfo former(file.fileName());
    // A link may lead anywhere, and a device is no log.
    const bool isKept = former.size() > 0 && former.isFile();
    bool isRenamed = false;
    if (isKept && !former.isSymLink()) {
        const QString old = former.path() + QLatin1Char('/') + former.completeBaseName() +
                            QLatin1String(".old.") + former.suffix();
        isRenamed = std::rename(QFile::encodeName(file.fileName()).constData(),
                                QFile::encodeName(old).constData()) == 0;
    }
    const bool isAppended = isKept && !isRenamed;
    // A failure is told with the first text.
    file.open(QIODevice::WriteOnly | (isAppended ? QIODevice::Append : QIODevice::Truncate));
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
        OpenLog(_impl->logFile);
    }
    _impl->logFlush.setSingleShot(true);
    connect(&_impl->logFlush, &QTimer::timeout, this, [this] { flushLogBuffer(); });
    connect(&_impl->diagnostics, &openhost::DiagnosticsHub::reported, this,
            [this](const base::Diagnostic& diagnostic) {
                log(QLatin1String(LogMark(diagnostic.severity)) +
                    QString::fromStdString(base::ToLine(diagnostic)));
                // It may be the last that this run gets to say.
                if (diagnostic.severity != base::Severity::Note)
                    flushLogBuffer();
            });
    const auto tellStyle = [this] { emit styleChanged(getStyle()); };
    connect(this, &QGuiApplication::paletteChanged, this, tellStyle);
    connect(this, &QGuiApplication::fontChanged, this, tellStyle);
}

DzApp::~DzApp()
{
    _impl->closing = true;
    emit closing();
    _impl->parts.clear();
    _impl->parts.pluginMgr.reset();
    _impl->parts.style.reset();
    flushLogBuffer();
    dzApp = nullptr;
}

openhost::AppParts& openhost::AppAccess::Parts(const DzApp& app)
{
    return app._impl->parts;
}

openhost::HostEvents& openhost::AppAccess::Events(const DzApp& app)
{
    return app._impl->events;
}

openhost::Attendant*& openhost::AppAccess::AttendantOf(const DzApp& app)
{
    return app._impl->options.attendant;
}

DzMainWindow* DzApp::getInterface() const
{
    return _impl->parts.mainWindow.get();
}

QWidget* DzApp::getDialogParent() const
{
    if (_impl->options.headless)
        return nullptr;
    return activeModalWidget() ? activeModalWidget() : _impl->parts.mainWindow.get();
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
    else if (!_impl->logFlush.isActive())
        _impl->logFlush.start(logDelayMs);
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
    _impl->logFlush.stop();
    if (_impl->options.logFilename.isEmpty() ||
        (_impl->logFile.isOpen() && _impl->logFile.write(text) == text.size() && _impl->logFile.flush()))
        return true;
    // What is told goes into the log, too.
    if (!std::exchange(_impl->isLogLossTold, true))
        _impl->diagnostics.report(
            {base::Severity::Warning,
             _impl->options.logFilename.toStdString(),
             {},
             "the log cannot be written: " + _impl->logFile.errorString().toStdString()});
    return false;
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
    else if (openhost::ProgramBan::IsSet())
        warning(QLatin1String("not shown, since scripts may start programs only with --allow-processes: ") +
                url);
    else
        openhost::OpenAddress(QUrl(url));
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
    if (builtIn || !_impl->parts.pluginMgr)
        return builtIn;
    return _impl->parts.pluginMgr->findClassFactory(className);
}

DzContentMgr* DzApp::getContentMgr() const
{
    return _impl->parts.contentMgr.get();
}
DzAssetIOMgr* DzApp::getAssetIOMgr() const
{
    return _impl->parts.assetIOMgr.get();
}
DzAssetMgr* DzApp::getAssetMgr() const
{
    return _impl->parts.assetMgr.get();
}
DzExportMgr* DzApp::getExportMgr() const
{
    return _impl->parts.exportMgr.get();
}
DzImportMgr* DzApp::getImportMgr() const
{
    return _impl->parts.importMgr.get();
}
DzPluginMgr* DzApp::getPluginMgr() const
{
    return _impl->parts.pluginMgr.get();
}
DzRenderMgr* DzApp::getRenderMgr() const
{
    return _impl->parts.renderMgr.get();
}
DzStyle* DzApp::getStyle() const
{
    return _impl->parts.style.get();
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
