// Whole conversions: with dialogs, as the menu action runs it, and of two given figures without any.
// SPDX-License-Identifier: MIT

#include "gnt_convert-impl.h"
#include "gnt_dialog-forms.h"
#include "gnt_outcome-texts.h"
#include "gnt_testing.h"

#include "ks_debug.h"
#include "ks_exception.h"

#include <algorithm>
#include <vector>

#include <QElapsedTimer>

#include <dzfigure.h>
#include <dzscene.h>

namespace {

/// The newest last.
std::vector<GntForms*>& Overrides()
{
    static std::vector<GntForms*> overrides;
    return overrides;
}

GntForms& CurrentForms()
{
    static GntDialogForms dialogs;
    return Overrides().empty() ? dialogs : *Overrides().back();
}

} // namespace

GntConvertForm::~GntConvertForm() = default;
GntForms::~GntForms() = default;

GntFormsOverride::GntFormsOverride(GntForms& forms) : _forms(forms)
{
    Overrides().push_back(&forms);
}

GntFormsOverride::~GntFormsOverride()
{
    Overrides().erase(std::remove(Overrides().begin(), Overrides().end(), &_forms), Overrides().end());
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
    QElapsedTimer timer;
    timer.start();
    GntRequest request = form->makeRequest();
    request.targetLabel = label;
    form.reset(); // nothing that it had still to do may touch the figures from here on
    const GntOutcome outcome = converter.run_X(request);
    forms.showSuccess({parent, outcome, GntElapsedText(timer.elapsed()), GntMissingNote(outcome.missing)});
}

GntOutcome GntConverter::Convert_X(DzNode& source, DzNode& target, const GntRequest& request)
{
    if (request.resolution == GntResolution::Subd)
        Impl::Subdivide_X(kst::daz::ResolveToFigure_X(source), request.subdLevel);
    dzScene->selectAllNodes(false);
    source.select(true);
    target.select(true);
    return GntConverter(FindSourceAndTargetInSceneSelected_X()).run_X(request);
}
