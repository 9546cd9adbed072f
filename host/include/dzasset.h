// Assets.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzbase.h"

/// A file of a content directory that panes show. Its name is the file's, without extension.
class DzAsset : public DzBase {
    Q_OBJECT
public:
    /// @param localFile     absolute
    /// @param relativePath  below its content directory, with a leading '/'
    DzAsset(const QString& localFile, const QString& relativePath);
    ~DzAsset();

    Q_INVOKABLE QString getAsLocalFile() const { return _localFile; }
    Q_INVOKABLE QString getRelativePath() const { return _relativePath; }

private:
    QString _localFile;
    QString _relativePath;
};
