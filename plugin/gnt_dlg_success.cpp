// What is told after a conversion: the new morphs, their dials, and a way to save them.
// SPDX-License-Identifier: MIT

#include "gnt_dlg_success-impl.h"
#include "gnt_dlg_success-place.h"

#include "ks_assert.h"
#include "ks_daz-managers.h"
#include "ks_product.h"
#include "ks_string.h"

#include <algorithm>
#include <string>

#include <QApplication>
#include <QEvent>
#include <QFocusEvent>
#include <QFontMetrics>
#include <QPushButton>
#include <QShowEvent>

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

} // namespace

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
        fmt::format(introTemplate, kst::str::QuoteHtml(_params->figSource.getLabel()),
                    kst::str::QuoteHtml(_params->figTarget.getLabel()),
                    kst::str::Pluralize(_created.size(), "one new morph", "%d new morphs"), elapsed, note)));
    // Wrapped text has no width of its own; about sixty characters a line read well.
    ui.plblIntro->setMinimumWidth(60 * ui.plblIntro->fontMetrics().averageCharWidth());
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

GntSuccessDialog* GntSuccessDialog::Create(QWidget* parent, std::shared_ptr<GntParams> params,
                                           const std::vector<GntCreatedMorph>& created,
                                           std::string_view elapsed, std::string_view note)
{
    return new GntSuccessDialog(parent, std::move(params), created, elapsed, note);
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
        GntMakeWay(*this, OtherDialogs(*this));
}

void GntSuccessDialog::slotPropertyValueChanged()
{
    _pImpl->followProperty(sender());
}

void GntSuccessDialog::slotNameChanged()
{
    _pImpl->markMissingNames();
}

void GntSuccessDialog::slotPropertyRemoved()
{
    if (Impl::MorphRow* const row = _pImpl->findSender(sender()))
        row->disable();
}
