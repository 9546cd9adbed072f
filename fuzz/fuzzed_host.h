// A host for targets: one in the process, without windows.
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/host/host_fixture.h"

#include <filesystem>
#include <string>

namespace fuzz {

/// Empties the scene; the host has one content directory then.
/// @param content  a folder in the scratch folder
void FreshHost(const std::filesystem::path& content);
/// Merges a file into the scene. A refusal has to give its reason.
bool Open(const std::filesystem::path& file);

} // namespace fuzz
