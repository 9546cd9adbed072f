// Which files bring a figure that can be converted, or that is converted to.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace desktop {

/// Told apart by the figure's data that the file names; materials and shapes need not be there.
/// @param type  of the asset, as the file says
/// @return the figure's label, such as "Genesis 8 Female"; empty for files of anything else, and for scenes,
/// which would take the place of what is loaded already
QString FigureBroughtBy(const QString& file, const QString& type);

/// Whether figures with that label are converted to, and not from.
bool IsTarget(const QString& figure);

} // namespace desktop
