// One row of a batch, converted in the process that this is called in.
// SPDX-License-Identifier: MIT

#include "batch/batch_row.h"

#include "batch/row_command.h"
#include "command.h"
#include "conversions/conversion_json.h"
#include "error_sentence.h"
#include "morphs/morph_json.h"
#include "progress.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace cli {

namespace {

Json Listed(const FilesUsed& files)
{
    Json list = Json::array();
    for (const std::filesystem::path& file : files)
        list.push_back(FileText(file));
    return list;
}

Json Run(ConversionRequest request, const RowTask& task)
{
    request.isDryRun = task.isDryRun;
    request.verbose = task.verbose;
    request.tellsFilesUsed = true;
    request.mayOverwrite = request.mayOverwrite || task.mayReplace;
    request.drawsThumbnail = task.wantsPicture;
    request.beforeSaving = [&task] { task.beforeSaving({}); };
    Progress progress(task.tellsProgress);
    const ConversionReport report = Convert(request, progress);
    Json answer{{"report", DescribeConversion(report, progress, true)},
                {"files_used", Listed(report.filesUsed)}};
    if (!report.thumbnail.empty())
        answer["picture"] = report.thumbnail;
    return answer;
}

/// In the list of a batch there is room for one of them.
std::string FirstSkipped(const MorphConversionReport& report)
{
    std::size_t failures = 0;
    std::string first;
    for (const SkippedMorph& morph : report.skipped)
        if (morph.isFailure && failures++ == 0)
            first = fmt::format("\"{}\": {}", morph.name, morph.reason);
    return first + (failures > 1 ? ", and so on" : "");
}

Json Run(MorphConversionRequest request, const RowTask& task)
{
    request.isDryRun = task.isDryRun;
    request.verbose = task.verbose;
    request.tellsFilesUsed = true;
    request.ownFiles.assign(task.ownFiles.begin(), task.ownFiles.end());
    request.beforeSaving = task.beforeSaving;
    Progress progress(task.tellsProgress);
    const MorphConversionReport report = ConvertMorphs(request, progress);
    Json answer{{"report", DescribeMorphConversion(report, progress, true)},
                {"files_used", Listed(report.filesUsed)}};
    if (const std::string failure = FailureOf(report); !failure.empty())
        answer["error"] = app::ErrorSentence(failure + "; " + FirstSkipped(report));
    return answer;
}

} // namespace

Json ConvertRow(const RowTask& task)
{
    return std::visit([&task](const auto& request) { return Run(request, task); }, ParseRow(task.arguments));
}

} // namespace cli
