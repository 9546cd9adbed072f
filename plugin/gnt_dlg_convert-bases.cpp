// The convert dialog's dials: the bases of the new morph, and the matching of the figures' heights.
// SPDX-License-Identifier: MIT

#include "gnt_dlg_convert-impl.h"

#include "ks_help.h"
#include "ks_property-setting.h"
#include "ks_string.h"

#include <QFontMetrics>
#include <QToolButton>
#include <QWidget>

#include <dzfigure.h>
#include <dzfloatproperty.h>
#include <dzfloatslider.h>

#include <fmt/format.h>

namespace {

using kst::str::HtmlEscape;
using kst::str::QuoteHtml;
using kst::str::ToQ;

const int matchDelay = 100; // milliseconds, so that the dialog is to be seen first
const int widestLabel = 30; // characters; longer ones are wrapped

// Users know the text about the check box with the blank that it lacks.
const char* const autoAdjustHelp =
    "If %% is turned on, Gantrelwill automatically adjust the target figure's height when you open this "
    "window, as if you had pressed the magic button above. This is the default behavior. Turn this off if "
    "you would like to control this manually.";

const char* const dialHelp =
    "\n<p>The dials in the <b>{}</b> group determine what base the new morph will be built against. The "
    "dials\nare shortcuts to property dials of the selected target G9 figure.</p>\n<p>If all dials are zero, "
    "the new morph will contain the full set of vertex deltas against the default G9 figure.</p>\n<p>If any "
    "dial is not zero (or any other morph is active in the selected target G9 figure),\nthose morphs will "
    "need to be active in addition to the new morph for a G9 figure to look like the source G8 "
    "figure:\n<ul>\n<li>with <b>{}</b>, the matching G8 clone morph (which is hidden under the ``Hidden'' "
    "category) will be needed;</li>\n<li>with <b>{}</b>, the ``Base feminine'' morph under "
    "``Actor/People/Feminine'' will be needed;</li>\n<li>with <b>{}</b>, the ``Base masculine'' morph under "
    "``Actor/People/Masculine'' will be needed.</li>\n</ul><p>Please see the user manual for details.</p>\n";

} // namespace

GntConvertDialog::Impl::Dials GntConvertDialog::Impl::listDials() const
{
    return {{{kst::str::ToStd(params.settingCloneShape->getProperty().getLabel()), params.settingCloneShape},
             {"Base feminine", params.settingBaseFeminine},
             {"Base masculine", params.settingBaseMasculine},
             {"Proportion height", params.settingProportionHeight}}};
}

std::string GntConvertDialog::Impl::makeDialHelp(const Dials& rows) const
{
    // The names go into the finished text: they may hold what the help formatter takes for its marks.
    return fmt::format(fmt::runtime(kst::daz::FormatHelp(dialHelp)),
                       kst::str::ToStd(ui.pgrpMorphBases->title()), QuoteHtml(rows[0].label),
                       QuoteHtml(rows[1].label), QuoteHtml(rows[2].label));
}

void GntConvertDialog::Impl::initBases()
{
    const Dials rows = listDials();
    const std::string help = makeDialHelp(rows);
    for (const Dial& row : rows)
        addDial(row, help);
    alignRows(addHeightButton());
    initAutoAdjust();
}

void GntConvertDialog::Impl::addDial(const Dial& dial, std::string_view help)
{
    const int rowIndex = static_cast<int>(dials.size());
    QLabel* const pLabel = new QLabel(ToQ(dial.label));
    pLabel->setTextFormat(Qt::PlainText);
    const int widest = widestLabel * pLabel->fontMetrics().averageCharWidth();
    if (pLabel->sizeHint().width() > widest) {
        pLabel->setWordWrap(true);
        pLabel->setFixedWidth(widest);
    }
    ui.pgridMorphBases->addWidget(pLabel, rowIndex, 0);
    QHBoxLayout& row = *new QHBoxLayout;
    ui.pgridMorphBases->addLayout(&row, rowIndex, 1);

    typedef kst::SliderControllerRoot Sliders;
    const auto pSetting = dial.pSetting;
    const std::string name = HtmlEscape(dial.label);
    const auto pController = std::make_shared<kst::FloatSliderController>(
        row, nullptr, *pSetting, name, Sliders::Flags(Sliders::EditableText) | Sliders::DisplayAsPercent,
        [this, pSetting](const float& value) {
            if (params.areFiguresInScene())
                pSetting->getProperty().setValue(value);
        });
    pController->getWidget().setToolTip(ToQ(help));
    dials.push_back(pController);
    toolButtons.addLeftDefaultRightToolButtons(row, name, pSetting, pController);
}

QHBoxLayout& GntConvertDialog::Impl::dialRow(int row) const
{
    return *static_cast<QHBoxLayout*>(ui.pgridMorphBases->itemAtPosition(row, 1)->layout());
}

QToolButton& GntConvertDialog::Impl::addHeightButton()
{
    pHeightDial = dials.back();
    return toolButtons.addToolButton(
        dialRow(dialCount - 1), ":/bootstrap/24/magic.png", [this] { matchHeight(); }, "Auto",
        "Calculates an optimal height value for the G9 target figure to match that of the source figure.");
}

void GntConvertDialog::Impl::alignRows(const QToolButton& lastButton)
{
    // A widget and no spacer: a layout sets a spacer closer than it sets the button.
    for (int row = 0; row + 1 < dialCount; ++row) {
        QWidget* const blank = new QWidget;
        blank->setFixedWidth(lastButton.sizeHint().width());
        dialRow(row).addWidget(blank);
    }
}

void GntConvertDialog::Impl::initAutoAdjust()
{
    pAutoAdjustController.reset(new kst::CheckBoxController(*ui.pchkAutoAdjustProportionalHeight, autoAdjust,
                                                            autoAdjustHelp,
                                                            [this](const bool& on) { setAutoAdjust(on); }));
    if (!autoAdjust.get())
        return;
    pTimer.reset(new kst::Timer);
    pTimer->launchSingle(matchDelay, [this] { matchHeight(); });
}

void GntConvertDialog::Impl::setAutoAdjust(bool on)
{
    pTimer.reset();
    autoAdjust.setAndNotify(on);
    if (on)
        matchHeight();
    else
        pHeightDial->setWidgetValue(params.settingProportionHeight->getInitialValue());
}

void GntConvertDialog::Impl::matchHeight()
{
    if (!params.areFiguresInScene())
        return;
    params.matchHeight();
    pHeightDial->setWidgetValue(params.settingProportionHeight->getProperty().getValue());
}

void GntConvertDialog::Impl::restoreDials()
{
    pTimer.reset();
    if (!params.areFiguresInScene())
        return;
    for (const Dial& dial : listDials())
        dial.pSetting->getProperty().setValue(dial.pSetting->getInitialValue());
}
