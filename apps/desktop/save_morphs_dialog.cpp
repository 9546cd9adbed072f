// Saving new morphs, of any figure, at any time.
// SPDX-License-Identifier: MIT

#include "save_morphs_dialog.h"

#include "desktop_settings.h"
#include "openhost/plain_tip.h"

#include <dzapp.h>
#include <dzassetiofilter.h>
#include <dzassetiomgr.h>
#include <dzcontentmgr.h>
#include <dzfileiosettings.h>
#include <dzmorph.h>
#include <dznode.h>
#include <openhost/diagnostics.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace desktop {

namespace {

DzSettings& Nested(DzSettings& settings, const QString& key)
{
    DzSettings* const present = settings.getSettingsValue(key);
    return present ? *present : *settings.setSettingsValue(key);
}

/// What the host gave as its reason, or else its text for the error.
QString Reason(const openhost::DiagnosticsCollector& met, DzError error)
{
    QStringList reasons;
    for (const base::Diagnostic& one : met.all())
        if (one.severity == base::Severity::Error)
            reasons.append(QString::fromStdString(one.what));
    return reasons.isEmpty() ? getErrorMessage(error) : reasons.join(QLatin1Char('\n'));
}

/// The host's result.
DzError SaveWith(DzFileIOSettings& options)
{
    DzAssetIOMgr& manager = *dzApp->getAssetIOMgr();
    const int index = manager.findAssetFilterIndex(QStringLiteral("DzMorphSupportAssetFilter"));
    return manager.doSaveWithOptions(manager.getAssetFilter(index), &options, false, QString(), QString(),
                                     QString());
}

} // namespace

SaveMorphsDialog::SaveMorphsDialog(QWidget* parent)
    : QDialog(parent), _morphs(UnsavedMorphs()), _list(new QListWidget(this)), _folder(new QComboBox(this)),
      _compress(new QCheckBox(tr("C&ompress files"), this))
{
    setObjectName(QStringLiteral("SaveMorphsDialog"));
    setWindowTitle(tr("Save Morphs"));
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    auto* const text =
        new QLabel(tr("These morphs are in no file of their own. Once they are saved, every figure "
                      "of the same kind that is loaded from then on has them."));
    text->setWordWrap(true);
    addMorphs();
    auto* const form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    addPlace(*form);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Save | QDialogButtonBox::Cancel);
    _save = buttons->button(QDialogButtonBox::Save);
    connect(buttons, SIGNAL(accepted()), SLOT(accept()));
    connect(buttons, SIGNAL(rejected()), SLOT(reject()));

    auto* const column = new QVBoxLayout(this);
    column->addWidget(text);
    column->addWidget(_list, 1);
    column->addLayout(form);
    column->addWidget(buttons);
    connect(_list, SIGNAL(itemChanged(QListWidgetItem*)), SLOT(updateButtons()));
    updateButtons();
}

void SaveMorphsDialog::addMorphs()
{
    _list->setObjectName(QStringLiteral("Morphs"));
    const bool isOneFigure = std::all_of(_morphs.begin(), _morphs.end(), [this](const UnsavedMorph& one) {
        return one.figure == _morphs.front().figure;
    });
    for (const UnsavedMorph& one : _morphs) {
        const QString label = one.morph->getLabel();
        auto* const item = new QListWidgetItem(
            isOneFigure ? label : tr("%1 (%2)").arg(label, one.figure->getLabel()), _list);
        item->setToolTip(openhost::PlainTip(tr("A morph of %1").arg(one.figure->getLabel())));
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        item->setCheckState(Qt::Checked);
    }
    _list->setCurrentRow(0);
    _list->setMinimumHeight(4 * fontMetrics().lineSpacing());
}

void SaveMorphsDialog::addPlace(QFormLayout& form)
{
    const DzContentMgr& content = *dzApp->getContentMgr();
    for (int i = 0; i < content.getNumContentDirectories(); ++i)
        _folder->addItem(content.getContentDirectoryPath(i));
    _folder->setObjectName(QStringLiteral("ContentFolder"));
    _folder->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    _folder->setMinimumContentsLength(40);
    const MorphPlace last = RememberedMorphPlace();
    _folder->setCurrentIndex(std::max(0, _folder->findText(last.contentFolder)));
    form.addRow(tr("Content &library:"), _folder);
    _vendor = addLine(form, tr("&Vendor name:"), "Vendor",
                      last.vendor.isEmpty() ? dzApp->getCurrentAuthor().getName() : last.vendor);
    _product = addLine(form, tr("&Product name:"), "Product", last.product);
    form.addRow(QString(), _compress);
}

QLineEdit* SaveMorphsDialog::addLine(QFormLayout& form, const QString& label, const char* name,
                                     const QString& text)
{
    auto* const line = new QLineEdit(text);
    line->setObjectName(QLatin1String(name));
    line->setPlaceholderText(tr("Needed to save"));
    connect(line, SIGNAL(textChanged(QString)), SLOT(updateButtons()));
    form.addRow(label, line);
    return line;
}

QString SaveMorphsDialog::contentFolder() const
{
    return _folder->currentText();
}

std::vector<UnsavedMorph> SaveMorphsDialog::ticked() const
{
    std::vector<UnsavedMorph> all;
    for (std::size_t i = 0; i < _morphs.size(); ++i)
        if (_list->item(static_cast<int>(i))->checkState() == Qt::Checked)
            all.push_back(_morphs[i]);
    return all;
}

void SaveMorphsDialog::updateButtons()
{
    _save->setEnabled(!ticked().empty() && !contentFolder().isEmpty() &&
                      !_vendor->text().trimmed().isEmpty() && !_product->text().trimmed().isEmpty());
}

void SaveMorphsDialog::fillOptions(DzFileIOSettings& options) const
{
    options.setStringValue(QStringLiteral("BaseDataPath"), contentFolder());
    options.setStringValue(QStringLiteral("VendorName"), _vendor->text());
    options.setStringValue(QStringLiteral("ProductName"), _product->text());
    options.setBoolValue(QStringLiteral("CompressOutput"), _compress->isChecked());
    options.setBoolValue(QStringLiteral("RunSilent"), true);
    DzSettings& nodes = Nested(options, QStringLiteral("NodeNames"));
    for (const UnsavedMorph& one : ticked()) {
        DzSettings& names = Nested(nodes, one.figure->getName());
        names.setStringValue(QString::number(names.getNumValues()), one.morph->getName());
    }
}

void SaveMorphsDialog::accept()
{
    RememberMorphPlace({contentFolder(), _vendor->text(), _product->text()});
    DzFileIOSettings options;
    fillOptions(options);
    const openhost::DiagnosticsCollector met(dzApp->diagnostics());
    const DzError error = SaveWith(options);
    if (error == DZ_USER_CANCELLED_OPERATION)
        return;
    if (error != DZ_NO_ERROR) {
        QMessageBox::warning(this, windowTitle(),
                             tr("The morphs could not be saved: %1").arg(Reason(met, error)));
        return;
    }
    for (const UnsavedMorph& one : ticked())
        _saved.append(one.morph->getLabel());
    QDialog::accept();
}

} // namespace desktop
