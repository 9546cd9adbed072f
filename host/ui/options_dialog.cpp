// A dialog for the options of a file.
// SPDX-License-Identifier: MIT

#include "options_dialog.h"

#include "dzfileiosettings.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QMap>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include <cmath>

namespace openhost {

namespace {

constexpr int decimals = 4; ///< of a number's editor
constexpr int columnCount = 2;

QWidget* MakeEditor(const OptionRow& row, const DzFileIOSettings& options)
{
    const QString key = QLatin1String(row.key);
    switch (row.kind) {
    case OptionRow::Choice: {
        auto* const box = new QComboBox;
        box->addItems(row.choices);
        box->setCurrentText(options.getStringValue(key, row.choices.first()));
        return box;
    }
    case OptionRow::Number: {
        auto* const box = new QDoubleSpinBox;
        box->setDecimals(decimals);
        box->setRange(row.min, row.max);
        box->setValue(options.getFloatValue(key, row.min));
        return box;
    }
    case OptionRow::Whole: {
        auto* const box = new QSpinBox;
        box->setRange(static_cast<int>(row.min), static_cast<int>(row.max));
        box->setValue(options.getIntValue(key));
        return box;
    }
    case OptionRow::Flag:
        break;
    }
    auto* const box = new QCheckBox(QLatin1String(row.label));
    box->setChecked(options.getBoolValue(key));
    return box;
}

/// The editor shows fewer digits than the value may have: left as it was, it shall not round the value.
void StoreNumber(const QString& key, double shown, DzFileIOSettings& options)
{
    const double halfDigit = 0.5 * std::pow(10.0, -decimals);
    if (options.hasKey(key) < 0 || std::abs(options.getFloatValue(key) - shown) > halfDigit)
        options.setFloatValue(key, shown);
}

void StoreEditor(const OptionRow& row, const QWidget& editor, DzFileIOSettings& options)
{
    const QString key = QLatin1String(row.key);
    if (const auto* const choice = qobject_cast<const QComboBox*>(&editor))
        options.setStringValue(key, choice->currentText());
    else if (const auto* const number = qobject_cast<const QDoubleSpinBox*>(&editor))
        StoreNumber(key, number->value(), options);
    else if (const auto* const whole = qobject_cast<const QSpinBox*>(&editor))
        options.setIntValue(key, whole->value());
    else if (const auto* const flag = qobject_cast<const QCheckBox*>(&editor))
        options.setBoolValue(key, flag->isChecked());
}

} // namespace

OptionsDialog::OptionsDialog(const QString& title, const std::vector<OptionRow>& rows,
                             const DzFileIOSettings& options, QWidget* parent)
    : QDialog(parent), _rows(rows)
{
    setWindowTitle(title);
    auto* const layout = new QVBoxLayout(this);
    auto* const columns = new QHBoxLayout;
    layout->addLayout(columns);
    QVBoxLayout* column[columnCount];
    for (QVBoxLayout*& one : column)
        columns->addLayout(one = new QVBoxLayout);

    QMap<QString, QFormLayout*> forms;
    int filled[columnCount] = {0, 0};
    for (const OptionRow& row : rows) {
        const QString group = QLatin1String(row.group);
        if (!forms.contains(group)) {
            auto* const box = new QGroupBox(group);
            forms.insert(group, new QFormLayout(box));
            column[filled[0] <= filled[1] ? 0 : 1]->addWidget(box);
        }
        _editors.push_back(MakeEditor(row, options));
        _editors.back()->setObjectName(QLatin1String(row.key));
        QFormLayout* const form = forms.value(group);
        if (row.kind == OptionRow::Flag)
            form->addRow(_editors.back());
        else
            form->addRow(QLatin1String(row.label) + QLatin1Char(':'), _editors.back());
        ++filled[columns->itemAt(0)->layout()->indexOf(form->parentWidget()) >= 0 ? 0 : 1];
    }
    for (QVBoxLayout* const one : column)
        one->addStretch();

    auto* const buttons = new QDialogButtonBox(this);
    buttons->addButton(tr("Accept"), QDialogButtonBox::AcceptRole)->setDefault(true);
    buttons->addButton(tr("Cancel"), QDialogButtonBox::RejectRole);
    connect(buttons, SIGNAL(accepted()), SLOT(accept()));
    connect(buttons, SIGNAL(rejected()), SLOT(reject()));
    layout->addWidget(buttons);
}

void OptionsDialog::store(DzFileIOSettings& options) const
{
    for (std::size_t i = 0; i < _rows.size(); ++i)
        StoreEditor(_rows[i], *_editors[i], options);
}

} // namespace openhost
