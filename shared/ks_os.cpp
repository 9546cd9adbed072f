// The few things that are asked of the operating system directly.
// SPDX-License-Identifier: MIT

#include "shared/ks_os.h"

#include "shared/ks_exception.h"
#include "shared/ks_string.h"

#include <cstdlib>
#include <set>

#include <QByteArray>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStringList>
#include <QUrl>

#include <time.h>

namespace kst {
namespace os {

namespace {

// Facts of the platform.
constexpr std::string_view INVALID_FILENAME_CHARACTERS = "/";
const char* const FILE_BROWSER = "macOS Finder";
const char* const ASSET_EDITOR_BUNDLE = "/Applications/Asset Editor.app";
const char* const OPENER = "open";
const char* const DESKTOP_OPENER = "xdg-open";

bool StartDetached(const char* program, const QStringList& arguments)
{
    return QProcess::startDetached(QLatin1String(program), arguments);
}

/// Some desktops install their own opener under the same name; it refuses every option, which a detached
/// start does not show.
bool IsOpenerTheDesktopsOwn()
{
    const char* const path = std::getenv("PATH");
    for (const std::string_view folder : str::ExplodeViewVector(path ? path : "", ":", false)) {
        const QFileInfo file(str::ToQ(str::MakePath(folder, OPENER)));
        if (file.isFile() && file.isExecutable()) {
            const std::string target = str::ToStd(QFileInfo(file.canonicalFilePath()).fileName());
            return target == DESKTOP_OPENER || target == "run-mailcap";
        }
    }
    return false;
}

bool StartOpener(const QStringList& arguments)
{
    return !IsOpenerTheDesktopsOwn() && StartDetached(OPENER, arguments);
}

/// Asks the desktop's file manager to show the item in its folder.
bool ShowInFileManager(const QFileInfo& item)
{
    // dbus-send splits lists at commas, which addresses may hold as they are.
    QByteArray url = QUrl::fromLocalFile(item.absoluteFilePath()).toEncoded();
    url.replace(",", "%2C");
    const int patienceMs = 2000;
    const QStringList arguments = QStringList()
                                  << QLatin1String("--session") << QLatin1String("--print-reply")
                                  << QString(QLatin1String("--reply-timeout=%1")).arg(patienceMs)
                                  << QLatin1String("--dest=org.freedesktop.FileManager1")
                                  << QLatin1String("/org/freedesktop/FileManager1")
                                  << QLatin1String("org.freedesktop.FileManager1.ShowItems")
                                  << QLatin1String("array:string:") + QString::fromLatin1(url.constData())
                                  << QLatin1String("string:");
    // Not execute(): the reply is of no use, and it would go to the host's own output.
    QProcess process;
    process.start(QLatin1String("dbus-send"), arguments);
    return process.waitForFinished(2 * patienceMs) && process.exitStatus() == QProcess::NormalExit &&
           process.exitCode() == 0;
}

} // namespace

void Sleep(unsigned milliseconds)
{
    struct timespec duration;
    duration.tv_sec = static_cast<time_t>(milliseconds / 1000);
    duration.tv_nsec = static_cast<long>(milliseconds % 1000) * 1000000;
    nanosleep(&duration, nullptr);
}

std::string GetTempDir()
{
    return str::ToStd(QDir::tempPath());
}

void ForEachInvalidFilenameCharacter(std::string_view filename, const std::function<void(char)>& callback)
{
    for (const char c : filename)
        if (INVALID_FILENAME_CHARACTERS.find(c) != std::string_view::npos)
            callback(c);
}

bool HasInvalidFilenameCharacters(std::string_view filename)
{
    bool found = false;
    ForEachInvalidFilenameCharacter(filename, [&](char) { found = true; });
    return found;
}

void ThrowIfFilenameHasInvalidCharacters(std::string_view filename)
{
    std::set<std::string> found;
    ForEachInvalidFilenameCharacter(filename, [&](char c) { found.insert(std::string(1, c)); });
    if (!found.empty())
        throw Exception("invalid {} {} in filename {}",
                        str::Pluralize(found.size(), "character", "characters"), str::Implode(", ", found),
                        str::Quote(filename));
}

std::string GetWindowsExplorerString()
{
    return FILE_BROWSER;
}

void LaunchExplorerOrThrow(const std::string& path)
{
    const QString pathQ = str::ToQ(path);
    const QFileInfo item(pathQ);
    if (!item.exists())
        throw Exception("file {} does not exist", str::Quote(std::string_view(path)));
    if (StartOpener(QStringList() << QLatin1String("-R") << pathQ) || ShowInFileManager(item))
        return;
    StartDetached(DESKTOP_OPENER, QStringList() << item.absolutePath());
}

std::string FindAssetEditor()
{
    return QFileInfo(QLatin1String(ASSET_EDITOR_BUNDLE)).exists() ? ASSET_EDITOR_BUNDLE : std::string();
}

void LaunchAssetEditorWithFileOrThrow(std::string_view file)
{
    const std::string editor = FindAssetEditor();
    if (editor.empty())
        return;
    const QString fileQ = str::ToQ(file);
    if (!StartOpener(QStringList() << QLatin1String("-a") << str::ToQ(editor) << fileQ))
        StartDetached(DESKTOP_OPENER, QStringList() << fileQ);
}

} // namespace os
} // namespace kst
