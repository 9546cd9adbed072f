// Disks that refuse to take files, for as long as an object lives.
// SPDX-License-Identifier: MIT

#include "tests/host/hostile_disk.h"

#include <gtest/gtest.h>

#include <QFile>

#include <csignal>
#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

void SetMayOverride(bool may)
{
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct data[2] = {};
    ASSERT_EQ(syscall(SYS_capget, &header, data), 0);
    const auto bit = 1u << CAP_DAC_OVERRIDE;
    data[0].effective = may ? data[0].effective | (data[0].permitted & bit) : data[0].effective & ~bit;
    ASSERT_EQ(syscall(SYS_capset, &header, data), 0);
}

} // namespace

FullDisk::FullDisk(rlim_t bytes)
{
    _formerHandler = std::signal(SIGXFSZ, SIG_IGN); // a write fails then instead of ending the process
    getrlimit(RLIMIT_FSIZE, &_former);
    rlimit tight = _former;
    tight.rlim_cur = bytes;
    setrlimit(RLIMIT_FSIZE, &tight);
}

FullDisk::~FullDisk()
{
    setrlimit(RLIMIT_FSIZE, &_former);
    std::signal(SIGXFSZ, _formerHandler);
}

ReadOnlyFolder::ReadOnlyFolder(const QString& folder) : _folder(folder)
{
    QFile::setPermissions(_folder, QFileDevice::ReadOwner | QFileDevice::ExeOwner);
    SetMayOverride(false);
}

ReadOnlyFolder::~ReadOnlyFolder()
{
    SetMayOverride(true);
    QFile::setPermissions(_folder, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
}
