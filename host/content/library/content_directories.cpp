// Content directories and what lies in them.
// SPDX-License-Identifier: MIT

#include "library/content_manager_impl.h"

#include "base/write_bounds.h"
#include "dzapp.h"

using openhost::ToPath;
using openhost::ToQ;

DzContentMgr::DzContentMgr() : _impl(std::make_unique<Impl>()) {}
DzContentMgr::~DzContentMgr() = default;

QString DzContentMgr::getAbsolutePath(const QString& relative, bool useImportFolders,
                                      const QString& preferred) const
{
    if (!preferred.isEmpty()) {
        openhost::ContentPaths first;
        first.add(ToPath(preferred));
        const std::filesystem::path found = first.resolve(relative.toStdString());
        if (!found.empty())
            return ToQ(found.string());
    }
    std::filesystem::path found = _impl->paths.resolve(relative.toStdString());
    if (found.empty() && useImportFolders)
        found = _impl->importPaths.resolve(relative.toStdString());
    return ToQ(found.string());
}

QString DzContentMgr::getRelativePath(const QString& absolute, bool useImportFolders) const
{
    std::string relative = _impl->paths.relativePath(ToPath(absolute));
    if (relative.empty() && useImportFolders)
        relative = _impl->importPaths.relativePath(ToPath(absolute));
    return relative.empty() ? absolute : QString::fromStdString(relative);
}

DzContentFolder* DzContentMgr::findBaseDirectory(const QString& path, bool useImportFolders) const
{
    DzContentFolder* const folder = Impl::FolderOf(path, _impl->paths, _impl->folders);
    return folder || !useImportFolders ? folder
                                       : Impl::FolderOf(path, _impl->importPaths, _impl->importFolders);
}

int DzContentMgr::getNumContentDirectories() const
{
    return static_cast<int>(_impl->folders.size());
}

QString DzContentMgr::getContentDirectoryPath(int index) const
{
    const DzContentFolder* const folder = getContentDirectory(index);
    return folder ? folder->getFullPath() : QString();
}

DzContentFolder* DzContentMgr::getContentDirectory(int index) const
{
    const bool isInRange = index >= 0 && index < getNumContentDirectories();
    return isInRange ? _impl->folders[static_cast<std::size_t>(index)].get() : nullptr;
}

QString DzContentMgr::findFile(const QString& partial) const
{
    return getAbsolutePath(partial, true);
}

void DzContentMgr::addContentDirectory(const QString& path, bool)
{
    // Content directories may be written by scripts, the next one's too.
    const base::WriteBounds* const bounds = base::WriteBounds::Current();
    if (bounds && !bounds->hold(ToPath(path))) {
        dzApp->warning(QStringLiteral("%1 is not made a content directory: %2")
                           .arg(path, QString::fromStdString(bounds->reason())));
        return;
    }
    _impl->paths.add(ToPath(path));
    _impl->updateFolders();
    emit contentDirectoryListChanged();
}

void DzContentMgr::addImportDirectory(const QString& path)
{
    _impl->importPaths.add(ToPath(path));
    _impl->updateFolders();
}

void DzContentMgr::removeAllContentDirectories()
{
    _impl->paths.clear();
    _impl->importPaths.clear();
    _impl->updateFolders();
    emit contentDirectoryListChanged();
}
