// The success dialog's morphs: a row for each, with its dial and the way to it in the host.
// SPDX-License-Identifier: MIT

#include "gnt_dlg_success-impl.h"

#include "gnt_dlg_success-box.h"
#include "ks_assert.h"
#include "ks_gui.h"
#include "ks_panes.h"
#include "ks_string.h"

#include <algorithm>

#include <QPushButton>

namespace {

const char* const morphBoxHelp =
    "Check the box if you would like to save this morph as a support asset using "
    "the below settings.";
const char* const showButtonHelp = "Press %% to reveal the new morph dial in the ``Parameters'' pane.";

} // namespace

/// Sets a mark for as long as it lives, also when an exception ends that.
class GntSuccessDialog::Impl::MarkWhile {
public:
    MarkWhile(UpdateMark& mark, UpdateMark value) : _mark(mark) { _mark = value; }
    ~MarkWhile() { _mark = Idle; }

private:
    Q_DISABLE_COPY(MarkWhile)
    UpdateMark& _mark;
};

std::vector<QWidget*> GntSuccessDialog::Impl::MorphRow::controls() const
{
    std::vector<QWidget*> all(1, box);
    for (int i = 0; i < dialLayout->count(); ++i)
        all.push_back(dialLayout->itemAt(i)->widget());
    all.push_back(showButton);
    return all;
}

void GntSuccessDialog::Impl::MorphRow::disable()
{
    property = nullptr;
    for (QWidget* const control : controls())
        control->setEnabled(false);
}

void GntSuccessDialog::Impl::addMorphList(GntSuccessDialog& dialog)
{
    QGroupBox* const group = new QGroupBox(QLatin1String("Newly created morphs"), &dialog);
    QGridLayout* const grid = new QGridLayout(group);
    grid->setColumnStretch(1, 1);
    for (const GntCreatedMorph& morph : _created)
        addMorphRow(dialog, *grid, morph);
    ui.pvertMain->insertWidget(1, group);
}

void GntSuccessDialog::Impl::addMorphRow(GntSuccessDialog& dialog, QGridLayout& grid,
                                         const GntCreatedMorph& morph)
{
    QWidget* const parent = grid.parentWidget();
    const int gridRow = static_cast<int>(_rows.size());
    _rows.emplace_back(new MorphRow);
    MorphRow& row = *_rows.back();
    row.property = morph.property;

    row.box = new GntNameBox(kst::str::ToQ(morph.name), parent);
    row.boxHandler.connect(
        *row.box, false, [this](bool) { enableDisableControls(); }, morphBoxHelp);
    grid.addWidget(row.box, gridRow, 0);

    row.dialLayout = new QHBoxLayout;
    grid.addLayout(row.dialLayout, gridRow, 1);
    addDial(row);

    row.showButton = kst::gui::CreateDialogButton("Show in Parameters", parent);
    row.showHandler.connect(
        *row.showButton, [&row] { kst::daz::ParametersPane::JumpToProperty_X(*row.property); },
        showButtonHelp);
    grid.addWidget(row.showButton, gridRow, 2);

    kst::gui::ConnectSignal(*row.property, SIGNAL(currentValueChanged()), &dialog,
                            SLOT(slotPropertyValueChanged()));
    kst::gui::ConnectSignal(*row.property, SIGNAL(removed()), &dialog, SLOT(slotPropertyRemoved()));
}

void GntSuccessDialog::Impl::addDial(MorphRow& row)
{
    const std::string label = kst::str::HtmlEscape(row.property->getLabel());
    const kst::SliderControllerRoot::Flags flags =
        kst::SliderControllerRoot::Flags(kst::SliderControllerRoot::EditableText) |
        kst::SliderControllerRoot::DisplayAsPercent;
    row.setting = std::make_shared<kst::FloatPropertySetting>(*row.property);
    row.dial = std::make_shared<kst::FloatSliderController>(
        *row.dialLayout, nullptr, *row.setting, label, flags,
        [this, &row](const float& value) { onDialMoved(row, value); });
    row.dialButtons.addLeftDefaultRightToolButtons(*row.dialLayout, label, row.setting, row.dial);
}

GntSuccessDialog::Impl::MorphRow* GntSuccessDialog::Impl::findSender(const QObject* sender) const
{
    const DzFloatProperty* const property = qobject_cast<const DzFloatProperty*>(sender);
    assert(property);
    const auto found =
        std::find_if(_rows.begin(), _rows.end(),
                     [property](const std::unique_ptr<MorphRow>& row) { return row->property == property; });
    return found == _rows.end() ? nullptr : found->get();
}

void GntSuccessDialog::Impl::onDialMoved(MorphRow& row, float value)
{
    if (_updateMark != Idle || !row.property)
        return;
    const MarkWhile mark(_updateMark, MovingDial);
    row.property->setValue(value);
    if (row.property) // what else follows the dial may have removed it
        showValue(*row.property, &row);
}

void GntSuccessDialog::Impl::followProperty(const QObject* sender)
{
    if (_updateMark != Idle)
        return;
    MorphRow* const row = findSender(sender);
    if (!row)
        return;
    const MarkWhile mark(_updateMark, FollowingProperty);
    showValue(*row->property, nullptr);
}

void GntSuccessDialog::Impl::showValue(const DzFloatProperty& property, const MorphRow* moved)
{
    for (const std::unique_ptr<MorphRow>& row : _rows)
        if (row->property == &property && row.get() != moved)
            row->dial->setWidgetValue(property.getValue());
}
