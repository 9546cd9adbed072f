// Which nodes an export is about.
// SPDX-License-Identifier: MIT

#pragma once

#include <vector>

class DzFileIOSettings;
class DzNode;

namespace openhost {

/// Nodes with geometry, in scene order, as the options "IgnoreInvisible", "SelectedOnly",
/// "SelectedRootsOnly", "PrimaryRootOnly" and "IncludeParented" ask for. A selected bone stands for its
/// figure; whatever else hangs on a figure is no part of it and comes only when it is selected itself or
/// "IncludeParented" is set. The roots of a selection are those that stand below no other part of it.
std::vector<DzNode*> NodesToExport(const DzFileIOSettings& options);

} // namespace openhost
