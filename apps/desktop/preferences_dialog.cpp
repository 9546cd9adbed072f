// What the user wishes of the desktop application.
// SPDX-License-Identifier: MIT

#include "preferences_dialog.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace desktop {

PreferencesDialog::PreferencesDialog(QWidget* parent, const DzAuthor& author) : QDialog(parent)
{
    setObjectName(QStringLiteral("PreferencesDialog"));
    setWindowTitle(tr("Preferences"));
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    auto* const group = new QGroupBox(tr("Author"), this);
    auto* const form = new QFormLayout(group);
    form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    auto* const text = new QLabel(tr("Files that you save name their author. New morphs are saved under this "
                                     "name too, unless you give another vendor there."));
    text->setWordWrap(true);
    form->addRow(text);
    _name = addLine(*form, "&Name:", "AuthorName", author.getName());
    _email = addLine(*form, "&E-mail:", "AuthorEmail", author.getEmail());
    _url = addLine(*form, "&Web site:", "AuthorUrl", author.getURL());

    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(buttons, SIGNAL(accepted()), SLOT(accept()));
    connect(buttons, SIGNAL(rejected()), SLOT(reject()));
    auto* const column = new QVBoxLayout(this);
    column->addWidget(group);
    column->addStretch();
    column->addWidget(buttons);
    _name->setFocus();
}

QLineEdit* PreferencesDialog::addLine(QFormLayout& form, const char* label, const char* name,
                                      const QString& text)
{
    auto* const line = new QLineEdit(text);
    line->setObjectName(QLatin1String(name));
    line->setMinimumWidth(36 * fontMetrics().averageCharWidth());
    form.addRow(tr(label), line);
    return line;
}

DzAuthor PreferencesDialog::author() const
{
    return DzAuthor(_name->text().trimmed(), _email->text().trimmed(), _url->text().trimmed());
}

} // namespace desktop
