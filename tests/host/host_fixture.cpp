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
    qputenv("XDG_CACHE_HOME", folder.filePath(QStringLiteral("cache")).toUtf8());
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

namespace {

const char* NameOf(openhost::Operation operation)
{
    switch (operation) {
    case openhost::Operation::Select:
        return "select";
    case openhost::Operation::Add:
        return "add";
    case openhost::Operation::Remove:
        return "remove";
    case openhost::Operation::Rename:
        return "rename";
    case openhost::Operation::Show:
        return "visible";
    case openhost::Operation::SetValue:
        return "property";
    case openhost::Operation::AddMorph:
        return "morph";
    case openhost::Operation::Export:
        return "export";
    case openhost::Operation::Import:
        return "import";
    case openhost::Operation::OpenFile:
        return "openFile";
    case openhost::Operation::SaveAsset:
        return "saveAsset";
    case openhost::Operation::CreateMorph:
        return "createMorph";
    case openhost::Operation::Transfer:
        return "transfer";
    }
    return "";
}

} // namespace

HostWatch::HostWatch()
{
    QObject::connect(&openhost::Events(), &openhost::HostEvents::progressTextShown, &_context,
                     [this](const QString& text) { see(QStringLiteral("progress"), text); });
}

bool HostWatch::allow(openhost::Operation operation, const QString& detail)
{
    return see(QLatin1String(NameOf(operation)), detail);
}

bool Recorder::see(const QString& operation, const QString& detail)
{
    lines.push_back((operation + QLatin1Char(' ') + detail).toStdString());
    return !refused || operation != QLatin1String(NameOf(*refused));
}
