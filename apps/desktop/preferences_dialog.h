// Choosing what the user wishes of all runs.
// SPDX-License-Identifier: MIT

#pragma once

#include "preferences.h"

#include <QDialog>

class QComboBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QListWidget;
class QSpinBox;
class QStackedWidget;

namespace desktop {

class FoldersEditor;

/// Pages with a list of them at the side. Changes nothing by itself.
class PreferencesDialog : public QDialog {
    Q_OBJECT

public:
    PreferencesDialog(QWidget* parent, const Preferences& preferences);

    Preferences preferences() const; ///< texts without blanks around them

private slots:
    void resetPage();

private:
    QFormLayout* addPage(const QString& title, const QString& text);
    void addFolders();
    void addAuthor();
    void addUnits();
    void addMemory();
    void addThreads();
    void addLook();
    void addLanguage();
    QSpinBox* addMebibytes(QFormLayout& form, const QString& label, const char* name, int least, int most);
    QLineEdit* addLine(QFormLayout& form, const QString& label, const char* name);
    void tellVariable(QFormLayout& form, const char* setting, QWidget& field);
    void fill(const Preferences& preferences, int page);

    QListWidget* _titles;
    QStackedWidget* _pages;
    FoldersEditor* _folders = nullptr;
    QLineEdit* _name = nullptr;
    QLineEdit* _email = nullptr;
    QLineEdit* _url = nullptr;
    QComboBox* _lengths = nullptr;
    QSpinBox* _cache = nullptr;
    QSpinBox* _undo = nullptr;
    QSpinBox* _threads = nullptr;
    QComboBox* _look = nullptr;
    QComboBox* _language = nullptr;
};

} // namespace desktop
