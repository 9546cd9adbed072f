// Content directories and the files in them.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzbase.h"

#include <QStringList>

#include <memory>

class DzContentFolder;

/// Directories in the user's order. Paths ignore case, also where the disk does not.
class DzContentMgr : public DzBase {
    Q_OBJECT
public:
    DzContentMgr();
    ~DzContentMgr();

    /// Loads a native file, or imports one by its extension. False when it is missing, unreadable or refused.
    Q_INVOKABLE bool openFile(const QString& fullPath, bool merge = false);
    /// The file in the first directory that holds it; empty if none. A leading '/' is ignored.
    Q_INVOKABLE QString getAbsolutePath(const QString& relative, bool useImportFolders,
                                        const QString& preferred = QString()) const;
    /// The path below its directory, with a leading '/'; the input itself if it is below none.
    Q_INVOKABLE QString getRelativePath(const QString& absolute, bool useImportFolders) const;
    /// The content directory that contains the path, otherwise the import directory if those are wanted; null
    /// if none.
    Q_INVOKABLE DzContentFolder* findBaseDirectory(const QString& path, bool useImportFolders) const;
    Q_INVOKABLE int getNumContentDirectories() const;
    Q_INVOKABLE QString getContentDirectoryPath(int index) const;      ///< empty out of range
    Q_INVOKABLE DzContentFolder* getContentDirectory(int index) const; ///< null out of range
    Q_INVOKABLE QString findFile(const QString& partial) const;
    /// By content type: whether opening adds to the scene.
    Q_INVOKABLE bool shouldMerge(const QString& fullPath) const;
    Q_INVOKABLE void addContentDirectory(const QString& path, bool saveSetting = true);
    void addImportDirectory(const QString& path);
    Q_INVOKABLE void removeAllContentDirectories();

signals:
    void contentDirectoryListChanged();

private:
    struct Impl;
    std::unique_ptr<Impl> _impl;
};
