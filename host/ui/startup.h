// Making what the application hands out.
// SPDX-License-Identifier: MIT

#pragma once

class DzApp;

namespace openhost {

struct AppParts;

/// The look of a new application, and what answers its windows where there is no display.
void Dress(DzApp& app, AppParts& parts);
/// The scene, the managers and the main window of a fresh start; the plug-in manager where there is none yet.
void Furnish(AppParts& parts);

} // namespace openhost
