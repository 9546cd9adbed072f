// Files that appear all together or not at all.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/atomic_file.h"

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace base {

/// Files of one folder that replace others together: whenever the program or the machine stops, the folder
/// has all of the new ones or all of the old ones, once FinishFileSet() has looked at it. What is to be put
/// in place is listed in a journal beside them, with which somebody else can go on (write-ahead logging).
///
/// One program at a time works on a folder; it is locked as long as the set lives.
class FileSet {
public:
    /// How long to wait for another program.
    static constexpr std::chrono::milliseconds patience{5000};

    /// Finishes what a program that has ended left.
    /// @param folder  is there
    /// @throws IoError  the folder cannot be read, or another program keeps it locked
    explicit FileSet(const std::filesystem::path& folder);
    ~FileSet();
    FileSet(const FileSet&) = delete;
    FileSet& operator=(const FileSet&) = delete;

    /// @param name  of a file in the folder, each once
    /// @throws IoError  the file cannot be written
    void write(const std::string& name, std::string_view content);
    /// A file that is no longer there when the others are in place. None is no error.
    void remove(const std::string& name);
    /// @throws IoError  a file could not be put in place: all are as they were, or the text says that
    ///                  FinishFileSet() has to
    void commit();

    const std::filesystem::path& folder() const;

private:
    struct Impl;
    std::unique_ptr<Impl> _impl;
};

/// Goes on where the last set of the folder was stopped: puts its files in place if they had all been
/// written, else removes them. Does nothing while a program works on the folder, or may not be changed.
/// @return whether files were put in place
bool FinishFileSet(const std::filesystem::path& folder);

/// Name of the journal, by which folders are found that want FinishFileSet().
extern const char* const fileSetJournal;

} // namespace base
