// The few things that are asked of the operating system directly.
// SPDX-License-Identifier: MIT

#include "ks_os.h"

#include "ks_exception.h"
#include "ks_string.h"

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
constexpr std::string_view invalidFilenameCharacters = "/";
const char* const fileBrowser = "macOS Finder";
const char* const assetEditorBundle = "/Applications/Asset Editor.app";
const char* const openCommand = "open";
const char* const desktopOpener = "xdg-open";

// Asks the desktop's file manager to show an item in its folder and, where that fails, opens the folder. A
// shell does the waiting: the windows are not to stand still for it.
const char* const shell = "/bin/sh";
const char* const showScript =
    "exec >/dev/null 2>&1; dbus-send --session --print-reply --reply-timeout=2000 "
    "--dest=org.freedesktop.FileManager1 /org/freedesktop/FileManager1 "
    "org.freedesktop.FileManager1.ShowItems \"array:string:$1\" string: || exec xdg-open \"$2\"";

void StartDetached(const char* program, const QStringList& arguments)
{
    QProcess::startDetached(QLatin1String(program), arguments);
}

/// Some desktops install their own opener under the same name; it refuses every option, which a detached
/// start does not show.
bool HasOpener()
{
    const char* const path = std::getenv("PATH");
    for (const std::string_view folder : str::ExplodeViewVector(path ? path : "", ":", false)) {
        const QFileInfo file(str::ToQ(str::MakePath(folder, openCommand)));
        if (file.isFile() && file.isExecutable()) {
            const std::string target = str::ToStd(QFileInfo(file.canonicalFilePath()).fileName());
            return target != desktopOpener && target != "run-mailcap";
        }
    }
    return false;
}

void ShowInFileManager(const QFileInfo& item)
{
    // dbus-send splits lists at commas, which addresses may hold as they are.
    QByteArray url = QUrl::fromLocalFile(item.absoluteFilePath()).toEncoded();
    url.replace(",", "%2C");
    StartDetached(shell, QStringList()
                             << QLatin1String("-c") << QLatin1String(showScript) << QLatin1String(shell)
                             << QString::fromLatin1(url.constData()) << item.absolutePath());
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
        if (invalidFilenameCharacters.find(c) != std::string_view::npos)
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
    return fileBrowser;
}

void LaunchExplorerOrThrow(const std::string& path)
{
    const QString pathQ = str::ToQ(path);
    const QFileInfo item(pathQ);
    if (!item.exists())
        throw Exception("file {} does not exist", str::Quote(std::string_view(path)));
    if (HasOpener())
        StartDetached(openCommand, QStringList() << QLatin1String("-R") << pathQ);
    else
        ShowInFileManager(item);
}

std::string FindAssetEditor()
{
    return QFileInfo(QLatin1String(assetEditorBundle)).exists() ? assetEditorBundle : std::string();
}

void LaunchAssetEditorWithFileOrThrow(std::string_view file)
{
    const std::string editor = FindAssetEditor();
    if (editor.empty())
        return;
    const QString fileQ = str::ToQ(file);
    if (HasOpener())
        StartDetached(openCommand, QStringList() << QLatin1String("-a") << str::ToQ(editor) << fileQ);
    else
        StartDetached(desktopOpener, QStringList() << fileQ);
}

} // namespace os
} // namespace kst
