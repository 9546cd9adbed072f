// A host for targets: one in the process, without windows.
// SPDX-License-Identifier: MIT

#include "fuzz/fuzzed_host.h"

#include "dzcontentmgr.h"
#include "fuzz/target.h"

namespace {

QString InScratch(const char* name)
{
    return QString::fromStdString((fuzz::ScratchFolder() / name).string());
}

/// Never ended: the program that feeds it may stop anywhere.
openhost::OpenHost& StartHost()
{
    static int count = 1;
    static char name[] = "fuzz";
    static char* arguments[] = {name, nullptr};
    qputenv("XDG_CACHE_HOME", InScratch("cache").toUtf8());
    openhost::OpenHost::Options options;
    options.settingsFolder = InScratch("settings");
    options.tempPath = TestFolder();
    options.documentationPath = InScratch("documentation");
    options.terminalProgress = false;
    return *new openhost::OpenHost(count, arguments, options);
}

} // namespace

openhost::OpenHost& TestHost()
{
    static openhost::OpenHost& host = StartHost();
    return host;
}

const QString& TestFolder()
{
    static const QString path = InScratch("");
    return path;
}

QString LogText()
{
    return QString();
}

namespace fuzz {

void FreshHost(const std::filesystem::path& content)
{
    static std::filesystem::path present;
    if (content != present) {
        TestHost().reset();
        dzApp->getContentMgr()->addContentDirectory(QString::fromStdString(content.string()), false);
        present = content;
        return;
    }
    // Managers that are made anew would take most of the time.
    dzScene->clear();
    TestHost().purge();
}

bool Open(const std::filesystem::path& file)
{
    return dzApp->getContentMgr()->openFile(QString::fromStdString(file.string()), true);
}

} // namespace fuzz
