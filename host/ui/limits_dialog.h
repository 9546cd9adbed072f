// Showing and changing a dial's limits.
// SPDX-License-Identifier: MIT

#pragma once

#include <QDialog>

class DzNumericProperty;
class QCheckBox;
class QLabel;
class QLineEdit;

namespace openhost {

/// Takes numbers as the dial shows them. Changes the dial when it is accepted; what is no number is told.
class LimitsDialog : public QDialog {
    Q_OBJECT
public:
    /// @param dial  borrowed; the dialog ends with it
    LimitsDialog(DzNumericProperty& dial, QWidget* parent);

public slots:
    void accept() override;

private:
    DzNumericProperty& _dial;
    QLineEdit* _least;
    QLineEdit* _most;
    QCheckBox* _isKept;
    QLabel* _refusal;
};

} // namespace openhost
