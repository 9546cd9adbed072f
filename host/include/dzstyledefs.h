// Lengths that a style defines.
// SPDX-License-Identifier: MIT

#pragma once

/// All in pixels, growing with the application's font.
enum DzPixelMetric {
    DZ_PM_GeneralMargin,  ///< between a window's edge and what it holds, and between parts
    DZ_PM_ButtonHeight,   ///< of a push button
    DZ_PM_ButtonMinWidth, ///< of a push button
};
