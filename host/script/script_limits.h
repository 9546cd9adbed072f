// How much a script may ask of the engine.
// SPDX-License-Identifier: MIT

#pragma once

namespace openhost {

/// Elements that one call may go through. The engine walks through all places of an array, also the empty
/// ones, and ends the program when it cannot hold what comes out.
constexpr unsigned longestScriptArray = 10000000;
/// Arrays and objects in each other that a script's result may be made of; they are copied by recursion.
constexpr int deepestScriptResult = 1000;
/// Scripts that run each other. Each has an engine, which sets gigabytes of address space aside.
constexpr int mostNestedScripts = 8;
/// Bytes of a file that is read. Of one of 2 GB the toolkit gives nothing, as if it were empty.
constexpr long long longestScriptFile = 512LL << 20;
/// Files that include each other, one in the other. The engine itself can hold little more.
constexpr int mostIncludedScripts = 8;

} // namespace openhost
