// What the content manager holds: the directories and what was read from them.
// SPDX-License-Identifier: MIT

#pragma once

#include "app/texts.h"
#include "dzcontentfolder.h"
#include "dzcontentmgr.h"
#include "library/asset_library.h"

#include <memory>
#include <vector>

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
            folders.push_back(std::make_unique<DzContentFolder>(openhost::ToQ(directory.string())));
        return folders;
    }

    static DzContentFolder* FolderOf(const QString& file, const openhost::ContentPaths& paths,
                                     const Folders& folders)
    {
        const std::filesystem::path* const directory = paths.directoryOf(openhost::ToPath(file));
        return directory ? folders[static_cast<std::size_t>(directory - paths.directories().data())].get()
                         : nullptr;
    }
};
