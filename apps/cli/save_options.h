// Where the command line saves morphs to.
// SPDX-License-Identifier: MIT

#pragma once

#include "gnt_outcome.h"

namespace cli {

/// @throws UsageError  vendor or product cannot be the name of a folder
void CheckSaveOptions(const GntSaveOptions& options);

/// Makes the content directory and its address absolute: the host saves into libraries that are there only.
GntSaveOptions PrepareToSave(GntSaveOptions options);

} // namespace cli
