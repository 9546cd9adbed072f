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
class DzStyle;

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
    };
    DzApp(int& argc, char** argv, const Options& options);
    ~DzApp();

    /// The main window, hidden when headless; null while the application closes.
    DzMainWindow* getInterface() const;
    /// The active modal widget, else the main window; null when headless.
    QWidget* getDialogParent() const;
    bool isHeadless() const;
    bool showsTerminalProgress() const;

    Q_INVOKABLE void log(const QString& line);
    Q_INVOKABLE void debug(const QString& line);
    Q_INVOKABLE void warning(const QString& line);
    Q_INVOKABLE void error(const QString& line);
    /// Writes buffered text to the file; happens by itself past 512 characters. False if it cannot be
    /// written.
    bool flushLogBuffer();
    QString getLogFilename() const;
    void statusLine(const QString& text, bool addToLog = true);

    /// Absolute folders without a slash at the end.
    QString getDocumentationPath() const;
    QString getDocumentsPath() const;
    QString getAppDataPath() const;
    QString getHomePath() const;
    QString getPluginsPath() const;
    QString getTempPath() const;
    /// A name in the temporary folder that no file has yet, without extension.
    QString getTempFilename();
    void showURL(const QString& url);
    void setBusyCursor();
    void clearBusyCursor();

    /// Null for an unknown class.
    const DzClassFactory* findClassFactory(const QString& className) const;
    DzContentMgr* getContentMgr() const;
    DzAssetMgr* getAssetMgr() const;
    DzAssetIOMgr* getAssetIOMgr() const;
    DzExportMgr* getExportMgr() const;
    DzImportMgr* getImportMgr() const;
    DzPluginMgr* getPluginMgr() const;

    DzAuthor getCurrentAuthor() const;
    void setCurrentAuthor(const DzAuthor& author);
    DzVersion getVersion() const;
    QString getOrgName() const;
    bool isClosing() const;

    /// Empties the scene and makes the content, asset and import managers anew.
    void reset();

signals:
    void starting();
    void closing();
    void debugMsg(const QString& line);
    void styleChanged(DzStyle* style);

private:
    void createManagers();
    void deleteManagers();

    struct Impl;
    std::unique_ptr<Impl> _impl;
};

/// The one application; null while no host runs.
extern DzApp* dzApp;
