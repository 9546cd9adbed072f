// Which row of a run has which files, where rows learn their files only when figures are loaded.
// SPDX-License-Identifier: MIT

#include "batch/morph_claims.h"

#include "batch/row_command.h"
#include "dials.h"

#include <algorithm>

namespace cli {

namespace {

/// Rows of other folders never write the same file. Characters' rows say their names in the table.
std::string FolderOf(const BatchRow& row)
{
    std::string folder = IsOfMorphs(row.arguments) ? "morphs" : "";
    for (const char* const option : {"save-library", "vendor", "product"})
        folder += folder.empty() ? "" : '\n' + ValueIn(row.arguments, option);
    return Folded(folder);
}

} // namespace

void MorphClaims::begin(std::size_t row)
{
    _atWork.insert(row);
    _silent.insert(row);
}

void MorphClaims::end(std::size_t row)
{
    _atWork.erase(row);
    _silent.erase(row);
}

bool MorphClaims::mayHave(std::size_t row, const std::vector<std::string>& files) const
{
    return _silent.count(row) > 0 || std::any_of(files.begin(), files.end(), [&](const std::string& file) {
               const auto owner = _owners.find(Folded(file));
               return owner != _owners.end() && owner->second == row;
           });
}

bool MorphClaims::hasToWait(std::size_t row, const std::vector<std::string>& files) const
{
    const std::string folder = files.empty() ? std::string() : FolderOf(_rows[row]);
    return !folder.empty() && std::any_of(_atWork.begin(), _atWork.lower_bound(row), [&](std::size_t above) {
        return FolderOf(_rows[above]) == folder && mayHave(above, files);
    });
}

std::optional<std::pair<std::string, std::size_t>> MorphClaims::claim(std::size_t row,
                                                                      const std::vector<std::string>& files)
{
    _silent.erase(row);
    for (const std::string& file : files) {
        const auto [owner, isNew] = _owners.emplace(Folded(file), row);
        if (!isNew && owner->second != row)
            return std::make_pair(file, owner->second);
    }
    return std::nullopt;
}

void MorphClaims::letGo(std::size_t row, const std::string& file)
{
    const auto owner = _owners.find(Folded(file));
    if (owner != _owners.end() && owner->second == row)
        _owners.erase(owner);
}

} // namespace cli
