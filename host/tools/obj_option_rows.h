// The OBJ options as dialogs show them.
// SPDX-License-Identifier: MIT

#pragma once

#include "scene/option_table.h"

namespace openhost {

const std::vector<OptionRow>& ObjExportRows();
const std::vector<OptionRow>& ObjImportRows();

} // namespace openhost
