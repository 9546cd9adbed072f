// What a conversion would write, where it is only looked at.
// SPDX-License-Identifier: MIT

#include "conversions/conversion_plan.h"

#include "conversions/conversion_figures.h"
#include "conversions/conversion_results.h"
#include "gnt_convert-figure.h"
#include "openhost/morph_names.h"
#include "save_options.h"

#include <QString>

namespace cli {

namespace {

void PlanMorphFiles(const DzNode& target, const ConversionRequest& request,
                    const std::vector<std::string>& names, PlannedFiles& planned)
{
    const openhost::TakenNames taken(target);
    const auto toQ = [](const std::string& text) { return QString::fromStdString(text); };
    const GntSaveOptions save = WithWholeFolder(*request.save);
    const openhost::MorphFolder folder{toQ(save.contentDirectory), toQ(save.vendor), toQ(save.product)};
    for (const std::string& name : names) {
        std::filesystem::path file = std::filesystem::u8path(taken.fileFor(toQ(name), folder).toStdString());
        PlanFileWithFolders(planned, file);
        if (request.morphs.resolution == GntResolution::Subd)
            PlanFileWithFolders(planned, file.replace_extension(".dhdm"));
    }
}

} // namespace

void PlanConversion(DzNode& source, DzNode& target, const ConversionRequest& request,
                    const std::vector<std::string>& names, ConversionReport& report)
{
    const std::shared_ptr<GntParams> params = ParamsOf(source, target);
    report.activeMorphs = GntConverter(params).getActiveMorphCount();
    report.cloneShape = std::string(GntClonePropertyName(params->cloneShape));
    if (!GntSetBases_X(*params, request.morphs))
        TellOfHeight(report.diagnostics);
    report.targetDials = FindDialsUsed(target, {});
    report.plannedNames = names;
    if (request.save)
        PlanMorphFiles(target, request, names, report.planned);
    if (!request.exportObj.empty())
        PlanFile(report.planned, request.exportObj);
    if (!request.pictures.empty())
        for (const std::string& name : PictureNames())
            PlanFileWithFolders(report.planned, request.pictures / name);
    if (!request.page.empty())
        PlanFile(report.planned, request.page);
}

} // namespace cli
