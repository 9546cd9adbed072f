// Starting the host in an app or a test.
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

#include <memory>

namespace openhost {

class Attendant;

/// Owns the application with its scene, managers and main window; its end deletes them all. One at a time,
/// since Qt allows one application in a process.
class OpenHost {
public:
    struct Options {
        QString settingsFolder;         ///< the user's own when empty
        QStringList contentDirectories; ///< in order
        QString tempPath;               ///< the system's when empty
        QString documentationPath;
        QString logFilename;          ///< none is written when empty
        bool headless = true;         ///< with Qt's offscreen platform unless QT_QPA_PLATFORM says otherwise
        bool echoLog = false;         ///< the log goes to stderr too
        bool terminalProgress = true; ///< headless, progress is shown on stderr if that is a terminal
        bool hdMorphs = true;         ///< with the add-on for subdivided morphs
        /// Borrowed, and outlives the host; null for windows, or headless for one that answers as nobody
        /// would.
        Attendant* attendant = nullptr;
    };
    OpenHost(int& argc, char** argv, const Options& options);
    ~OpenHost();
    OpenHost(const OpenHost&) = delete;
    OpenHost& operator=(const OpenHost&) = delete;

    /// Empties the scene and makes the managers anew, as after a fresh start; settings files stay.
    void reset();
    /// Deletes what was removed from the scene and handles events that are due.
    void purge();
    /// False, with what is wrong, when the module cannot be loaded.
    bool loadPlugin(const QString& filename, QString* error);
    /// Runs the event loop until the application quits.
    int exec();

private:
    struct Impl;
    std::unique_ptr<Impl> _impl;
};

} // namespace openhost
