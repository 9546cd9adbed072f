// The application.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzauthor.h"
#include "dzversion.h"

#include <QApplication>
#include <QString>

#include <memory>

class DzAction;
class DzAssetIOMgr;
class DzAssetMgr;
class DzClassFactory;
class DzContentMgr;
class DzExportMgr;
class DzImportMgr;
class DzMainWindow;
class DzPluginMgr;
class DzRenderMgr;
class DzStyle;
namespace openhost {
class DiagnosticsHub;
}

namespace openhost {
class Attendant;
struct AppAccess;
} // namespace openhost

/// Owns the managers, the main window, the scene and the log. One in a process.
class DzApp : public QApplication {
    Q_OBJECT
public:
    struct Options {
        QString logFilename; ///< none is written when empty
        QString tempPath;
        QString documentationPath;
        QString appDataPath;
        bool headless = true;         ///< no window is shown and nothing asks
        bool echoLog = false;         ///< the log goes to stderr too
        bool terminalProgress = true; ///< headless, progress is shown on stderr if that is a terminal
        openhost::Attendant* attendant = nullptr; ///< borrowed; null for nobody
    };
    DzApp(int& argc, char** argv, const Options& options);
    ~DzApp();

    /// The main window, hidden when headless; null while the application closes.
    Q_INVOKABLE DzMainWindow* getInterface() const;
    /// The active modal widget, else the main window; null when headless.
    QWidget* getDialogParent() const;
    bool isHeadless() const;
    bool showsTerminalProgress() const;

    Q_INVOKABLE void log(const QString& line);
    Q_INVOKABLE void debug(const QString& line);
    Q_INVOKABLE void warning(const QString& line);
    Q_INVOKABLE void error(const QString& line);
    /// What the host and its plug-ins have to say, warnings and errors among them; lives as long as the
    /// application.
    openhost::DiagnosticsHub& diagnostics() const;
    /// Writes buffered text to the file; happens by itself past 512 characters. False if it cannot be
    /// written.
    bool flushLogBuffer();
    Q_INVOKABLE QString getLogFilename() const;
    Q_INVOKABLE void statusLine(const QString& text, bool addToLog = true);

    /// Absolute folders without a slash at the end.
    Q_INVOKABLE QString getDocumentationPath() const;
    Q_INVOKABLE QString getDocumentsPath() const;
    Q_INVOKABLE QString getAppDataPath() const;
    Q_INVOKABLE QString getHomePath() const;
    Q_INVOKABLE QString getPluginsPath() const;
    Q_INVOKABLE QString getTempPath() const;
    /// A name in the temporary folder that no file has yet, without extension.
    Q_INVOKABLE QString getTempFilename();
    Q_INVOKABLE void showURL(const QString& url);
    Q_INVOKABLE void setBusyCursor();
    Q_INVOKABLE void clearBusyCursor();

    /// Null for an unknown class.
    const DzClassFactory* findClassFactory(const QString& className) const;
    Q_INVOKABLE DzContentMgr* getContentMgr() const;
    Q_INVOKABLE DzAssetMgr* getAssetMgr() const;
    Q_INVOKABLE DzAssetIOMgr* getAssetIOMgr() const;
    Q_INVOKABLE DzExportMgr* getExportMgr() const;
    Q_INVOKABLE DzImportMgr* getImportMgr() const;
    Q_INVOKABLE DzPluginMgr* getPluginMgr() const;
    Q_INVOKABLE DzRenderMgr* getRenderMgr() const;

    DzStyle* getStyle() const; ///< null while the application closes

    DzAuthor getCurrentAuthor() const;
    void setCurrentAuthor(const DzAuthor& author);
    DzVersion getVersion() const;
    Q_INVOKABLE QString getOrgName() const;
    bool isClosing() const;

signals:
    void starting();
    void closing();
    void debugMsg(const QString& line);
    void styleChanged(DzStyle* style);

private:
    friend struct openhost::AppAccess;

    struct Impl;
    std::unique_ptr<Impl> _impl;
};

/// The one application; null while no host runs.
extern DzApp* dzApp;
