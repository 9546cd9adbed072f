// Content directories and opening files.
// SPDX-License-Identifier: MIT

#include "dzcontentmgr.h"

#include "app/current_attendant.h"
#include "app/guard.h"
#include "app/operations.h"
#include "app/texts.h"
#include "base/errors.h"
#include "dzcontentfolder.h"
#include "dzimporter.h"
#include "dzimportmgr.h"
#include "dzscene.h"
#include "library/asset_library.h"
#include "loading/scene_loader.h"

#include <memory>
#include <vector>

#include <QFileInfo>

#include <fmt/format.h>

#include "dzapp.h"

namespace {

using openhost::ToPath;
using openhost::ToQ;

bool IsNative(const QString& file)
{
    return file.endsWith(QLatin1String(".duf"), Qt::CaseInsensitive) ||
           file.endsWith(QLatin1String(".dsf"), Qt::CaseInsensitive);
}

/// Reads a file of another program. False when the user cancelled.
bool Import(const QString& file)
{
    const std::string name = file.toStdString();
    if (!QFileInfo(file).isFile())
        throw base::IoError("{}: there is no such file", name);
    const std::unique_ptr<DzImporter> importer(dzApp->getImportMgr()->findImporterForFile(file));
    if (!importer)
        throw base::FormatError("{}: no importer reads files of this kind", name);
    const DzError error = importer->readFile(file);
    if (error != DZ_NO_ERROR && error != DZ_USER_CANCELLED_OPERATION)
        throw base::Error(fmt::format("{}: {}", name, getErrorMessage(error).toStdString()));
    return error == DZ_NO_ERROR;
}

} // namespace

struct DzContentMgr::Impl {
    Impl() : library(paths) {}

    using Folders = std::vector<std::unique_ptr<DzContentFolder>>;

    openhost::ContentPaths paths;
    openhost::ContentPaths importPaths;
    openhost::AssetLibrary library;
    Folders folders;       ///< one per directory of paths
    Folders importFolders; ///< one per directory of importPaths

    void updateFolders()
    {
        folders = FoldersOf(paths);
        importFolders = FoldersOf(importPaths);
    }

    static Folders FoldersOf(const openhost::ContentPaths& paths)
    {
        Folders folders;
        for (const std::filesystem::path& directory : paths.directories())
            folders.push_back(std::make_unique<DzContentFolder>(ToQ(directory.string())));
        return folders;
    }

    static DzContentFolder* FolderOf(const QString& file, const openhost::ContentPaths& paths,
                                     const Folders& folders)
    {
        const std::filesystem::path* const directory = paths.directoryOf(ToPath(file));
        return directory ? folders[static_cast<std::size_t>(directory - paths.directories().data())].get()
                         : nullptr;
    }
};

DzContentMgr::DzContentMgr() : _impl(std::make_unique<Impl>()) {}
DzContentMgr::~DzContentMgr() = default;

bool DzContentMgr::openFile(const QString& fullPath, bool merge)
{
    if (!openhost::Allows(openhost::Operation::OpenFile, fullPath))
        return false;
    const auto open = [&] {
        if (!IsNative(fullPath) || !QFileInfo(fullPath).isFile())
            return Import(fullPath);
        const bool replace = !merge && !shouldMerge(fullPath);
        if (replace && !openhost::CurrentAttendant().mayReplaceScene(fullPath))
            return false;
        return openhost::LoadIntoScene(_impl->library, ToPath(fullPath), replace);
    };
    return openhost::GuardHostCall(
        {fullPath.toStdString()}, open, [&fullPath](const openhost::HostFailure& failure) {
            openhost::CurrentAttendant().tellOpenError(fullPath, QString::fromStdString(failure.reason));
            return false;
        });
}

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

bool DzContentMgr::shouldMerge(const QString& fullPath) const
{
    if (!IsNative(fullPath))
        return true;
    try {
        return _impl->library.read(ToPath(fullPath))->info.type != "scene";
    } catch (const base::Error&) {
        return true;
    }
}

void DzContentMgr::addContentDirectory(const QString& path, bool)
{
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
