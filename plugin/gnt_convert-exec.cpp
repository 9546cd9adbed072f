// A conversion with its dialogs: what the menu action runs.
// SPDX-License-Identifier: MIT

#include "gnt_convert-impl.h"
#include "gnt_dialog-forms.h"
#include "gnt_outcome-texts.h"

#include "ks_debug.h"
#include "ks_exception.h"

#include <QElapsedTimer>

namespace {

GntForms* givenForms = nullptr;

GntForms& CurrentForms()
{
    static GntDialogForms dialogs;
    return givenForms ? *givenForms : dialogs;
}

} // namespace

GntConvertForm::~GntConvertForm() = default;
GntForms::~GntForms() = default;

void GntConverter::SetForms(GntForms* forms)
{
    givenForms = forms;
}

void GntConverter::Exec_X(QWidget* parent)
{
    const kst::Debug scope("GntConverter::exec_X()");
    const std::shared_ptr<GntParams> params = FindSourceAndTargetInSceneSelected_X();
    GntConverter converter(params);
    const std::string label = converter.makeConvertedLabel();
    GntForms& forms = CurrentForms();
    std::unique_ptr<GntConvertForm> form = forms.makeConvertForm(
        {parent, params, converter.getActiveMorphCount(), label, &converter._pImpl->settings});
    if (!form->exec())
        return;
    if (!params->areFiguresInScene())
        throw kst::Exception("the source or the target figure is no longer in the scene");
    const std::vector<std::string> paths = form->getMorphPaths();
    QElapsedTimer timer;
    timer.start();
    converter._pImpl->debugSteps = form->isDebuggingSteps();
    const GntResolution resolution = form->getResolution();
    const std::vector<std::string> names = form->getMorphNames();
    const GntJobs jobs = form->getJobs();
    form.reset(); // nothing that it had still to do may touch the figures from here on
    GntMissingMorphs missing;
    const std::vector<GntCreatedMorph> created =
        converter.run_X(resolution, label, paths, names, jobs, missing);
    const std::string note = GntMissingNote(missing);
    const std::string elapsed = GntElapsedText(timer.elapsed());
    forms.showSuccess({parent, params, created, elapsed, note});
}
