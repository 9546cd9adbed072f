// The files that content panes show.
// SPDX-License-Identifier: MIT

#include "pane_user_files.h"

#include <QDir>

#include <algorithm>

namespace openhost {

namespace {

const QStringList& DataFolders()
{
    static const QStringList folders{QStringLiteral("data"), QStringLiteral("runtime")};
    return folders;
}

QStringList FoldersIn(const QString& folder)
{
    return QDir(folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name | QDir::IgnoreCase);
}

bool ComesBefore(const QString& one, const QString& other)
{
    const int order = one.compare(other, Qt::CaseInsensitive);
    return order != 0 ? order < 0 : one < other;
}

} // namespace

bool SuitsSelection(const QString& assetType, bool isAnythingSelected)
{
    return isAnythingSelected || !assetType.startsWith(QLatin1String("preset_"));
}

QStringList UserFilesIn(const QString& folder)
{
    const QDir directory(folder);
    QStringList files;
    for (const QString& name :
         directory.entryList({QLatin1String(userFilePattern)}, QDir::Files, QDir::Name | QDir::IgnoreCase))
        files.append(directory.filePath(name));
    return files;
}

UserFileScan::UserFileScan() : _directories(ContentDirectories()) {}

bool UserFileScan::step(int files)
{
    for (int i = 0; i < files; ++i) {
        while (!_iterator || !_iterator->hasNext()) {
            if (_directories.isEmpty()) {
                sort();
                return false;
            }
            _iterator = std::make_unique<QDirIterator>(_directories.takeFirst(),
                                                       QStringList(QLatin1String(userFilePattern)),
                                                       QDir::Files, QDirIterator::Subdirectories);
        }
        const QString file = _iterator->next();
        _files.push_back({file, AssetTypeOf(file), QString()});
    }
    return true;
}

void UserFileScan::sort()
{
    std::stable_sort(_files.begin(), _files.end(), [](const UserFile& one, const UserFile& other) {
        return ComesBefore(one.path, other.path);
    });
}

std::vector<ProductFolder> ProductFolders()
{
    std::vector<ProductFolder> products;
    for (const QString& directory : ContentDirectories())
        for (const QString& category : FoldersIn(directory)) {
            if (DataFolders().contains(category, Qt::CaseInsensitive))
                continue;
            const QString folder = directory + QLatin1Char('/') + category;
            for (const QString& name : FoldersIn(folder))
                products.push_back({name, category, folder + QLatin1Char('/') + name});
        }
    std::stable_sort(products.begin(), products.end(),
                     [](const auto& one, const auto& other) { return ComesBefore(one.name, other.name); });
    return products;
}

QStringList UserFilesBelow(const QString& folder)
{
    QStringList files;
    QDirIterator iterator(folder, {QLatin1String(userFilePattern)}, QDir::Files,
                          QDirIterator::Subdirectories);
    while (iterator.hasNext())
        files.append(iterator.next());
    std::sort(files.begin(), files.end(), ComesBefore);
    return files;
}

} // namespace openhost
