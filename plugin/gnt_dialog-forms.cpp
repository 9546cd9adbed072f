// The dialogs of a conversion that a user sees.
// SPDX-License-Identifier: MIT

#include "gnt_dialog-forms.h"

#include "gnt_dlg_convert.h"
#include "gnt_dlg_success.h"

namespace {

/// Keeps the run's figures and dials as long as the dialog shows them.
class DialogConvertForm : public GntConvertForm {
public:
    explicit DialogConvertForm(const GntConvertQuestion& question)
        : _params(question.params), _dialog(question.parent, *question.params, question.activeMorphCount,
                                            question.defaultMorphName, *question.settings)
    {
    }

    bool exec() override { return _dialog.exec() == QDialog::Accepted; }
    GntRequest makeRequest() const override
    {
        GntRequest request;
        request.jobs = GntJobs::fromInt(_dialog.getJobs());
        request.names = _dialog.getMorphNames();
        request.paths = _dialog.getMorphPaths();
        int subdLevel = 0; // the conversion takes the level that the source had when it was selected
        request.resolution = _dialog.getBaseOrHighResolution(subdLevel);
        request.debugSteps = _dialog.getDebugSteps();
        return request;
    }

private:
    std::shared_ptr<GntParams> _params;
    GntConvertDialog _dialog;
};

} // namespace

std::unique_ptr<GntConvertForm> GntDialogForms::makeConvertForm(const GntConvertQuestion& question)
{
    return std::unique_ptr<GntConvertForm>(new DialogConvertForm(question));
}

void GntDialogForms::showSuccess(const GntSuccess& success)
{
    GntSuccessDialog::Create(success.parent, success.outcome.params, success.outcome.created, success.elapsed,
                             success.note);
}
