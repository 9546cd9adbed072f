// What scripts of strangers may do to the user's files.
// SPDX-License-Identifier: MIT

#include "openhost/script_bounds.h"

#include "app/program_ban.h"
#include "base/errors.h"
#include "base/write_bounds.h"
#include "dzapp.h"
#include "dzcontentmgr.h"
#include "openhost/diagnostics.h"
#include "script_reach.h"

#include <QFileInfo>

#include <algorithm>
#include <optional>
#include <utility>

namespace openhost {

namespace {

ScriptRights& Rights()
{
    static ScriptRights rights;
    return rights;
}

/// @param names  beside those that every script may use
std::vector<std::filesystem::path> FoldersWith(QStringList names)
{
    names << dzApp->getTempPath();
    const DzContentMgr& content = *dzApp->getContentMgr();
    for (int i = 0; i < content.getNumContentDirectories(); ++i)
        names << content.getContentDirectoryPath(i);
    std::vector<std::filesystem::path> folders;
    for (const QString& name : std::as_const(names))
        folders.emplace_back(name.toStdString());
    return folders;
}

const base::FolderBounds* g_readable = nullptr;

/// A name that is mistyped would show as a refusal of the right one only.
void TellIfNoFolder(const QString& name)
{
    const QFileInfo folder(name);
    if (!folder.isDir())
        Report({base::Severity::Warning,
                name.toStdString(),
                {},
                folder.exists() ? "it is no folder, in which scripts may read and write"
                                : "there is no such folder, in which scripts may read and write"});
}

} // namespace

struct ScriptBounds::Impl {
    base::WriteBounds files{FoldersWith(Rights().folders),
                            "scripts may write only into content folders, the temporary folder and those "
                            "that --allow-files names"};
    base::FolderBounds readable{FoldersWith(Rights().folders + Rights().toRead)};
    const base::FolderBounds* former = std::exchange(g_readable, &readable);
    std::optional<ProgramBan> programs;
};

void SetScriptRights(const ScriptRights& rights)
{
    Rights() = rights;
    std::for_each(rights.folders.begin(), rights.folders.end(), TellIfNoFolder);
}

ScriptBounds::ScriptBounds() : _impl(new Impl)
{
    if (!Rights().processes)
        _impl->programs.emplace();
}

ScriptBounds::~ScriptBounds()
{
    g_readable = _impl->former;
}

void ThrowIfOutOfReach(const std::filesystem::path& file)
{
    if (g_readable && !g_readable->hold(file))
        throw base::IoError("cannot read {}: scripts may read only in content folders, the script's own, the "
                            "temporary folder and those that --allow-files names",
                            file.string());
}

} // namespace openhost
