// The open host as the subcommands use it: without a display, without a trace.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/diagnostic.h"
#include "temporary_folder.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

class DzNode;

namespace cli {

/// Runs the host with settings in a temporary folder of its own, so that the user's settings are neither read
/// nor written. The folder goes when the session ends, unless it is to be kept. One at a time.
class HostSession {
public:
    /// @param verbose  the host's log goes to stderr
    /// @throws base::IoError       a content directory is none
    /// @throws std::runtime_error  the temporary folder cannot be made
    HostSession(const std::vector<std::filesystem::path>& contentDirectories, bool verbose,
                TemporaryFolder::Lasting lasting = TemporaryFolder::Lasting::ForRun);
    ~HostSession();
    HostSession(const HostSession&) = delete;
    HostSession& operator=(const HostSession&) = delete;

    /// Adds the file's content to the scene.
    /// @return what came with it: figures first, then root nodes that are none; at least one. The scene's own
    /// @throws base::IoError       there is no such file
    /// @throws std::runtime_error  it cannot be read or adds nothing; the text has the host's reason
    /// @throws base::Cancelled     the user asked to end; also while the files are being read
    std::vector<DzNode*> open(const std::filesystem::path& file);

    /// What the host has had to say since the session began, each once.
    const base::Diagnostics& diagnostics() const;
    /// Whom saved files name; nobody at first, who is known by the vendor.
    void setAuthor(const std::string& name);
    /// Whether morphs may be saved over files of others; not at first.
    void allowOverwriting(bool isAllowed);
    /// The same for each file by itself.
    void allowReplacing(std::function<bool(const std::filesystem::path& file)> mayReplace);
    /// A folder that lasts as long as the session, or longer when that is wanted.
    std::filesystem::path temporaryFolder() const;

private:
    struct Impl;
    std::unique_ptr<Impl> _impl;
};

/// The nearest folder above the file that looks like a content directory (it has `data` or `People`); empty
/// if none.
std::filesystem::path FindContentDirectory(const std::filesystem::path& file);
/// The directories given, or without any the one that holds the file.
std::vector<std::filesystem::path> ContentDirectoriesFor(const std::filesystem::path& file,
                                                         const std::vector<std::filesystem::path>& given);

} // namespace cli
