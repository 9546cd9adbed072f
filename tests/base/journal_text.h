// What a save leaves in a folder when it is stopped, as text.
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <sys/stat.h>

inline std::string JournalText(const std::vector<std::string>& words)
{
    std::string text;
    for (const std::string& word : words)
        text += word + '\0';
    return text;
}

/// By which a journal knows a file; that of one that is not there is a hyphen.
inline std::string IdentityText(const std::filesystem::path& file)
{
    struct stat found {};
    return lstat(file.c_str(), &found) != 0
               ? std::string("-")
               : std::to_string(found.st_ino) + '.' + std::to_string(found.st_size) + '.' +
                     std::to_string(found.st_mtim.tv_sec);
}
