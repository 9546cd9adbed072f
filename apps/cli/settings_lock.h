// Changing the settings file one program at a time.
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>

namespace cli {

/// For as long as it lives, nobody else changes the file; who reads it is not kept waiting. The lock is the
/// system's, on a file beside it whose name ends in ".lock": it goes with a process that ends in whatever
/// way, and the file is removed.
class SettingsLock {
public:
    /// Waits a few seconds for others.
    /// @param file  its folder is there
    /// @throws base::IoError    no file can be made beside it, or somebody else has it all that time
    /// @throws base::Cancelled  the work is to end
    explicit SettingsLock(const std::filesystem::path& file);
    ~SettingsLock();
    SettingsLock(const SettingsLock&) = delete;
    SettingsLock& operator=(const SettingsLock&) = delete;

private:
    void open();
    bool isInPlace() const;

    std::filesystem::path _file;
    int _descriptor = -1;
};

} // namespace cli
