// The files that content panes show.
// SPDX-License-Identifier: MIT

#pragma once

#include "openhost/content_files.h"

#include <QDirIterator>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

namespace openhost {

/// Whether a file of that type can be used now: presets go onto nodes that are selected.
bool SuitsSelection(const QString& assetType, bool isAnythingSelected);

/// The files directly in a folder, in order of their names.
QStringList UserFilesIn(const QString& folder);

/// Goes through all content directories step by step, since there may be a great many files.
class UserFileScan {
public:
    UserFileScan();

    /// Looks at some more files; false when there are no more.
    bool step(int files);
    /// Those found so far; in order of their paths once all are.
    const std::vector<UserFile>& files() const { return _files; }

private:
    void sort();

    QStringList _directories; ///< not begun yet
    std::unique_ptr<QDirIterator> _iterator;
    std::vector<UserFile> _files;
};

/// A product: a folder at the second level of a content directory.
struct ProductFolder {
    QString name;     ///< of the folder
    QString category; ///< of the folder above
    QString path;     ///< absolute
};

/// Of all content directories, in order of their names; folders of the data behind user files are none.
std::vector<ProductFolder> ProductFolders();

/// The user files anywhere below a folder, in order of their paths.
QStringList UserFilesBelow(const QString& folder);

} // namespace openhost
