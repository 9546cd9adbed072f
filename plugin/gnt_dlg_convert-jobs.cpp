// The convert dialog's morphs: which to make, and where their dials appear.
// SPDX-License-Identifier: MIT

#include "gnt_dlg_convert-impl.h"
#include "gnt_request.h"

#include "ks_dlg_morph-path.h"
#include "ks_qt-compat.h"
#include "ks_string.h"

#include <dzfigure.h>

#include <utility>

namespace {

using kst::str::ToQ;
using kst::str::ToStd;

const char* const fullHelp = "%%: Causes a single morph to be created that contains the sum of all morphs "
                             "that are currently dialed up in the source figure.";
const char* const headHelp = "%%: Causes a morph to be created that contains the sum of all morphs that are "
                             "currently dialed up in the "
                             "source figure, but filtered through the ``head'' part of the standard "
                             "``HeadSplit'' D-former weight map. "
                             "This ships with the Daz Studio Genesis 9 development kit.";
const char* const bodyHelp = "%%: Causes a morph to be created that contains the sum of all morphs that are "
                             "currently dialed up in the "
                             "source figure, but filtered through the ``body'' part of the standard "
                             "``HeadSplit'' D-former weight map. "
                             "This ships with the Daz Studio Genesis 9 development kit.";

/// To those who do not see the grid: what stands above the field and beside it.
void NameField(QLineEdit& field, const QLabel& above, const QCheckBox& beside)
{
    kst::qt::SetAccessibleName(field, above.text() + QLatin1String(": ") + beside.text());
}

} // namespace

void GntConvertDialog::Impl::initJobs()
{
    jobFlagsController.init({{GntJobFlag::Full, ui.pchkCreateFullFigureMorph, fullHelp},
                             {GntJobFlag::Head, ui.pchkCreateHeadMorph, headHelp},
                             {GntJobFlag::Body, ui.pchkCreateBodyMorph, bodyHelp}},
                            [this](bool) { enableConvert(); });
    addMorphPath(*ui.phorzFullFigureMorphPath, *ui.pledFullFigureMorphPath, GNT_JOBS[GntFull].keyword);
    addMorphPath(*ui.phorzHeadMorphPath, *ui.pledHeadMorphPath, GNT_JOBS[GntHead].keyword);
    addMorphPath(*ui.phorzBodyMorphPath, *ui.pledBodyMorphPath, GNT_JOBS[GntBody].keyword);
    NameField(*ui.pledFullFigureMorphPath, *ui.plblHeadingMorphPath, *ui.pchkCreateFullFigureMorph);
    NameField(*ui.pledFullFigureMorphName, *ui.plblHeadingMorphName, *ui.pchkCreateFullFigureMorph);
    NameField(*ui.pledHeadMorphPath, *ui.plblHeadingMorphPath, *ui.pchkCreateHeadMorph);
    NameField(*ui.pledHeadMorphName, *ui.plblHeadingMorphName, *ui.pchkCreateHeadMorph);
    NameField(*ui.pledBodyMorphPath, *ui.plblHeadingMorphPath, *ui.pchkCreateBodyMorph);
    NameField(*ui.pledBodyMorphName, *ui.plblHeadingMorphName, *ui.pchkCreateBodyMorph);
}

void GntConvertDialog::Impl::enableConvert()
{
    ui.pbtnConvert->setEnabled(ui.pchkCreateFullFigureMorph->isChecked() ||
                               ui.pchkCreateHeadMorph->isChecked() || ui.pchkCreateBodyMorph->isChecked());
}

void GntConvertDialog::Impl::addMorphPath(QHBoxLayout& row, QLineEdit& edit, const char* job)
{
    const auto pSetting = std::make_shared<kst::StringAppSetting>(settings, std::string("morph_path_") + job,
                                                                  GNT_DEFAULT_MORPH_PATH);
    morphPaths.push_back(MorphPathControl(*this, row, edit, pSetting));
}

void GntConvertDialog::Impl::pickMorphPath(QLineEdit& edit, kst::StringAppSetting& setting)
{
    kst::MorphPathDialog picker(&dialog, params.figTarget, setting.get(), "winpos_morph_path");
    if (picker.exec() == QDialog::Accepted)
        edit.setText(ToQ(picker.getPropertyPathFromLineEdit()));
}

GntConvertDialog::Impl::MorphPathControl::MorphPathControl(Impl& impl, QHBoxLayout& row, QLineEdit& edit,
                                                           std::shared_ptr<kst::StringAppSetting> pSetting)
    : _row(row), _edit(edit), _pSetting(std::move(pSetting))
{
    const auto pStored = _pSetting;
    impl.toolButtons.addToolButton(
        row, ":/bootstrap/24/eyedropper.png", [&impl, &edit, pStored] { impl.pickMorphPath(edit, *pStored); },
        "Pick morph path",
        "Allows you to pick a morph path from the tree of existing property paths in the target figure.");
    edit.setText(ToQ(_pSetting->get()));
    edit.setCursorPosition(0); // a long path shows from its beginning
}

std::string GntConvertDialog::Impl::MorphPathControl::getPath() const
{
    return ToStd(_edit.text());
}

void GntConvertDialog::Impl::MorphPathControl::acceptValue()
{
    _pSetting->set(getPath());
    _pSetting->notifyListeners();
}

QWidget& GntConvertDialog::Impl::MorphPathControl::getButton() const
{
    return *_row.itemAt(_row.count() - 1)->widget();
}
