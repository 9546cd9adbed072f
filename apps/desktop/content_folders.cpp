// The folders that figures are looked for in.
// SPDX-License-Identifier: MIT

#include "content_folders.h"

#include <dzapp.h>
#include <dzcontentmgr.h>

#include <QDir>

namespace desktop {

QString FirstContentFolder()
{
    const DzContentMgr& content = *dzApp->getContentMgr();
    return content.getNumContentDirectories() > 0 ? content.getContentDirectoryPath(0) : QDir::homePath();
}

} // namespace desktop
