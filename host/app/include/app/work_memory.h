// Memory that long work keeps for its own later steps.
// SPDX-License-Identifier: MIT

#pragma once

#include <memory>

namespace openhost {

/// Keeps the value until the outermost progress has finished, so that the steps of one long work share what
/// they make; nothing without a progress. Only for what can be made again: whoever shares it holds a weak
/// pointer.
void KeepDuringWork(std::shared_ptr<const void> value);

/// The outermost progress has finished.
void EndWork();

} // namespace openhost
