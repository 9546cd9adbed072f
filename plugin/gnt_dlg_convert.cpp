// What is asked before a conversion: which morphs to make, under what names, and against which bases.
// SPDX-License-Identifier: MIT

#include "gnt_dlg_convert-impl.h"
#include "gnt_request.h"

#include "ks_daz-helpers.h"
#include "ks_daz-managers.h"
#include "ks_gui.h"
#include "ks_manual.h"
#include "ks_product.h"
#include "ks_string.h"

#include <QLineEdit>

#include <dzfigure.h>

#include <fmt/format.h>

namespace {

using kst::str::ToQ;
using kst::str::ToStd;

const char* const introText =
    "\n<p>You are about to convert {} in the selected <b>source figure {}</b> to a single\n"
    "morph in the selected <b>target figure {}</b>.</p>\n"
    "<p>This will combine all currently active morphs from the source.\n"
    "If you want only some of those morphs active, press cancel now, zero the morphs and start again.</p>";

const char* const resolutionHelp =
    "\n<p>Since you have the Daz Studio HD morph plugin installed, you can elect whether the target morph "
    "should\nbe created in base or in high resolution. The ``subd'' value is taken from the selected Genesis "
    "8 figure\nin the scene. The target G9 figure will also be set to that resolution, and the morph will "
    "have that resolution as well.</p>\n<p>If you want to use a different subd value, please cancel now and "
    "change the subd value in your source G8 figure.</p>";

} // namespace

GntConvertDialog::GntConvertDialog(QWidget* parent, GntParams& params, std::size_t activeMorphCount,
                                   std::string_view defaultMorphName, DzAppSettings& settings)
    : DialogBase(parent), _pImpl(new Impl(*this, params, settings))
{
    _pImpl->showIntro(activeMorphCount);
    _pImpl->showNames(defaultMorphName);
    initCommon("Convert figure", ToQ(kst::product::TITLE), QLatin1String("winpos_convert-figure-dialog"));
    connectOkAndCancelButtons(_pImpl->ui.pbtnConvert, _pImpl->ui.pbtnCancel);
    setMinimumSize(sizeHint());
    // Only now: a change of the window's flags takes the focus from what has it.
    _pImpl->ui.pchkCreateFullFigureMorph->setFocus();
}

GntConvertDialog::~GntConvertDialog() = default;

std::vector<std::string> GntConvertDialog::getMorphNames() const
{
    const Ui_ConvertFigureDialog& ui = _pImpl->ui;
    return {ToStd(ui.pledFullFigureMorphName->text()), ToStd(ui.pledHeadMorphName->text()),
            ToStd(ui.pledBodyMorphName->text())};
}

std::vector<std::string> GntConvertDialog::getMorphPaths() const
{
    std::vector<std::string> paths;
    for (const Impl::MorphPathControl& control : _pImpl->morphPaths)
        paths.push_back(control.getPath());
    return paths;
}

int GntConvertDialog::getJobs() const
{
    return kst::FlagAppSetting<GntJobFlag>(_pImpl->settings, "last_job_flags", GntDefaultJobs())
        .get()
        .toInt();
}

GntResolution GntConvertDialog::getBaseOrHighResolution(int& subd) const
{
    const GntResolution resolution = _pImpl->resolutionGroup.getValue();
    subd = resolution == GntResolution::Subd ? _pImpl->subdLevel : 0;
    return resolution;
}

bool GntConvertDialog::getDebugSteps() const
{
    return false;
}

QSize GntConvertDialog::sizeHint() const
{
    const int width = DialogBase::sizeHint().width();
    return QSize(width, layout()->totalHeightForWidth(width));
}

void GntConvertDialog::accept()
{
    _pImpl->commit();
    DialogBase::accept();
}

void GntConvertDialog::reject()
{
    _pImpl->restoreDials();
    DialogBase::reject();
}

GntConvertDialog::Impl::Impl(GntConvertDialog& owner, GntParams& runParams, DzAppSettings& appSettings)
    : dialog(owner), params(runParams), settings(appSettings),
      autoAdjust(appSettings, "auto-adjust-proportional-height", true),
      lastJobFlags(appSettings, "last_job_flags", GntDefaultJobs()), jobFlagsController(lastJobFlags)
{
    ui.setupUi(&owner);
    initBases();
    initJobs();
    initResolutions();
    setUpButtons();
    orderTabs();
    enableConvert();
}

GntConvertDialog::Impl::~Impl() = default;

void GntConvertDialog::Impl::showIntro(std::size_t activeMorphCount)
{
    const std::string morphs = kst::str::Pluralize(activeMorphCount, "one active morph", "%d active morphs");
    ui.plblIntro->setText(ToQ(fmt::format(introText, morphs, kst::str::QuoteHtml(params.figSource.getLabel()),
                                          kst::str::QuoteHtml(params.figTarget.getLabel()))));
}

void GntConvertDialog::Impl::showNames(std::string_view defaultMorphName)
{
    const std::vector<std::string> names = GntProposedNames(defaultMorphName);
    ui.pledFullFigureMorphName->setText(ToQ(names[GntFull]));
    ui.pledHeadMorphName->setText(ToQ(names[GntHead]));
    ui.pledBodyMorphName->setText(ToQ(names[GntBody]));
    // Long names show from their beginning.
    for (QLineEdit* const pEdit : {ui.pledFullFigureMorphName, ui.pledHeadMorphName, ui.pledBodyMorphName})
        pEdit->setCursorPosition(0);
}

void GntConvertDialog::Impl::commit()
{
    pTimer.reset();
    jobFlagsController.acceptValue();
    for (const auto& pDial : dials)
        pDial->acceptValue();
    for (MorphPathControl& control : morphPaths)
        control.acceptValue();
}

void GntConvertDialog::Impl::initResolutions()
{
    const GntResolution initial = readSourceResolution();
    resolutionGroup.init(
        {{GntResolution::Base, ui.pRadioResolutionBase}, {GntResolution::Subd, ui.pRadioResolutionSubd}},
        initial, std::function<void(const GntResolution&)>(), resolutionHelp);
}

GntResolution GntConvertDialog::Impl::readSourceResolution()
{
    if (!kst::daz::IsHdMorphPluginPresent()) {
        kst::gui::ShowHideGroupBox(*ui.pgrpResolution, false);
        return GntResolution::Base;
    }
    const kst::daz::NodeResolution resolution = kst::daz::GetNodeResolution(params.figSource);
    if (!kst::daz::GetSubdivisionLevel(params.figSource, &subdLevel)) {
        kst::gui::ShowHideGroupBox(*ui.pgrpResolution, false);
        return GntResolution::Base;
    }
    ui.pRadioResolutionSubd->setText(ToQ(fmt::format("High resolution (subd {})", subdLevel)));
    return resolution == kst::daz::NodeResolution::HighResolution ? GntResolution::Subd : GntResolution::Base;
}

void GntConvertDialog::Impl::setUpButtons()
{
    for (QPushButton* const pButton : {ui.pbtnConvert, ui.pbtnCancel})
        kst::gui::GiveRoomForText(*pButton);
    toolButtons.addToolButton(
        *ui.phorzBottomButtons, ":/bootstrap/24/question-square.png",
        [] { kst::daz::OpenPluginManual("Gantrel for Genesis 9"); }, "Help",
        "Opens the tool's PDF manual in your system's default PDF viewer.", 0);
}

void GntConvertDialog::Impl::orderTabs()
{
    QWidget* last = ui.pbtnCancel;
    const auto append = [&last](QWidget* widget) {
        QWidget::setTabOrder(last, widget);
        last = widget;
    };
    for (const MorphPathControl& control : morphPaths)
        append(&control.getButton());
    append(ui.phorzBottomButtons->itemAt(0)->widget());
}
