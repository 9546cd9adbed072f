// Starts the host around the tests.
// SPDX-License-Identifier: MIT

#include "tests/host/host_fixture.h"

#include <dznode.h>
#include <dzscene.h>

#include <QFile>

namespace {

openhost::OpenHost* g_host = nullptr;
QTemporaryDir* g_folder = nullptr;

} // namespace

openhost::OpenHost& TestHost()
{
    return *g_host;
}

const QString& TestFolder()
{
    static const QString path = g_folder->path();
    return path;
}

QString LogText()
{
    dzApp->flushLogBuffer();
    QFile file(dzApp->getLogFilename());
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    QTemporaryDir folder;
    g_folder = &folder;
    openhost::OpenHost::Options options;
    options.settingsFolder = folder.filePath(QStringLiteral("settings"));
    options.logFilename = folder.filePath(QStringLiteral("log.txt"));
    options.tempPath = folder.path();
    options.documentationPath = folder.filePath(QStringLiteral("documentation"));
#ifdef HOST_WITH_WINDOWS
    options.headless = false;
#endif
    openhost::OpenHost host(argc, argv, options);
    g_host = &host;
    return RUN_ALL_TESTS();
}

DzNode* AddNode(const char* label, DzNode* parent)
{
    auto* const node = new DzNode;
    node->setName(QLatin1String(label));
    node->setLabel(QLatin1String(label));
    if (parent)
        parent->addNodeChild(node);
    else
        dzScene->addNode(node);
    return node;
}
