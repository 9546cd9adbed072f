// The question before a D-Former preset is applied.
// SPDX-License-Identifier: MIT

#pragma once

#include "openhost/attendant.h"

#include <QDialog>

class QCheckBox;
class QLineEdit;

/// Accepting needs a name.
class DzDFormPresetLoadOptionsDlg : public QDialog {
    Q_OBJECT

public:
    DzDFormPresetLoadOptionsDlg(QWidget* parent, const openhost::DFormLoadOptions& options);
    ~DzDFormPresetLoadOptionsDlg() override;

    openhost::DFormLoadOptions options() const;

private:
    QLineEdit* _name;
    QCheckBox* _replace;
};
