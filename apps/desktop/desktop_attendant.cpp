// What the desktop application answers the host.
// SPDX-License-Identifier: MIT

#include "desktop_attendant.h"

#include "scene_files.h"

#include <dzprogress.h>

namespace desktop {

bool DesktopAttendant::mayReplaceScene(const QString& file)
{
    return !_files || _files->mayReplaceScene(file);
}

bool DesktopAttendant::chooseDFormOptions(openhost::DFormLoadOptions& options)
{
    return DzProgress::getDepth() > 0 || WindowAttendant::chooseDFormOptions(options);
}

} // namespace desktop
