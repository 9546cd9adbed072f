// Parts and spelling of paths.
// SPDX-License-Identifier: MIT

#include "ks_string.h"

#include <algorithm>

#include <QDir>

#include <fmt/format.h>

namespace kst {
namespace str {

namespace {

/// The entry of that name, or the first of that name but for case; empty without one.
QString FindEntry(const QString& directory, const QString& name)
{
    const QStringList entries = QDir(directory).entryList(
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    if (entries.contains(name))
        return name;
    for (int i = 0; i < entries.size(); ++i)
        if (entries.at(i).compare(name, Qt::CaseInsensitive) == 0)
            return entries.at(i);
    return QString();
}

/// Where the extension's "." stands in a file name, or the name's length.
std::size_t ExtensionDot(std::string_view filename)
{
    return std::min(filename.rfind('.'), filename.size());
}

} // namespace

std::string NativePath(std::string_view path)
{
    return FindReplaceReturn(path, "\\", "/");
}

QString NativePathQ(const QString& path)
{
    return ToQ(NativePath(ToStd(path)));
}

std::string ForwardSlashes(std::string_view path)
{
    return std::string(path);
}

QString ForwardSlashesQ(const QString& path)
{
    return path;
}

std::string MakePath(std::string_view directory, std::string_view name)
{
    const bool needsSlash = !directory.empty() && directory.back() != '/';
    return fmt::format("{}{}{}", directory, needsSlash ? "/" : "", name);
}

QString MakePathQ(const QString& directory, const QString& name)
{
    return ToQ(MakePath(ToStd(directory), ToStd(name)));
}

std::string RemoveLeadingSlash(std::string_view path)
{
    return std::string(path.substr(StartsWith(path, "/") ? 1 : 0));
}

std::pair<std::string_view, std::string_view> GetDirAndFilenames(std::string_view path)
{
    const std::size_t slash = path.rfind('/');
    if (slash == std::string_view::npos)
        return std::make_pair(std::string_view(), path);
    return std::make_pair(path.substr(0, slash), path.substr(slash + 1));
}

std::string_view GetFilename(std::string_view path)
{
    return GetDirAndFilenames(path).second;
}

std::string_view GetExtension(std::string_view path)
{
    const std::string_view filename = GetFilename(path);
    return filename.substr(std::min(ExtensionDot(filename) + 1, filename.size()));
}

std::string_view GetFilestem(std::string_view path)
{
    const std::string_view filename = GetFilename(path);
    return filename.substr(0, ExtensionDot(filename));
}

std::string_view GetDirname(std::string_view path)
{
    return GetDirAndFilenames(path).first;
}

QString GetDirnameQ(const QString& path)
{
    return ToQ(GetDirname(ToStd(path)));
}

bool CaseCorrectPath(std::string_view baseDir, std::string_view relativePath, std::string& out)
{
    std::string directory(baseDir);
    bool first = true;
    return ForEachSubstring(relativePath, "/", [&](std::string_view component) {
        if (component.empty())
            return true;
        const std::string entry = ToStd(FindEntry(ToQ(directory), ToQ(component)));
        if (entry.empty())
            return false;
        directory = MakePath(directory, entry);
        out += first ? entry : "/" + entry;
        first = false;
        return true;
    });
}

} // namespace str
} // namespace kst
