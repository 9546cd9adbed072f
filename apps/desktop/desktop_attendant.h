// What the desktop application answers the host.
// SPDX-License-Identifier: MIT

#pragma once

#include "openhost/window_attendant.h"

namespace desktop {

class SceneFiles;

/// The host's own windows, and the question about a scene that is not saved. Given to the host at its start,
/// before there are files.
class DesktopAttendant : public openhost::WindowAttendant {
public:
    /// @param files  borrowed; null where there are none any more
    void serve(SceneFiles* files) { _files = files; }

    bool mayReplaceScene(const QString& file) override;
    /// What long work loads is taken as proposed: a window would flash over the progress.
    bool chooseDFormOptions(openhost::DFormLoadOptions& options) override;

private:
    SceneFiles* _files = nullptr;
};

} // namespace desktop
