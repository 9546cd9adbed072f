// The base of every dialog.
// SPDX-License-Identifier: MIT

#include "ks_dlg_base.h"

#include "ks_critical-box.h"
#include "ks_gui.h"
#include "ks_gui_button.h"
#include "ks_help.h"
#include "ks_string.h"

#include <QDialogButtonBox>
#include <QPushButton>
#include <QVBoxLayout>

#include <dzapp.h>
#include <dzappsettings.h>
#include <dzstyle.h>
#include <dzstyledefs.h>

namespace kst {

namespace {

const int standardMargin = 10; // pixels

} // namespace

DialogBase::DialogBase(QWidget* parent) : QDialog((gui::AssertGuiThread(), parent)) {}
DialogBase::~DialogBase() = default;

void DialogBase::accept()
{
    saveWindowPos(nullptr);
    QDialog::accept();
}

void DialogBase::reject()
{
    saveWindowPos(nullptr);
    QDialog::reject();
}

void DialogBase::criticalBox(std::string_view heading, std::string_view message)
{
    daz::CriticalBox(heading, message, this, true);
}

void DialogBase::initCommon(const char* title, const QString& group, const QString& key)
{
    setOurWindowTitle(title, true);
    setLayoutMargins(standardMargin);
    if (group.isEmpty())
        return;
    setWindowPosSettingsKey(group, key);
    restoreWindowPos(nullptr);
}

void DialogBase::setOurWindowTitle(const char* title, bool withoutHelpButton)
{
    setWindowTitle(str::ToQ(daz::MakeWindowTitle(title)));
    const Qt::WindowType hint =
        withoutHelpButton ? Qt::WindowContextHelpButtonHint : Qt::WindowCloseButtonHint;
    setWindowFlags(windowFlags() & ~hint);
}

void DialogBase::setWindowPosSettingsKey(const QString& group, const QString& key)
{
    _settingsGroup = group;
    _settingsKey = key;
}

void DialogBase::saveWindowPos(DzAppSettings* pSettings)
{
    if (_settingsKey.isEmpty())
        return;
    if (!pSettings) {
        DzAppSettings settings(_settingsGroup);
        saveWindowPos(&settings);
        return;
    }
    pSettings->setStringValue(_settingsKey, QString::fromLatin1(saveGeometry().toBase64()));
}

void DialogBase::restoreWindowPos(DzAppSettings* pSettings)
{
    if (_settingsKey.isEmpty())
        return;
    if (!pSettings) {
        DzAppSettings settings(_settingsGroup);
        restoreWindowPos(&settings);
        return;
    }
    const QString geometry = pSettings->getStringValue(_settingsKey, QString());
    if (!geometry.isEmpty())
        restoreGeometry(QByteArray::fromBase64(geometry.toLatin1()));
}

void DialogBase::connectOkAndCancelButtons(QPushButton* pOk, QPushButton* pCancel)
{
    gui::ConnectButtonClicked(*pOk, this, SLOT(accept()));
    if (pCancel)
        gui::ConnectButtonClicked(*pCancel, this, SLOT(reject()));
}

void DialogBase::connectButtonBox(QDialogButtonBox* pBox)
{
    gui::ConnectSignal(*pBox, SIGNAL(accepted()), this, SLOT(accept()));
    gui::ConnectSignal(*pBox, SIGNAL(rejected()), this, SLOT(reject()));
}

void DialogBase::createAndConnectStandardButtons(QVBoxLayout& layout, std::string_view okText,
                                                 std::string_view cancelText)
{
    QHBoxLayout* const pRow = new QHBoxLayout;
    layout.addLayout(pRow);
    pRow->addStretch();
    QPushButton* pCancel = nullptr;
    if (!cancelText.empty()) {
        pCancel = gui::CreateDialogButton(cancelText, this);
        pRow->addWidget(pCancel);
    }
    QPushButton* const pOk = gui::CreateDialogButton(okText, this);
    pOk->setDefault(true);
    pRow->addWidget(pOk);
    connectOkAndCancelButtons(pOk, pCancel);
}

void DialogBase::shrinkToFit()
{
    if (!layout())
        return;
    layout()->activate();
    resize(layout()->sizeHint());
}

void DialogBase::dazzifyLayout()
{
    const DzStyle* const style = dzApp->getStyle();
    const int margin = style ? style->pixelMetric(DZ_PM_GeneralMargin) : 0;
    setLayoutMargins(margin > 0 ? margin : standardMargin);
}

void DialogBase::setLayoutMargins(int margin)
{
    if (!layout())
        return;
    layout()->setContentsMargins(margin, margin, margin, margin);
    layout()->setSpacing(margin);
}

} // namespace kst
