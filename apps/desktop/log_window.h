// What the host had to say since the program began.
// SPDX-License-Identifier: MIT

#pragma once

#include <QDialog>

class QPushButton;
class QTableWidget;

namespace base {
struct Diagnostic;
}

namespace desktop {

/// A table of diagnostics, the newest last. It listens from its making on, shown or not, and nothing of it is
/// remembered.
class LogWindow : public QDialog {
    Q_OBJECT

public:
    explicit LogWindow(QWidget* parent);

public slots:
    void bringUp();

private slots:
    void add(const base::Diagnostic& diagnostic);
    void clear();
    void copy();

private:
    QPushButton* makeButton(const QString& text, const char* name, const char* slot);
    void updateButtons();

    QTableWidget* _table;
    QPushButton* _clear;
    QPushButton* _copy;
};

} // namespace desktop
