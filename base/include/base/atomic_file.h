// Files that appear whole or not at all.
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdio>
#include <filesystem>
#include <string_view>

namespace base {

/// Writes beside the target and renames into place. Without commit() the target stays as it was and the
/// unfinished file is removed.
class AtomicFile {
public:
    /// @throws IoError  the file beside the target cannot be made, or the target is a folder
    explicit AtomicFile(std::filesystem::path target);
    ~AtomicFile();
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    /// Appends to what has been written.
    /// @throws IoError  names the file and the system's reason
    void write(std::string_view bytes);
    /// Puts the file into its place, over one that is there; nothing may be written after it.
    /// @throws IoError  as above; the target stays as it was
    void commit();

private:
    [[noreturn]] void fail(int reason) const;

    std::filesystem::path _target, _unfinished;
    std::FILE* _stream = nullptr;
};

/// The whole content at once.
/// @throws IoError  names the file and the system's reason
void WriteFileAtomically(const std::filesystem::path& file, std::string_view content);

} // namespace base
