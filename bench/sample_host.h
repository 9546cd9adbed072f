// A host with the sample library as its content, in a folder of its own.
// SPDX-License-Identifier: MIT

#pragma once

#include "openhost/openhost.h"
#include "sample_content/sample_library.h"

#include <QTemporaryDir>

#include <memory>

namespace bench {

/// Lives as long as the benchmarks; one at a time. Nothing of it stays on the disk.
class SampleHost {
public:
    SampleHost(int& argc, char** argv, bool headless = true)
        : _folder(WithLibrary()), _host(argc, argv, OptionsFor(*_folder, headless))
    {
    }

    openhost::OpenHost& host() { return _host; }
    /// Content directory and settings folder in one; more may be written into it.
    QString folder() const { return _folder->path(); }

private:
    static std::unique_ptr<QTemporaryDir> WithLibrary()
    {
        auto folder = std::make_unique<QTemporaryDir>();
        content::WriteSampleLibrary(folder->path().toUtf8().constData(), [](const std::string&) {});
        return folder;
    }
    static openhost::OpenHost::Options OptionsFor(const QTemporaryDir& folder, bool headless)
    {
        openhost::OpenHost::Options options;
        options.headless = headless;
        options.settingsFolder = folder.path();
        options.contentDirectories << folder.path();
        options.terminalProgress = false;
        return options;
    }

    std::unique_ptr<QTemporaryDir> _folder;
    openhost::OpenHost _host;
};

} // namespace bench
