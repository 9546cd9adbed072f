// A row that costs next to nothing, in place of a conversion: what is left is what a batch itself costs.
// SPDX-License-Identifier: MIT

#include "batch/batch_row.h"

#include "base/file_set.h"
#include "batch/row_command.h"

#include <stdexcept>

#include <nlohmann/json.hpp>

namespace cli {

namespace {

std::filesystem::path FolderOf(const GntSaveOptions& save)
{
    return std::filesystem::path(save.contentDirectory) / save.vendor / save.product;
}

} // namespace

/// As a conversion that saves head and body does it, with small files.
Json ConvertRow(const RowTask& task)
{
    const RowRequest row = ParseRow(task.arguments);
    const auto* const request = std::get_if<ConversionRequest>(&row);
    if (!request || !request->save || request->morphs.names.empty())
        throw std::runtime_error("this stand-in takes rows of convert that name and save their morphs");
    const std::string content(4096, '.');
    const std::filesystem::path folder = FolderOf(*request->save);
    base::FileSet set(std::vector<std::filesystem::path>{folder});
    Json created = Json::array();
    for (const GntJob& job : GNT_JOBS) {
        if (!request->morphs.jobs.test(job.flag))
            continue;
        const std::string& name = request->morphs.names[job.index];
        const std::filesystem::path file = folder / (name + ".dsf");
        std::error_code error;
        if (std::filesystem::exists(file, error) && !task.mayReplace)
            throw std::runtime_error("there is a morph already, in " + file.string());
        set.write(file, content);
        created.push_back({{"name", name}, {"file", file.string()}});
    }
    task.beforeSaving({});
    set.commit();
    return {{"report", {{"created_morphs", created}, {"files", Json::array()}, {"warnings", Json::array()}}}};
}

} // namespace cli
