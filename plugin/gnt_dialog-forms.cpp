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
    std::vector<std::string> getMorphPaths() const override { return _dialog.getMorphPaths(); }
    bool isDebuggingSteps() const override { return _dialog.getDebugSteps(); }
    GntResolution getResolution() const override
    {
        int subdLevel = 0; // the conversion takes the level that the source had when it was selected
        return _dialog.getBaseOrHighResolution(subdLevel);
    }
    std::vector<std::string> getMorphNames() const override { return _dialog.getMorphNames(); }
    GntJobs getJobs() const override { return GntJobs::fromInt(_dialog.getJobs()); }

private:
    std::shared_ptr<GntParams> _params;
    GntConvertDialog _dialog;
};

} // namespace

std::unique_ptr<GntConvertForm> GntDialogForms::makeConvertForm(const GntConvertQuestion& question)
{
    return std::unique_ptr<GntConvertForm>(new DialogConvertForm(question));
}

void GntDialogForms::showSuccess(const GntConvertOutcome& outcome)
{
    GntSuccessDialog::Create(outcome.parent, outcome.params, outcome.created, outcome.elapsed, outcome.note);
}
