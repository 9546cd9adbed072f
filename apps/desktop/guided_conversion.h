// A conversion from its beginning: two figures are chosen, loaded and converted.
// SPDX-License-Identifier: MIT

#pragma once

class DzMainWindow;

namespace desktop {

/// Asks for the figures, adds them to the scene, selects them and asks the plug-in, as its menu entry does.
/// What cannot be done is told in a box.
void GuideConversion(DzMainWindow& window);

} // namespace desktop
