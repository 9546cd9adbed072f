// What the user wishes of the desktop application.
// SPDX-License-Identifier: MIT

#pragma once

#include <QDialog>

#include <dzauthor.h>

class QFormLayout;
class QLineEdit;

namespace desktop {

/// Changes nothing by itself.
class PreferencesDialog : public QDialog {
    Q_OBJECT

public:
    PreferencesDialog(QWidget* parent, const DzAuthor& author);

    DzAuthor author() const; ///< without blanks around its texts

private:
    QLineEdit* addLine(QFormLayout& form, const char* label, const char* name, const QString& text);

    QLineEdit* _name;
    QLineEdit* _email;
    QLineEdit* _url;
};

} // namespace desktop
