// Opening files of the content directories.
// SPDX-License-Identifier: MIT

#include "app/current_attendant.h"
#include "app/guard.h"
#include "app/operations.h"
#include "base/errors.h"
#include "dzapp.h"
#include "dzimporter.h"
#include "dzimportmgr.h"
#include "dzscene.h"
#include "library/content_manager_impl.h"
#include "loading/scene_loader.h"

#include <memory>

#include <QFileInfo>

#include <fmt/format.h>

namespace {

using openhost::ToPath;

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
