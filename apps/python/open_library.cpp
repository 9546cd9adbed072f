// The host of the process, as Python uses it.
// SPDX-License-Identifier: MIT

#include "open_library.h"

#include "errors.h"
#include "work.h"

#include <utility>

#include <QCoreApplication>

#include <unistd.h>

namespace python {

namespace {

std::weak_ptr<OpenLibrary>& Current()
{
    static std::weak_ptr<OpenLibrary> library;
    return library;
}

/// Guarded by the interpreter's lock.
bool isReserved = false;

} // namespace

std::shared_ptr<OpenLibrary> OpenLibrary::current()
{
    std::shared_ptr<OpenLibrary> library = Current().lock();
    return library && library->isOpen() ? library : nullptr;
}

std::shared_ptr<OpenLibrary> OpenLibrary::open(const std::vector<std::filesystem::path>& folders)
{
    const Reservation reservation;
    auto library = std::make_shared<OpenLibrary>();
    library->_folders = folders;
    library->_session = std::make_unique<cli::HostSession>(folders, false);
    library->_owner = std::this_thread::get_id();
    library->_process = getpid();
    Current() = library;
    return library;
}

OpenLibrary::~OpenLibrary()
{
    if (isForked())
        static_cast<void>(_session.release());
}

bool OpenLibrary::isForked() const
{
    return _session && _process != getpid();
}

void OpenLibrary::checkFree() const
{
    if (isForked())
        Raise("BusyError", "the library belongs to the process that opened it");
    if (_owner != std::this_thread::get_id())
        Raise("BusyError", "the library belongs to the thread that opened it");
    if (_isInUse)
        Raise("BusyError", "the library is at work");
}

void OpenLibrary::close()
{
    if (!isOpen())
        return;
    checkFree();
    _session.reset();
}

void OpenLibrary::checkUsable() const
{
    if (!isOpen())
        Raise("ClosedError", "the library is closed");
    checkFree();
}

void OpenLibrary::warn(const base::Diagnostics& more)
{
    base::Diagnostics fresh;
    const base::Diagnostics& met = _session->diagnostics();
    for (const base::Diagnostics* const list : {&met, &more})
        for (const base::Diagnostic& one : *list)
            if (_told.insert(base::ToLine(one)).second)
                fresh.push_back(one);
    Warn(fresh);
}

OpenLibrary::Reservation::Reservation()
{
    if (current())
        Raise("BusyError", "a library is open, and a process has one host at a time; close it first");
    if (isReserved)
        Raise("BusyError", "a conversion is running, and a process has one host at a time");
    if (QCoreApplication::instance())
        Raise("UsageError",
              "the process has an application of Qt already, and the host has to be the only one");
    isReserved = true;
}

OpenLibrary::Reservation::~Reservation()
{
    isReserved = false;
}

OpenLibrary::Use::Use(OpenLibrary& library) : _library(library)
{
    _library.checkUsable();
    _library._isInUse = true;
}

OpenLibrary::Use::~Use()
{
    _library._isInUse = false;
}

} // namespace python
