// The question before a D-Former preset is applied.
// SPDX-License-Identifier: MIT

#include "dform_load_options.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>

DzDFormPresetLoadOptionsDlg::DzDFormPresetLoadOptionsDlg(QWidget* parent,
                                                         const openhost::DFormLoadOptions& options)
    : QDialog(parent), _name(new QLineEdit(options.name)),
      _replace(new QCheckBox(tr("&Replace D-Formers of this name")))
{
    setObjectName(QStringLiteral("DzDFormPresetLoadOptionsDlg"));
    setWindowTitle(tr("D-Former Load Options"));
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    setModal(true);
    _name->setObjectName(QStringLiteral("nameEdit"));
    _name->setMinimumWidth(20 * fontMetrics().averageCharWidth());
    _replace->setObjectName(QStringLiteral("replaceCheckBox"));
    _replace->setChecked(options.replaceSameName);
    _replace->setToolTip(tr("Removes those that deform the figure already; otherwise the new one is added."));

    auto* const buttons = new QDialogButtonBox;
    QPushButton* const accept = buttons->addButton(tr("Accept"), QDialogButtonBox::AcceptRole);
    buttons->addButton(tr("Cancel"), QDialogButtonBox::RejectRole);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(_name, &QLineEdit::textChanged, accept,
            [accept](const QString& text) { accept->setEnabled(!text.trimmed().isEmpty()); });
    accept->setDefault(true);

    auto* const form = new QFormLayout(this);
    form->addRow(tr("&Name:"), _name);
    form->addRow(_replace);
    form->addRow(buttons);
}

DzDFormPresetLoadOptionsDlg::~DzDFormPresetLoadOptionsDlg() = default;

openhost::DFormLoadOptions DzDFormPresetLoadOptionsDlg::options() const
{
    openhost::DFormLoadOptions options;
    options.name = _name->text().trimmed();
    options.replaceSameName = _replace->isChecked();
    return options;
}
