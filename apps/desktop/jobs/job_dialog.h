// What a conversion of the list of jobs is to do.
// SPDX-License-Identifier: MIT

#pragma once

#include <QDialog>
#include <QJsonObject>
#include <QStringList>

class QCheckBox;
class QComboBox;
class QFormLayout;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QSpinBox;

namespace desktop {

/// Target, morphs and the place where they are saved, of one job or of several at once. The last choice is
/// proposed.
class JobDialog : public QDialog {
    Q_OBJECT

public:
    /// @param sources  files; none where the settings are for rows of a table that leave something open
    JobDialog(QWidget* parent, const QStringList& sources);

    /// Of a job that is there.
    void setCells(const QJsonObject& cells);
    /// As rows of a batch's table have them, without source; name where one is given.
    QJsonObject cells() const;

private slots:
    void browseTarget();
    void browseLibrary();
    void showMissing();
    void takeChoice();

private:
    void addFigures(QFormLayout& form, const QStringList& sources);
    void addDials(QFormLayout& form);
    void addMorphs(QFormLayout& form);
    void addSaving(QFormLayout& form);
    QLineEdit* addLine(QFormLayout& form, const QString& label, const char* name);
    QHBoxLayout* withBrowsing(QWidget& field, const QString& name, const char* slot);
    QStringList dials() const; ///< as they were typed, without lines that say nothing
    QString missing() const;   ///< a sentence; empty for nothing

    QLineEdit* _target = nullptr;
    QLineEdit* _name = nullptr; ///< null where the settings are for several
    QPlainTextEdit* _dials;     ///< of the source, one a line
    QCheckBox* _full = nullptr;
    QCheckBox* _head = nullptr;
    QCheckBox* _body = nullptr;
    QComboBox* _resolution = nullptr;
    QSpinBox* _level = nullptr;
    QCheckBox* _joints = nullptr;
    QCheckBox* _registers = nullptr;
    QComboBox* _library = nullptr;
    QLineEdit* _vendor = nullptr;
    QLineEdit* _product = nullptr;
    QCheckBox* _compress = nullptr;
    QCheckBox* _overwrite = nullptr;
    QLabel* _missing = nullptr;
    QPushButton* _ok = nullptr;
    QJsonObject _others; ///< cells that no field shows
};

} // namespace desktop
