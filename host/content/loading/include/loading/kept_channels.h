// Channels of nodes that the host has no property for.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/reader.h"

class DzNode;

namespace openhost {

/// Kept with the node, so that saving it loses nothing that other programs know.
void KeepChannels(DzNode& node, dson::JsonTexts channels);
/// Empty for most.
const dson::JsonTexts& KeptChannels(const DzNode& node);

} // namespace openhost
