// Which file bears a name.
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>
#include <string>

namespace base {

extern const char* const noFile;

/// Of what bears the name now, links not followed: another file, or one that was written anew, has another
/// text. It means something on this disk alone, so that nobody can know it who has not seen the file there.
/// @return noFile where there is none
/// @throws IoError  nobody can tell
std::string IdentityOf(const std::filesystem::path& file);

} // namespace base
