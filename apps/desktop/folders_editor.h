// A list of the content folders, to be changed.
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>
#include <QWidget>

class QListWidget;
class QPushButton;

namespace desktop {

/// The folders in their order, which decides whose file is taken where two have the same.
class FoldersEditor : public QWidget {
    Q_OBJECT

public:
    explicit FoldersEditor(const QStringList& folders);

    QStringList folders() const;
    void setFolders(const QStringList& folders);

private slots:
    void add();
    void remove();
    void moveUp();
    void moveDown();
    void updateButtons();

private:
    QPushButton* makeButton(const QString& text, const char* slot);
    void move(int by);

    QListWidget* _list;
    QPushButton* _remove;
    QPushButton* _up;
    QPushButton* _down;
};

} // namespace desktop
