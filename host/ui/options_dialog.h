// A dialog for the options of a file.
// SPDX-License-Identifier: MIT

#pragma once

#include "openhost/attendant.h"

#include <QDialog>

class QWidget;

namespace openhost {

/// One widget for each row of the table, named after its key, in group boxes.
class OptionsDialog : public QDialog {
    Q_OBJECT
public:
    /// @param rows  borrowed for the dialog's life
    OptionsDialog(const QString& title, const std::vector<OptionRow>& rows, const DzFileIOSettings& options,
                  QWidget* parent);

    /// Writes what the widgets show into the option set.
    void store(DzFileIOSettings& options) const;

private:
    const std::vector<OptionRow>& _rows;
    std::vector<QWidget*> _editors; ///< one for each row
};

} // namespace openhost
