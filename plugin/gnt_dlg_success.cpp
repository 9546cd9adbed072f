// What is told after a conversion: the new morphs, their dials, and a way to save them.
// SPDX-License-Identifier: MIT

#include "plugin/gnt_dlg_success.h"

#include "plugin/gnt_dlg_success-box.h"
#include "plugin/gnt_dlg_success-place.h"
#include "shared/ks_app-setting.h"
#include "shared/ks_assert.h"
#include "shared/ks_critical-box.h"
#include "shared/ks_ctl_slider.h"
#include "shared/ks_daz-managers.h"
#include "shared/ks_exception.h"
#include "shared/ks_filtered-save.h"
#include "shared/ks_gui.h"
#include "shared/ks_gui_button.h"
#include "shared/ks_gui_check_radio.h"
#include "shared/ks_panes.h"
#include "shared/ks_product.h"
#include "shared/ks_property-setting.h"
#include "shared/ks_string.h"

#include "ui_gnt_dlg_success.h"

#include <algorithm>
#include <string>

#include <QApplication>
#include <QEvent>
#include <QFileInfo>
#include <QFocusEvent>
#include <QFontMetrics>
#include <QPointer>
#include <QPushButton>
#include <QShowEvent>

#include <dzapp.h>
#include <dzappsettings.h>
#include <dzcontentmgr.h>
#include <dzfigure.h>
#include <dzfloatproperty.h>
#include <dzfloatslider.h>

#include <fmt/format.h>

using kst::str::ToQ;
using kst::str::ToStd;

namespace {

const char* const dialogTitle = "Conversion complete";
const int handyColumns = 75; // average characters in the width of the window
const char* const windowPosKey = "winpos_dlg_success";

const char* const introTemplate =
    "<p>The source figure {} has been converted successfully.</p><p>The target figure <b>{}</b> now contains "
    "{}:</p><p>Time taken: {}</p>{}";
const char* const morphBoxHelp =
    "Check the box if you would like to save this morph as a support asset using "
    "the below settings.";
const char* const showButtonHelp = "Press %% to reveal the new morph dial in the ``Parameters'' pane.";
const char* const saveButtonHelp = "<p>%%: Saves the selected new morphs as support morph assets for the "
                                   "Genesis 9 figure.</p><p>The button is "
                                   "disabled if no morphs have been selected with the checkboxes above.</p>";

/// For rich text: what the user typed may read as markup.
std::string QuotedText(std::string_view text)
{
    return kst::str::Quote(kst::str::HtmlEscape(text));
}

/// Those that a user sees, without this one.
std::vector<const QWidget*> OtherDialogs(const GntSuccessDialog& dialog)
{
    std::vector<const QWidget*> others;
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (const QWidget* const window : windows)
        if (window != &dialog && qobject_cast<const GntSuccessDialog*>(window) && window->isVisible() &&
            !window->isMinimized())
            others.push_back(window);
    return others;
}

/// Whose change is under way between a morph and its dial.
enum UpdateMark : int { Idle = 0, FollowingProperty = 1, MovingDial = 2 };

/// Sets a mark for as long as it lives, also when an exception ends that.
class MarkWhile {
public:
    MarkWhile(UpdateMark& mark, UpdateMark value) : _mark(mark) { _mark = value; }
    ~MarkWhile() { _mark = Idle; }

private:
    Q_DISABLE_COPY(MarkWhile)
    UpdateMark& _mark;
};

/// A created morph with what its row of the list is made of.
struct MorphRow {
    DzFloatProperty* property; ///< null when the host has removed it
    std::shared_ptr<kst::FloatPropertySetting> setting;
    std::shared_ptr<kst::FloatSliderController> dial;
    QCheckBox* box = nullptr;
    QHBoxLayout* dialLayout = nullptr;
    QPushButton* showButton = nullptr;
    kst::CheckBox boxHandler;
    kst::ToolButtons dialButtons;
    kst::ButtonHandler showHandler;

    /// What can have the focus, in reading order.
    std::vector<QWidget*> controls() const;
    void disable();
};

std::vector<QWidget*> MorphRow::controls() const
{
    std::vector<QWidget*> all(1, box);
    for (int i = 0; i < dialLayout->count(); ++i)
        all.push_back(dialLayout->itemAt(i)->widget());
    all.push_back(showButton);
    return all;
}

void MorphRow::disable()
{
    property = nullptr;
    for (QWidget* const control : controls())
        control->setEnabled(false);
}

} // namespace

class GntSuccessDialog::Impl {
public:
    Impl(GntSuccessDialog& dialog, std::shared_ptr<GntParams> params,
         const std::vector<GntCreatedMorph>& created);

    void showIntro(std::string_view elapsed, std::string_view note);
    void addMorphList(GntSuccessDialog& dialog);
    void initSaving(GntSuccessDialog& dialog);
    void orderFocus();
    void watchLines(GntSuccessDialog& dialog);
    /// The return key saves from within the two lines, and closes elsewhere.
    void chooseDefaultButton(const QObject* widget, const QEvent& event);
    /// Makes the window, remembered or not, high enough for its present text.
    void growToFit(GntSuccessDialog& dialog);
    void enableDisableControls();

    /// The row of a float property, which the sender must be; null for one that is not listed.
    MorphRow* findSender(const QObject* sender) const;
    void followProperty(const QObject* sender);
    void onSaveMorphsButtonClicked(const std::shared_ptr<GntParams>& params, GntSuccessDialog& dialog);

    Ui_SuccessDialog ui;
    GntCascade cascade;

private:
    void addMorphRow(GntSuccessDialog& dialog, QGridLayout& grid, const GntCreatedMorph& morph);
    void addDial(MorphRow& row);
    void onDialMoved(MorphRow& row, float value);
    /// On its rows' dials, which are several when jobs shared a name, but for the one that the user moves.
    void showValue(const DzFloatProperty& property, const MorphRow* moved);
    void initContentLibraries();
    void throwIfNowhereToSave();
    /// False when the host says that the user cancelled.
    bool saveMorphs_X(GntParams& params);
    std::vector<QWidget*> saveControls() const;

    const std::shared_ptr<GntParams> _params;
    const std::vector<GntCreatedMorph> _created;
    const QPointer<DzFigure> _target; ///< tells when the figure is gone
    DzAppSettings _settings;
    kst::StringAppSetting _lastContentLibrary;
    kst::StringAppSetting _lastVendorName;
    kst::StringAppSetting _lastProductName;
    DzContentMgr& _contentManager;
    std::vector<std::unique_ptr<MorphRow>> _rows;
    std::vector<std::string> _names; ///< of all created morphs
    kst::ButtonHandler _saveHandler;
    QPushButton* _closeButton = nullptr;
    UpdateMark _updateMark = Idle;
};

GntSuccessDialog::Impl::Impl(GntSuccessDialog& dialog, std::shared_ptr<GntParams> params,
                             const std::vector<GntCreatedMorph>& created)
    : _params(std::move(params)), _created(created), _target(&_params->figTarget),
      _settings(QString::fromUtf8(kst::product::TITLE)),
      _lastContentLibrary(_settings, "save_last_content_library", std::string()),
      _lastVendorName(_settings, "save_last_vendor_name", std::string()),
      _lastProductName(_settings, "save_last_product_name", "Product"),
      _contentManager(kst::daz::GetContentMgr_X())
{
    ui.setupUi(&dialog);
}

void GntSuccessDialog::Impl::showIntro(std::string_view elapsed, std::string_view note)
{
    ui.plblIntro->setText(ToQ(
        fmt::format(introTemplate, QuotedText(ToStd(_params->figSource.getLabel())),
                    QuotedText(ToStd(_params->figTarget.getLabel())),
                    kst::str::Pluralize(_created.size(), "one new morph", "%d new morphs"), elapsed, note)));
    // Wrapped text has no width of its own; about sixty characters a line read well.
    ui.plblIntro->setMinimumWidth(60 * ui.plblIntro->fontMetrics().averageCharWidth());
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

    row.box = new GntNameBox(ToQ(morph.name), parent);
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
    _names.push_back(morph.name);
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

void GntSuccessDialog::Impl::initSaving(GntSuccessDialog& dialog)
{
    initContentLibraries();
    const std::string& vendor = _lastVendorName.get();
    ui.pledVendorName->setText(vendor.empty() ? dzApp->getCurrentAuthor().getName() : ToQ(vendor));
    ui.pledProductName->setText(ToQ(_lastProductName.get()));
    QPushButton& button = *ui.pbtnSaveMorphAssets;
    const QFontMetrics metrics = button.fontMetrics();
    button.setMinimumWidth(metrics.boundingRect(button.text()).width() + 4 * metrics.averageCharWidth());
    _saveHandler.connect(
        button, [this, &dialog] { onSaveMorphsButtonClicked(_params, dialog); }, saveButtonHelp);
}

void GntSuccessDialog::Impl::initContentLibraries()
{
    QComboBox& combo = *ui.pcboContentLibrary;
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

void GntSuccessDialog::Impl::orderFocus()
{
    std::vector<QWidget*> order;
    for (const std::unique_ptr<MorphRow>& row : _rows) {
        const std::vector<QWidget*> controls = row->controls();
        order.insert(order.end(), controls.begin(), controls.end());
    }
    const std::vector<QWidget*> saving = saveControls();
    order.insert(order.end(), saving.begin(), saving.end());
    for (std::size_t i = 1; i < order.size(); ++i)
        QWidget::setTabOrder(order[i - 1], order[i]);
    order.front()->setFocus();
}

void GntSuccessDialog::Impl::watchLines(GntSuccessDialog& dialog)
{
    const QLayout* const row = ui.pvertMain->itemAt(ui.pvertMain->count() - 1)->layout();
    _closeButton = qobject_cast<QPushButton*>(row->itemAt(row->count() - 1)->widget());
    assert(_closeButton);
    ui.pledVendorName->installEventFilter(&dialog);
    ui.pledProductName->installEventFilter(&dialog);
}

void GntSuccessDialog::Impl::chooseDefaultButton(const QObject* widget, const QEvent& event)
{
    if (widget != ui.pledVendorName && widget != ui.pledProductName)
        return;
    if (event.type() == QEvent::FocusIn) {
        ui.pbtnSaveMorphAssets->setDefault(true);
    } else if (event.type() == QEvent::FocusOut) {
        // Behind another window or a menu the line goes on to be the one that is worked in.
        const Qt::FocusReason reason = static_cast<const QFocusEvent&>(event).reason();
        if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason)
            _closeButton->setDefault(true);
    }
}

void GntSuccessDialog::Impl::growToFit(GntSuccessDialog& dialog)
{
    QLayout& layout = *ui.pvertMain;
    layout.activate();
    // Longer dials are no better ones, so a window that was not made wider stays handy.
    const int handyWidth = handyColumns * dialog.fontMetrics().averageCharWidth();
    const bool isRemembered = dialog.testAttribute(Qt::WA_Resized);
    const QSize liked = layout.totalSizeHint();
    const QSize wanted = isRemembered ? dialog.size() : QSize(std::min(liked.width(), handyWidth), 0);
    const int width = std::max(wanted.width(), layout.totalMinimumSize().width());
    dialog.resize(width, std::max(wanted.height(), layout.totalHeightForWidth(width)));
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

MorphRow* GntSuccessDialog::Impl::findSender(const QObject* sender) const
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

void GntSuccessDialog::Impl::onSaveMorphsButtonClicked(const std::shared_ptr<GntParams>& params,
                                                       GntSuccessDialog& dialog)
{
    try {
        _lastContentLibrary.setAndNotify(ToStd(ui.pcboContentLibrary->currentText()));
        _lastVendorName.setAndNotify(ToStd(ui.pledVendorName->text()));
        _lastProductName.setAndNotify(ToStd(ui.pledProductName->text()));
        if (!saveMorphs_X(*params))
            return;
        const std::string count =
            kst::str::Pluralize(_names.size(), "selected morph has", "%d selected morphs have");
        kst::daz::InfoBox(
            "Morph support assets saved",
            fmt::format("The {} been saved to {}", count, kst::str::HtmlEscape(_lastContentLibrary.get())),
            &dialog);
    } catch (const std::exception& error) {
        dialog.criticalBox("Failed to save morph support assets", error.what());
    }
}

void GntSuccessDialog::Impl::throwIfNowhereToSave()
{
    const QString library = ToQ(_lastContentLibrary.get());
    if (library.isEmpty())
        throw kst::Exception("there is no content library to save into");
    // The host would make the folder anew, and what is on a disk that is not there now would lie beside it.
    if (!QFileInfo(library).isDir())
        throw kst::Exception("the content library {} does not exist", QuotedText(_lastContentLibrary.get()));
    if (ToQ(_lastVendorName.get()).trimmed().isEmpty())
        throw kst::Exception("please enter a vendor name; it names a folder in the content library");
    if (ToQ(_lastProductName.get()).trimmed().isEmpty())
        throw kst::Exception("please enter a product name; it names a folder in the content library");
}

bool GntSuccessDialog::Impl::saveMorphs_X(GntParams& params)
{
    if (!_target)
        throw kst::Exception("the target figure is no longer in the scene");
    throwIfNowhereToSave();
    return kst::FilteredSave::SaveMorphSupportAsset_X(params.figTarget, _lastContentLibrary.get(),
                                                      _lastVendorName.get(), _lastProductName.get(), _names,
                                                      ui.pchkCompressFiles->isChecked(), false);
}

GntSuccessDialog::GntSuccessDialog(QWidget* parent, std::shared_ptr<GntParams> params,
                                   const std::vector<GntCreatedMorph>& created, std::string_view elapsed,
                                   std::string_view note)
    : DialogBase(parent), _pImpl(new Impl(*this, std::move(params), created))
{
    setAttribute(Qt::WA_DeleteOnClose);
    _pImpl->showIntro(elapsed, note);
    _pImpl->addMorphList(*this);
    _pImpl->initSaving(*this);
    createAndConnectStandardButtons(*_pImpl->ui.pvertMain, "Close", "");
    _pImpl->watchLines(*this);
    _pImpl->enableDisableControls();
    _pImpl->orderFocus();
    initCommon(dialogTitle, QString::fromUtf8(kst::product::TITLE), QLatin1String(windowPosKey));
    _pImpl->growToFit(*this);
    show();
}

GntSuccessDialog::~GntSuccessDialog() = default;

void GntSuccessDialog::accept()
{
    _pImpl->cascade.goBack(*this);
    DialogBase::accept();
}

void GntSuccessDialog::reject()
{
    _pImpl->cascade.goBack(*this);
    DialogBase::reject();
}

void GntSuccessDialog::done(int result)
{
    DialogBase::done(result);
}

bool GntSuccessDialog::eventFilter(QObject* watched, QEvent* event)
{
    _pImpl->chooseDefaultButton(watched, *event);
    return DialogBase::eventFilter(watched, event);
}

void GntSuccessDialog::showEvent(QShowEvent* event)
{
    DialogBase::showEvent(event); // gives the window its place
    if (!event->spontaneous())
        _pImpl->cascade.makeWay(*this, OtherDialogs(*this));
}

void GntSuccessDialog::slotPropertyValueChanged()
{
    _pImpl->followProperty(sender());
}

void GntSuccessDialog::slotPropertyRemoved()
{
    if (MorphRow* const row = _pImpl->findSender(sender()))
        row->disable();
}
