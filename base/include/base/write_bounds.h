// Where files may be put while somebody works who is not trusted with all of them.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/folder_bounds.h"

#include <filesystem>
#include <string>
#include <vector>

namespace base {

/// As long as it lives, files are put in place below these folders only, wherever links lead. Of several the
/// newest counts. Made and ended while no other thread writes.
class WriteBounds {
public:
    /// @param reason  ends the sentence that tells of a refusal
    WriteBounds(const std::vector<std::filesystem::path>& folders, std::string reason);
    ~WriteBounds();
    WriteBounds(const WriteBounds&) = delete;
    WriteBounds& operator=(const WriteBounds&) = delete;

    bool hold(const std::filesystem::path& file) const { return _folders.hold(file); }
    const std::string& reason() const { return _reason; }
    /// Null while everything may be written.
    static const WriteBounds* Current();

private:
    FolderBounds _folders;
    std::string _reason;
    const WriteBounds* _former;
};

/// @throws IoError  the present bounds do not hold the file
void ThrowIfOutOfBounds(const std::filesystem::path& file);

} // namespace base
