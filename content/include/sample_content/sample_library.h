// The sample library: open stand-ins for the stock figures, and characters shaped on them.
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>
#include <functional>
#include <string>

namespace content {

/// Writes the library below a content directory: seven figures with their morphs, the files that load them, a
/// few source characters and the head-split preset. The same bytes each time, but for the date in each file.
/// They are put in place all together.
/// @param progress  told of each figure before it is made; may be empty
/// @throws base::IoError  a file cannot be written
void WriteSampleLibrary(const std::filesystem::path& directory,
                        const std::function<void(const std::string&)>& progress);

} // namespace content
