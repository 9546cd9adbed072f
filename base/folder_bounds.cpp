// Folders that hold what somebody may have.
// SPDX-License-Identifier: MIT

#include "base/folder_bounds.h"

#include <algorithm>
#include <iterator>

namespace base {

namespace fs = std::filesystem;

namespace {

/// The place itself, as far as it is there.
fs::path Real(const fs::path& path)
{
    std::error_code error;
    const fs::path whole = fs::absolute(path, error);
    const fs::path real = fs::weakly_canonical(whole, error);
    // A trailing separator leaves an empty last step, which no file below shares.
    return (error ? whole.lexically_normal() : real) / "";
}

bool IsBelow(const fs::path& file, const fs::path& folder)
{
    const auto last = std::prev(folder.end());
    return std::mismatch(folder.begin(), last, file.begin(), file.end()).first == last;
}

} // namespace

FolderBounds::FolderBounds(const std::vector<fs::path>& folders)
{
    std::transform(folders.begin(), folders.end(), std::back_inserter(_folders), Real);
}

bool FolderBounds::hold(const fs::path& file) const
{
    // The system takes a NUL for the end of the name, and would go to another place than the one looked at.
    if (file.native().find('\0') != fs::path::string_type::npos)
        return false;
    const fs::path place = Real(file);
    return std::any_of(_folders.begin(), _folders.end(),
                       [&place](const fs::path& folder) { return IsBelow(place, folder); });
}

} // namespace base
