// Disks that refuse to take files, for as long as an object lives.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <sys/resource.h>

/// Files of the process grow no further than this many bytes, as on a disk that is full.
class FullDisk {
public:
    explicit FullDisk(rlim_t bytes);
    ~FullDisk();
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    rlimit _former{};
    void (*_formerHandler)(int) = nullptr;
};

/// The folder is for reading only, also for root, who may otherwise write everywhere.
class ReadOnlyFolder {
public:
    explicit ReadOnlyFolder(const QString& folder);
    ~ReadOnlyFolder();
    ReadOnlyFolder(const ReadOnlyFolder&) = delete;
    ReadOnlyFolder& operator=(const ReadOnlyFolder&) = delete;

private:
    QString _folder;
};
