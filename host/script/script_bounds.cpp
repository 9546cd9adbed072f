// What scripts of strangers may do to the user's files.
// SPDX-License-Identifier: MIT

#include "openhost/script_bounds.h"

#include "app/program_ban.h"
#include "base/write_bounds.h"
#include "dzapp.h"
#include "dzcontentmgr.h"

#include <optional>

namespace openhost {

namespace {

ScriptRights& Rights()
{
    static ScriptRights rights;
    return rights;
}

std::vector<std::filesystem::path> Folders()
{
    QStringList names = Rights().folders;
    names << dzApp->getTempPath();
    const DzContentMgr& content = *dzApp->getContentMgr();
    for (int i = 0; i < content.getNumContentDirectories(); ++i)
        names << content.getContentDirectoryPath(i);
    std::vector<std::filesystem::path> folders;
    for (const QString& name : std::as_const(names))
        folders.emplace_back(name.toStdString());
    return folders;
}

} // namespace

struct ScriptBounds::Impl {
    base::WriteBounds files{Folders(),
                            "scripts may write only into content folders, the temporary folder and those "
                            "that --allow-files names"};
    std::optional<ProgramBan> programs;
};

void SetScriptRights(const ScriptRights& rights)
{
    Rights() = rights;
}

ScriptBounds::ScriptBounds() : _impl(new Impl)
{
    if (!Rights().processes)
        _impl->programs.emplace();
}

ScriptBounds::~ScriptBounds() = default;

} // namespace openhost
