// Files that appear all together or not at all.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/atomic_file.h"
#include "base/diagnostic.h"

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace base {

/// Files of one folder, or of several, that replace others together: whenever the program or the machine
/// stops, the folders have all of the new ones or all of the old ones, once FinishFileSet() has looked at one
/// of them. What is to be put in place is listed in a journal in the first folder, with which somebody else
/// can go on (write-ahead logging); the others get pointers to it beforehand, which say that they belong to
/// it and mean nothing without it. All of it lies in the folders that change, as those that they lie in may
/// not be writable, and many sets may be saved below these at a time.
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
    /// As above. Folders that are not there are made; those of them that are empty when the set ends go
    /// again.
    explicit FileSet(const std::vector<std::filesystem::path>& folders);
    ~FileSet();
    FileSet(const FileSet&) = delete;
    FileSet& operator=(const FileSet&) = delete;

    /// May be called by several threads. What a link leads to that lies in none of the folders is put in
    /// place by itself, before all others.
    /// @param file  a path that leads to one of the folders, or the mere name in a set of one; each once
    /// @throws IoError  the file cannot be written
    void write(const std::filesystem::path& file, std::string_view content);
    /// A file that is no longer there when the others are in place. None is no error.
    void remove(const std::filesystem::path& file);
    /// To be called once, at the end.
    /// @throws IoError  a file could not be put in place: all are as they were, or the text says that
    ///                  FinishFileSet() has to
    void commit();

    /// What was found of sets that others had left in the folders.
    const Diagnostics& diagnostics() const;

private:
    struct Impl;
    std::unique_ptr<Impl> _impl;
};

/// Goes on where the last set with the folder was stopped, in all of its folders: puts its files in place if
/// they had all been written, else removes them. Files that were changed since stay as they are. Does nothing
/// while a program works on one of them, or where one of them may not be changed.
/// @param told  receives what came of it; may be null
/// @return whether files were put in place
bool FinishFileSet(const std::filesystem::path& folder, Diagnostics* told = nullptr);

/// Name of the journal and of pointers to it, by which folders are found that want FinishFileSet().
extern const char* const fileSetJournal;

} // namespace base
