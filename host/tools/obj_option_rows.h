// The OBJ options as dialogs show them.
// SPDX-License-Identifier: MIT

#pragma once

#include "openhost/attendant.h"

namespace openhost {

const std::vector<OptionRow>& ObjExportRows();
const std::vector<OptionRow>& ObjImportRows();

} // namespace openhost
