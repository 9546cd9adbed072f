// A conversion with its dialogs: what the menu action runs.
// SPDX-License-Identifier: MIT

#include "plugin/gnt_convert-impl.h"
#include "plugin/gnt_forms.h"

#include "shared/ks_debug.h"
#include "shared/ks_exception.h"
#include "shared/ks_string.h"

#include <QElapsedTimer>

namespace {

GntForms* forms = nullptr;

/// The doubled list items are part of the text that the success dialog shows.
std::string MissingNote(const GntMissingMorphs& missing)
{
    if (missing.empty())
        return std::string();
    std::vector<std::string> items;
    for (const auto& morph : missing)
        items.push_back(fmt::format("<li>{} ({:03.1f}%)</li>", morph.first, morph.second * 100.0f));
    return fmt::format("<p><b>Note:</b> The following morphs had non-zero values in the source figure but "
                       "could not be found in the target figure created by the Transfer "
                       "Utility:</p><ul><li>{}</li></ul>",
                       kst::str::Implode("</li><li>", items));
}

} // namespace

GntConvertForm::~GntConvertForm() = default;
GntForms::~GntForms() = default;

void GntConverter::SetForms(GntForms* newForms)
{
    forms = newForms;
}

void GntConverter::Exec_X(QWidget* parent)
{
    const kst::Debug scope("GntConverter::exec_X()");
    const std::shared_ptr<GntParams> params = FindSourceAndTargetInSceneSelected_X();
    GntConverter converter(params);
    const std::string label = converter.makeConvertedLabel();
    if (!forms)
        throw kst::Exception("there is no convert dialog");
    const std::unique_ptr<GntConvertForm> form =
        forms->makeConvertForm({parent, params, converter.getActiveMorphCount(), label});
    if (!form->exec())
        return;
    const std::vector<std::string> paths = form->getMorphPaths();
    QElapsedTimer timer;
    timer.start();
    converter._pImpl->debugSteps = form->isDebuggingSteps();
    const GntResolution resolution = form->getResolution();
    const std::vector<std::string> names = form->getMorphNames();
    const GntJobs jobs = form->getJobs();
    GntMissingMorphs missing;
    const std::vector<GntCreatedMorph> created =
        converter.run_X(resolution, label, paths, names, jobs, missing);
    const std::string note = MissingNote(missing);
    const std::string elapsed =
        kst::str::FormatSecondsElapsed(static_cast<std::uint64_t>(timer.elapsed() / 1000));
    forms->showSuccess({parent, params, created, elapsed, note});
}
