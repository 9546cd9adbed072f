// The folder of one run.
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>

namespace cli {

/// Below the system's temporary folder. Those of runs that have ended without removing theirs, as a run that
/// is killed does, are removed when the next one is made.
class TemporaryFolder {
public:
    enum class Lasting {
        ForRun, ///< goes with the object
        Kept    ///< stays for whoever wants to look into it; never removed
    };

    /// @throws std::runtime_error  it cannot be made
    explicit TemporaryFolder(Lasting lasting);
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    /// For runs that make none.
    static void removeThoseOfEndedRuns();

    const std::filesystem::path& path() const { return _path; }
    /// Another process has the folder as well, and removes it.
    void leaveToOthers() { _lasting = Lasting::Kept; }

private:
    Lasting _lasting;
    std::filesystem::path _path;
};

} // namespace cli
