// Whether the libraries that a batch saves into stay there.
// SPDX-License-Identifier: MIT

#include "batch/save_libraries.h"

#include "batch/row_command.h"

#include <cerrno>

#include <fmt/format.h>
#include <sys/stat.h>

namespace cli {

SaveLibraries::SaveLibraries(const std::vector<BatchRow>& rows)
{
    for (const BatchRow& row : rows)
        if (const auto [known, isNew] = _known.try_emplace(ValueIn(row.arguments, "save-library")); isNew)
            known->second = look(known->first);
}

SaveLibraries::Place SaveLibraries::look(const std::string& folder)
{
    struct stat place;
    if (stat(folder.c_str(), &place) != 0)
        return {errno == ENOENT || errno == ENOTDIR ? Place::Kind::Nothing : Place::Kind::Unknown, 0, 0};
    return {S_ISDIR(place.st_mode) ? Place::Kind::Folder : Place::Kind::Unknown, place.st_dev, place.st_ino};
}

std::string SaveLibraries::whyLost(const BatchRow& row)
{
    const std::string folder = ValueIn(row.arguments, "save-library");
    Place& known = _known[folder];
    const Place now = look(folder);
    if (now.kind == Place::Kind::Unknown)
        return {}; // whoever saves there says why it cannot be done
    if (known.kind != Place::Kind::Folder)
        known = now;
    if (now.kind == known.kind && now.device == known.device && now.node == known.node)
        return {};
    return fmt::format("the save library {} {} since the batch has begun", folder,
                       now.kind == Place::Kind::Folder ? "has become another folder" : "has gone");
}

} // namespace cli
