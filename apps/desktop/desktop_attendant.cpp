// What the desktop application answers the host.
// SPDX-License-Identifier: MIT

#include "desktop_attendant.h"

#include "scene_files.h"

namespace desktop {

bool DesktopAttendant::mayReplaceScene(const QString& file)
{
    return !_files || _files->mayReplaceScene(file);
}

} // namespace desktop
