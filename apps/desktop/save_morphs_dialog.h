// Saving new morphs, of any figure, at any time.
// SPDX-License-Identifier: MIT

#pragma once

#include "unsaved_morphs.h"

#include <QDialog>
#include <QPointer>

#include <vector>

class DzFileIOSettings;
class QCheckBox;
class QComboBox;
class QFormLayout;
class QLineEdit;
class QListWidget;
class QPushButton;

namespace desktop {

/// What is unsaved when it opens, all of it ticked; what is ticked is saved together or not at all. Where to
/// is proposed and remembered as in the product's own dialog after a conversion, which saves only all that it
/// lists. To be shown modally: morphs may not go meanwhile.
class SaveMorphsDialog : public QDialog {
    Q_OBJECT

public:
    explicit SaveMorphsDialog(QWidget* parent);

    /// Labels of those that were saved; empty unless the dialog was accepted.
    QStringList saved() const { return _saved; }
    /// That they were saved into.
    QString contentFolder() const;

public slots:
    /// Saves; stays open when that fails or is cancelled.
    void accept() override;

private slots:
    void updateButtons();

private:
    void addMorphs();
    void addPlace(QFormLayout& form);
    QLineEdit* addLine(QFormLayout& form, const QString& label, const char* name, const QString& text);
    std::vector<UnsavedMorph> ticked() const;
    void fillOptions(DzFileIOSettings& options) const;

    const std::vector<UnsavedMorph> _morphs; ///< one for each row
    QListWidget* _list;
    QComboBox* _folder;
    QLineEdit* _vendor;
    QLineEdit* _product;
    QCheckBox* _compress;
    QPushButton* _save;
    QStringList _saved;
};

} // namespace desktop
