// The file that defines a figure, and where the figure's shapes are.
// SPDX-License-Identifier: MIT

#include "figure_file.h"

#include "library/content_paths.h"
#include "openhost/diagnostics.h"

namespace openhost {

namespace {

std::string FolderOf(const std::string& path)
{
    return path.substr(0, path.rfind('/') + 1);
}

/// The folder of the figure whose mesh, bones and morphs the figure in this folder shares; empty for none.
std::string FolderOfSharedFigure(const std::string& folder)
{
    constexpr const char suffix[] = " 8_1/";
    constexpr std::size_t length = sizeof suffix - 1;
    const bool isShared =
        folder.size() > length && folder.compare(folder.size() - length, length, suffix) == 0;
    return isShared ? folder.substr(0, folder.size() - length) + "/" : std::string();
}

} // namespace

bool IsPresetFile(const std::string& decodedPath)
{
    constexpr std::size_t length = 4;
    return decodedPath.size() > length && FoldCase(decodedPath.substr(decodedPath.size() - length)) == ".duf";
}

FigureFile::FigureFile(std::shared_ptr<const DefinitionTree> tree, std::string path)
    : _tree(std::move(tree)), _path(std::move(path)), _key(PathKey(_path))
{
}

bool FigureFile::isAt(const std::string& path) const
{
    return path == _path || PathKey(path) == _key;
}

bool FigureFile::isHome(const std::string& path) const
{
    const std::string own = FolderOf(_path), shared = FolderOfSharedFigure(own);
    const auto isBelow = [key = PathKey(path)](const std::string& folder) {
        const std::string above = PathKey(folder);
        const bool isAtFolder = !folder.empty() && key.compare(0, above.size(), above) == 0;
        return isAtFolder && (above == "/" || key[above.size()] == '/');
    };
    return isBelow(own) || isBelow(shared);
}

bool FigureFile::isOfSharedFigure(const std::string& path) const
{
    const std::string shared = FolderOfSharedFigure(FolderOf(_path));
    return !shared.empty() && PathKey(FolderOf(path)) == PathKey(shared);
}

std::vector<std::string> FigureFile::morphFolders() const
{
    // A figure within a scene file has no folder of its own.
    const std::string own = FolderOf(_path);
    if (own.empty() || IsPresetFile(_path))
        return {};
    std::vector<std::string> folders;
    for (const std::string& folder : {own, FolderOfSharedFigure(own)})
        if (!folder.empty())
            folders.push_back(folder + "Morphs");
    return folders;
}

void FigureFile::warn(std::string what) const
{
    Report({base::Severity::Warning, _path, {}, std::move(what)});
}

void FigureFile::note(std::string what) const
{
    Report({base::Severity::Note, _path, {}, std::move(what)});
}

} // namespace openhost
