// Files that rows of a batch name and nobody finds.
// SPDX-License-Identifier: MIT

#include "batch/lost_files.h"

#include "base/cancellation.h"
#include "base/counted.h"
#include "command.h"
#include "dson/reader.h"

#include <map>

#include <fmt/format.h>

namespace cli {

namespace fs = std::filesystem;

namespace {

struct Mention {
    std::size_t line = 0, count = 0; ///< of the first row, and of all
    bool isLost = false;
};

/// What has to be there for an option of a row; empty for others.
fs::path NeededFor(const std::string& argument)
{
    const std::size_t end = argument.find('=');
    const std::string option = argument.substr(0, end);
    const fs::path value = end == argument.npos ? std::string() : argument.substr(end + 1);
    for (const char* const needed : {"--source", "--target", "--list", "--content"})
        if (option == needed)
            return value;
    return option == "--report" ? value.parent_path() : fs::path();
}

} // namespace

base::Diagnostics FindLostFiles(const std::vector<BatchRow>& rows, const std::string& name)
{
    std::map<fs::path, Mention> mentions;
    std::vector<std::pair<const fs::path, Mention>*> lost; // in the order of their rows
    for (const BatchRow& row : rows) {
        base::ThrowIfCancelled();
        for (const std::string& argument : row.arguments) {
            const fs::path path = NeededFor(argument);
            if (path.empty())
                continue;
            const auto [mention, isNew] = mentions.try_emplace(path);
            std::error_code error;
            if (isNew) {
                mention->second = {row.line, 0, !fs::exists(path, error) && !error};
                if (mention->second.isLost)
                    lost.push_back(&*mention);
            }
            ++mention->second.count;
        }
    }
    base::Diagnostics told;
    for (const auto* const one : lost) {
        const std::size_t others = one->second.count - 1;
        told.push_back(
            {base::Severity::Warning,
             name,
             {},
             fmt::format("line {}: {} is not there{}", one->second.line, FileText(one->first),
                         others == 0 ? ""
                                     : fmt::format("; the same of {}",
                                                   base::Counted(others, "more row", "more rows")))});
    }
    return told;
}

} // namespace cli
