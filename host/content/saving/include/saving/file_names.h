// Names of the user as names of files.
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

namespace openhost {

/// A name that is id, name and file of an asset on every system. Two names never share one: letters, digits
/// and most signs of all scripts stay, in composed form (two ways to write one letter are one name); what
/// file systems or URLs take for something else is percent-encoded; a digit at the beginning gets a '_'
/// before it. What would be longer than 100 bytes is cut and ends in a sum of the whole name.
/// Names that differ in case stay so, which many disks ignore: compare with FoldCase().
/// @param name  UTF-8, not blank
std::string FileName(const std::string& name);

} // namespace openhost
