// A table of conversions for all characters of a folder.
// SPDX-License-Identifier: MIT

#include "batch/batch_init.h"

#include "base/cancellation.h"
#include "base/errors.h"
#include "batch/batch_plan.h"
#include "batch/job_table.h"
#include "command.h"
#include "dials.h"
#include "dson/reader.h"
#include "gnt_request.h"
#include "mesh_files.h"

#include <algorithm>
#include <set>
#include <stdexcept>
#include <vector>

#include <fmt/format.h>

namespace cli {

namespace fs = std::filesystem;

namespace {

std::vector<fs::path> PresetsBelow(const fs::path& folder)
{
    std::error_code error;
    if (!fs::is_directory(folder, error))
        throw std::runtime_error(fmt::format("{}: there is no such folder", FileText(folder)));
    std::vector<fs::path> files;
    const auto options = fs::directory_options::skip_permission_denied;
    for (fs::recursive_directory_iterator entry(folder, options, error), end; !error && entry != end;
         entry.increment(error)) {
        base::ThrowIfCancelled();
        const fs::path& file = entry->path();
        if (entry->is_regular_file(error) && HasExtension(file, ".duf") &&
            file.filename().u8string().compare(0, 2, "._") != 0)
            files.push_back(file);
    }
    std::sort(files.begin(), files.end());
    return files;
}

/// What the conversion of the preset's figure calls its morphs; nothing for other presets.
std::optional<std::string> NameOfMorph(const fs::path& file)
{
    const dson::Document document = dson::ReadDocument(file);
    const bool wearsShape = std::any_of(
        document.modifierInstances.begin(), document.modifierInstances.end(),
        [](const dson::ModifierInstance& modifier) { return modifier.value.value_or(0.0) != 0.0; });
    const std::optional<std::string> label = LabelOfSource(document);
    if (document.info.type == "scene" || !label || !wearsShape)
        return std::nullopt;
    return GntConvertedLabel(*label);
}

/// Also where file names do not tell capital letters from small ones.
std::string FreeName(const std::string& wanted, std::set<std::string>& taken)
{
    std::string name = wanted;
    for (int number = 2; !taken.insert(Folded(name)).second; ++number)
        name = fmt::format("{} {}", wanted, number);
    return name;
}

} // namespace

std::string TableOfCharacters(const fs::path& folder, const std::string& target,
                              base::Diagnostics& diagnostics)
{
    std::string rows;
    std::set<std::string> taken;
    for (const fs::path& file : PresetsBelow(folder)) {
        base::ThrowIfCancelled();
        try {
            if (const std::optional<std::string> name = NameOfMorph(file))
                rows += fmt::format("{},{}{}\n", CsvCell(FileText(file)),
                                    target.empty() ? std::string() : CsvCell(target) + ',',
                                    CsvCell(FreeName(*name, taken)));
        } catch (const base::Error& error) {
            diagnostics.push_back(base::FromSentence(base::Severity::Warning, FileText(file), error.what()));
        }
    }
    if (rows.empty())
        throw std::runtime_error(fmt::format(
            "{}: there is no character of Genesis 3, 8 or 8.1 with a shape below it", FileText(folder)));
    return (target.empty() ? "source,name\n" : "source,target,name\n") + rows;
}

} // namespace cli
