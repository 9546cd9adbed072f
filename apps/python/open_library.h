// The host of the process, as Python uses it.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/diagnostic.h"
#include "host_session.h"

#include <filesystem>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace python {

/// A host with content folders. There is one at a time, and it belongs to the thread that opened it. All is
/// to be called with the interpreter's lock.
class OpenLibrary {
public:
    /// Throws as Reservation does.
    /// @throws base::IoError  a folder is none
    static std::shared_ptr<OpenLibrary> open(const std::vector<std::filesystem::path>& folders);
    /// The one that is open; null for none.
    static std::shared_ptr<OpenLibrary> current();

    OpenLibrary() = default;
    ~OpenLibrary();
    OpenLibrary(const OpenLibrary&) = delete;
    OpenLibrary& operator=(const OpenLibrary&) = delete;

    bool isOpen() const { return _session != nullptr; }
    /// Whether this process is not the one that opened it, but a fork of that: the host is not its to end.
    bool isForked() const;
    /// Throws a BusyError while it works.
    void close();
    /// Throws a ClosedError, or a BusyError where this call may not use it.
    void checkUsable() const;
    const std::vector<std::filesystem::path>& folders() const { return _folders; }

    /// Tells what the host has said since it was told last, and more, each once.
    void warn(const base::Diagnostics& more = {});

    /// While it lives, nothing else may use the library. Made where checkUsable() throws nothing, else it
    /// throws that.
    class Use {
    public:
        explicit Use(OpenLibrary& library);
        ~Use();
        Use(const Use&) = delete;
        Use& operator=(const Use&) = delete;

        cli::HostSession& session() const { return *_library._session; }

    private:
        OpenLibrary& _library;
    };

    /// While it lives, there is a host that is no library's, or is about to be one.
    class Reservation {
    public:
        /// Throws a BusyError or a UsageError where there can be none.
        Reservation();
        ~Reservation();
        Reservation(const Reservation&) = delete;
        Reservation& operator=(const Reservation&) = delete;
    };

private:
    void checkFree() const;

    std::vector<std::filesystem::path> _folders;
    std::unique_ptr<cli::HostSession> _session;
    std::thread::id _owner;
    int _process = 0;
    std::set<std::string> _told;
    bool _isInUse = false;
};

} // namespace python
