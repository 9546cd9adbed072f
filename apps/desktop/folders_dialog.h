// Choosing the content folders.
// SPDX-License-Identifier: MIT

#pragma once

#include <QDialog>
#include <QStringList>

class QListWidget;
class QPushButton;

namespace desktop {

/// The folders in their order, which decides whose file is taken where two have the same.
class FoldersDialog : public QDialog {
    Q_OBJECT

public:
    FoldersDialog(QWidget* parent, const QStringList& folders);

    QStringList folders() const;

private slots:
    void add();
    void remove();
    void moveUp();
    void moveDown();
    void updateButtons();

private:
    QPushButton* makeButton(const char* text, const char* slot);
    void move(int by);

    QListWidget* _list;
    QPushButton* _remove;
    QPushButton* _up;
    QPushButton* _down;
};

} // namespace desktop
