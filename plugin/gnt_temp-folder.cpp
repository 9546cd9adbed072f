// A folder of a conversion's own for its temporary files.
// SPDX-License-Identifier: MIT

#include "gnt_temp-folder.h"

#include "ks_debug.h"
#include "ks_exception.h"
#include "ks_string.h"

#include <QDir>
#include <QStringList>

using kst::str::Quote;
using kst::str::ToQ;
using kst::str::ToStd;

namespace {

/// The host writes plain files only, so folders in it are another's and stay.
bool RemoveWithFiles(const QString& path)
{
    QDir folder(path);
    const QStringList names = folder.entryList(QDir::Files | QDir::Hidden | QDir::System);
    for (int i = 0; i < names.size(); ++i)
        folder.remove(names.at(i));
    return QDir().rmdir(path);
}

} // namespace

GntTempFolder::GntTempFolder()
    : _path(kst::str::MakePath(ToStd(QDir::tempPath()), "gantrel-" + kst::str::MakeRandomString(8)))
{
    const QString path = ToQ(_path);
    // Without a system's temporary folder the path is relative, and would be below the working folder. A
    // folder that is there already is another's, and making it fails.
    if (!QDir::isAbsolutePath(path) || !QDir().mkdir(path))
        throw kst::Exception("failed to create temporary folder {}", Quote(_path));
}

GntTempFolder::~GntTempFolder()
{
    if (!RemoveWithFiles(ToQ(_path)))
        kst::Debug::Log("failed to remove temporary folder {}", Quote(_path));
}
