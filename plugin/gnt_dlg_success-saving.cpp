// The success dialog's saving: where to and under what names, and what came of it.
// SPDX-License-Identifier: MIT

#include "gnt_dlg_success-impl.h"
#include "gnt_outcome.h"

#include "ks_critical-box.h"
#include "ks_daz-adaptation.h"
#include "ks_exception.h"
#include "ks_gui.h"
#include "ks_gui_style.h"
#include "ks_string.h"

#include <algorithm>
#include <utility>

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <fmt/format.h>

using kst::str::ToQ;
using kst::str::ToStd;

namespace {

const char* const saveButtonHelp = "<p>%%: Saves the selected new morphs as support morph assets for the "
                                   "Genesis 9 figure.</p><p>The button is "
                                   "disabled if no morphs have been selected with the checkboxes above.</p>";

} // namespace

void GntSuccessDialog::Impl::initSaving(GntSuccessDialog& dialog)
{
    initContentLibraries();
    const std::string& vendor = _lastVendorName.get();
    ui.pledVendorName->setText(vendor.empty() ? KsHelpersDaz::GetCurrentAuthorName() : ToQ(vendor));
    ui.pledProductName->setText(ToQ(_lastProductName.get()));
    for (QLineEdit* const line : {ui.pledVendorName, ui.pledProductName}) {
        line->setPlaceholderText(QLatin1String("Needed to save"));
        kst::gui::ConnectLineEditTextChanged(*line, &dialog, SLOT(slotNameChanged()));
    }
    markMissingNames();
    QPushButton& button = *ui.pbtnSaveMorphAssets;
    kst::gui::GiveRoomForText(button);
    _saveHandler.connect(
        button, [this, &dialog] { onSaveMorphsButtonClicked(_params, dialog); }, saveButtonHelp);
}

void GntSuccessDialog::Impl::initContentLibraries()
{
    QComboBox& combo = *ui.pcboContentLibrary;
    // Among letters that are written from right to left, a path's first slash would come to stand at its end.
    combo.setLayoutDirection(Qt::LeftToRight);
    int longest = 0;
    for (int i = 0; i < _contentManager.getNumContentDirectories(); ++i) {
        const QString path = _contentManager.getContentDirectoryPath(i);
        combo.addItem(path);
        combo.setItemData(i, path, Qt::ToolTipRole);
        longest = std::max(longest, path.size());
    }
    // Usual paths show whole, and a very long one does not push the window off the screen.
    combo.setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    combo.setMinimumContentsLength(std::min(longest, 60));
    const int last = combo.findText(ToQ(_lastContentLibrary.get()));
    if (last >= 0)
        combo.setCurrentIndex(last);
}

void GntSuccessDialog::Impl::markMissingNames()
{
    const std::pair<QLabel*, const QLineEdit*> names[] = {{ui.plblVendorName, ui.pledVendorName},
                                                          {ui.plblProductName, ui.pledProductName}};
    for (const auto& [label, line] : names) {
        if (line->text().trimmed().isEmpty())
            kst::gui::MakeLabelForegroundOrange(*label);
        else
            label->setStyleSheet(QString());
    }
}

std::vector<QWidget*> GntSuccessDialog::Impl::saveControls() const
{
    return {ui.pcboContentLibrary, ui.pledVendorName, ui.pledProductName, ui.pchkCompressFiles,
            ui.pbtnSaveMorphAssets};
}

void GntSuccessDialog::Impl::enableDisableControls()
{
    const bool isAnyChecked =
        std::any_of(_rows.begin(), _rows.end(),
                    [](const std::unique_ptr<MorphRow>& row) { return row->box->isChecked(); });
    for (QWidget* const control : saveControls())
        control->setEnabled(isAnyChecked);
    for (QLabel* const label : {ui.plblContentLibrary, ui.plblVendorName, ui.plblProductName})
        label->setEnabled(isAnyChecked);
}

void GntSuccessDialog::Impl::onSaveMorphsButtonClicked(const std::shared_ptr<GntParams>& params,
                                                       GntSuccessDialog& dialog)
{
    try {
        _lastContentLibrary.setAndNotify(ToStd(ui.pcboContentLibrary->currentText()));
        _lastVendorName.setAndNotify(ToStd(ui.pledVendorName->text()));
        _lastProductName.setAndNotify(ToStd(ui.pledProductName->text()));
        if (!_target)
            throw kst::Exception("the target figure is no longer in the scene");
        if (!GntSaveMorphs_X(params->figTarget, _created,
                             {_lastContentLibrary.get(), _lastVendorName.get(), _lastProductName.get(),
                              ui.pchkCompressFiles->isChecked()}))
            return; // the user cancelled it
        const std::string count =
            kst::str::Pluralize(_created.size(), "selected morph has", "%d selected morphs have");
        kst::daz::InfoBox(
            "Morph support assets saved",
            fmt::format("The {} been saved to {}", count, kst::str::HtmlEscape(_lastContentLibrary.get())),
            &dialog);
    } catch (const std::exception& error) {
        dialog.criticalBox("Failed to save morph support assets", error.what());
    }
}
