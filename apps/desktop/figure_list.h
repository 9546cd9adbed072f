// Choosing one of the figures in the content folders.
// SPDX-License-Identifier: MIT

#pragma once

#include <QGroupBox>
#include <QStringList>

class QLabel;
class QLineEdit;
class QListWidget;
class QListWidgetItem;

namespace openhost {
struct UserFile;
} // namespace openhost

namespace desktop {

/// A list with pictures, a field that searches it, and a button for a file from elsewhere.
class FigureList : public QGroupBox {
    Q_OBJECT

public:
    explicit FigureList(const QString& title);

    /// @param file  whose note is the label of the figure that it brings
    void add(const openhost::UserFile& file);
    QString chosenFile() const; ///< empty for none
    int count() const;
    /// Chooses the figure without any shape of its own, unless something is chosen.
    void proposePlain();

signals:
    void choiceChanged();
    void activated(); ///< by a double click or Return

private slots:
    void browse();
    void filter();

private:
    void filter(QListWidgetItem& item);

    QLineEdit* _search;
    QListWidget* _list;
};

} // namespace desktop
