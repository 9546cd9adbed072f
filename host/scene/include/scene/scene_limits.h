// How deep settings and groups of properties go.
// SPDX-License-Identifier: MIT

#pragma once

namespace openhost {

/// Sets of settings in each other; they are read and written by recursion.
constexpr int deepestSettings = 32;
/// Groups of a property's path in each other. Deeper trees are no work of people, and trees are walked by
/// recursion.
constexpr int deepestGroups = 64;

} // namespace openhost
