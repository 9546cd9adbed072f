// Showing and changing a dial's limits.
// SPDX-License-Identifier: MIT

#include "limits_dialog.h"

#include "dial_quantity.h"
#include "dzintproperty.h"
#include "dznumericproperty.h"
#include "slider_text.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>

namespace openhost {

namespace {

NumberStyle StyleOf(const DzNumericProperty& dial)
{
    return {qobject_cast<const DzIntProperty*>(&dial) != nullptr, dial.getDisplayAsPercent(),
            dial.getDoubleMax() - dial.getDoubleMin(), QuantityOf(dial)};
}

} // namespace

LimitsDialog::LimitsDialog(DzNumericProperty& dial, QWidget* parent)
    : QDialog(parent), _dial(dial), _least(new QLineEdit), _most(new QLineEdit),
      _isKept(new QCheckBox(tr("&Keep values within the limits"))), _refusal(new QLabel)
{
    setObjectName(QStringLiteral("LimitsDialog"));
    setWindowTitle(tr("Limits of %1").arg(dial.getLabel()));
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    _least->setText(FormatNumber(dial.getDoubleMin(), StyleOf(dial)));
    _most->setText(FormatNumber(dial.getDoubleMax(), StyleOf(dial)));
    _isKept->setChecked(dial.isClamped());
    _refusal->setWordWrap(true);
    _refusal->setTextFormat(Qt::PlainText);
    _refusal->hide();
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(buttons, SIGNAL(accepted()), SLOT(accept()));
    connect(buttons, SIGNAL(rejected()), SLOT(reject()));
    connect(&dial, SIGNAL(destroyed()), SLOT(reject()));
    auto* const form = new QFormLayout(this);
    form->addRow(tr("&From:"), _least);
    form->addRow(tr("&To:"), _most);
    form->addRow(_isKept);
    form->addRow(_refusal);
    form->addRow(buttons);
    _least->selectAll();
}

void LimitsDialog::accept()
{
    double least = 0.0, most = 0.0;
    QString refusal = ParseNumber(_least->text(), StyleOf(_dial), least);
    if (refusal.isEmpty())
        refusal = ParseNumber(_most->text(), StyleOf(_dial), most);
    if (refusal.isEmpty() && least >= most)
        refusal = tr("The first limit has to be below the second one.");
    _refusal->setText(refusal);
    _refusal->setVisible(!refusal.isEmpty());
    if (!refusal.isEmpty())
        return;
    // As they were, when nobody touched their rounded texts.
    const NumberStyle style = StyleOf(_dial);
    if (_least->text() == FormatNumber(_dial.getDoubleMin(), style))
        least = _dial.getDoubleMin();
    if (_most->text() == FormatNumber(_dial.getDoubleMax(), style))
        most = _dial.getDoubleMax();
    _dial.setDoubleMinMax(least, most);
    _dial.setIsClamped(_isKept->isChecked());
    QDialog::accept();
}

} // namespace openhost
