// What people and folders can be called.
// SPDX-License-Identifier: MIT

#include "name_checks.h"

#include "base/device_name.h"
#include "base/errors.h"
#include "base/limits.h"
#include "command.h"

#include <algorithm>
#include <cstring>

#include <QString>

#include <fmt/format.h>

namespace cli {

/// Libraries move between systems; some refuse these characters, and drop a full stop at the end.
void CheckFolderName(const std::string& option, const std::string& name)
{
    const bool hasBadCharacter = std::any_of(name.begin(), name.end(), [](char c) {
        return static_cast<unsigned char>(c) < 0x20 || std::strchr("/\\:*?\"<>|", c);
    });
    // Some drop blanks at the ends as well.
    const bool hasBlankEnd = name.empty() || name.front() == ' ' || name.back() == ' ';
    if (hasBlankEnd || hasBadCharacter || name.back() == '.' || base::IsDeviceName(name))
        throw UsageError(option + " \"" + name + "\" cannot be the name of a folder");
    if (QString::fromStdString(name).toStdString() != name)
        throw UsageError(fmt::format("{} is not UTF-8", option));
    if (name.size() > base::longestName)
        throw UsageError(fmt::format("{} is too long for the name of a folder: {} bytes, of {} at most",
                                     option, name.size(), base::longestName));
}

void CheckContentName(const std::filesystem::path& path)
{
    const std::string text = path.u8string();
    if (QString::fromStdString(text).toStdString() != text)
        throw base::IoError("{}: the name is not UTF-8, as those of content have to be", FileText(path));
}

void CheckAuthor(const std::string& option, const std::string& name)
{
    const bool hasControl = std::any_of(
        name.begin(), name.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7f; });
    if (hasControl)
        throw UsageError(fmt::format("{} has characters that nobody can see", option));
    if (!name.empty() && QString::fromStdString(name).trimmed().isEmpty())
        throw UsageError(fmt::format("{} is blank", option));
    if (QString::fromStdString(name).toStdString() != name)
        throw UsageError(fmt::format("{} is not UTF-8", option));
}

} // namespace cli
