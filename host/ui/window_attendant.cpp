// Windows for what a person should know or decide.
// SPDX-License-Identifier: MIT

#include "openhost/window_attendant.h"

#include "dform_load_options.h"
#include "dzapp.h"
#include "options_dialog.h"
#include "save_file_dialog.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>

namespace openhost {

namespace {

/// As many lines as a box has room for; the log has them all.
QString FirstLines(const QStringList& lines)
{
    constexpr int shown = 10;
    QString text = QStringList(lines.mid(0, shown)).join(QLatin1Char('\n'));
    if (lines.size() > shown)
        text += QStringLiteral("\nand %1 more").arg(lines.size() - shown);
    return text;
}

constexpr int listWidth = 60; ///< characters

class MissingFilesDialog : public QDialog {
public:
    MissingFilesDialog(QWidget* parent, const QStringList& files) : QDialog(parent)
    {
        setObjectName(QStringLiteral("MissingAssetsDialog"));
        setWindowTitle(QStringLiteral("Missing Files"));
        setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
        setModal(true);
        auto* const text = new QLabel(
            QStringLiteral("These files are in no content library. What refers to them is left out."));
        text->setWordWrap(true);
        auto* const list = new QListWidget;
        list->addItems(files);
        for (int i = 0; i < files.size(); ++i)
            list->item(i)->setToolTip(files.at(i));
        // Of a long path the beginning and the file's name tell most.
        list->setTextElideMode(Qt::ElideMiddle);
        list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        list->setMinimumWidth(listWidth * fontMetrics().averageCharWidth());
        auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close);
        connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
        auto* const rows = new QVBoxLayout(this);
        rows->addWidget(text);
        rows->addWidget(list);
        rows->addWidget(buttons);
    }
};

} // namespace

void WindowAttendant::tellMissingFiles(const QStringList& files)
{
    MissingFilesDialog(dzApp->getDialogParent(), files).exec();
}

void WindowAttendant::tellOpenError(const QString& file, const QString& reason)
{
    const QString text = reason.contains(file) ? reason : file + QLatin1String(": ") + reason;
    QMessageBox box(QMessageBox::Warning, QStringLiteral("Error opening file"),
                    QStringLiteral("The file could not be opened.\n\n") + text, QMessageBox::Ok,
                    dzApp->getDialogParent());
    box.setTextFormat(Qt::PlainText);
    box.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    QApplication::setOverrideCursor(Qt::ArrowCursor); // whatever work waits behind the box
    box.exec();
    QApplication::restoreOverrideCursor();
}

void WindowAttendant::tellDuplicateFormulas(const QStringList& outputs)
{
    QMessageBox box(
        QMessageBox::Warning, QStringLiteral("Duplicate Formulas Found"),
        QStringLiteral("Formulas that say the same more than once drive:\n\n%1").arg(FirstLines(outputs)),
        QMessageBox::Ok, dzApp->getDialogParent());
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

std::optional<bool> WindowAttendant::mayReplaceFiles(const QStringList& files)
{
    const bool isOne = files.size() == 1;
    const QString told = isOne ? QStringLiteral("There is a file for a morph of this name already:")
                               : QStringLiteral("There are files for morphs of these names already:");
    const QString loss = isOne ? QStringLiteral("Replacing it loses the morph that it holds.")
                               : QStringLiteral("Replacing them loses the morphs that they hold.");
    QMessageBox box(QMessageBox::Warning, QStringLiteral("Replace Morph Files"),
                    QStringList{told, FirstLines(files), loss}.join(QLatin1String("\n\n")),
                    QMessageBox::NoButton, dzApp->getDialogParent());
    box.setTextFormat(Qt::PlainText);
    const QAbstractButton* const replace =
        box.addButton(QStringLiteral("Replace"), QMessageBox::DestructiveRole);
    QPushButton* const cancel = box.addButton(QMessageBox::Cancel);
    box.setDefaultButton(cancel);
    box.setEscapeButton(cancel);
    box.exec();
    return box.clickedButton() == replace;
}

bool WindowAttendant::mayExceedLimits(const QStringList& dials)
{
    QMessageBox box(
        QMessageBox::Question, QStringLiteral("Preset Exceeds Limits"),
        QStringLiteral("The preset goes beyond the limits of these dials:\n\n%1").arg(FirstLines(dials)),
        QMessageBox::NoButton, dzApp->getDialogParent());
    box.setTextFormat(Qt::PlainText);
    const QAbstractButton* const off =
        box.addButton(QStringLiteral("Turn Limits Off"), QMessageBox::AcceptRole);
    QPushButton* const keep = box.addButton(QStringLiteral("Keep Limits"), QMessageBox::RejectRole);
    box.setDefaultButton(keep);
    box.setEscapeButton(keep);
    box.exec();
    return box.clickedButton() == off;
}

bool WindowAttendant::chooseDFormOptions(DFormLoadOptions& options)
{
    DzDFormPresetLoadOptionsDlg dialog(dzApp->getDialogParent(), options);
    if (dialog.exec() != QDialog::Accepted)
        return false;
    options = dialog.options();
    return true;
}

bool WindowAttendant::chooseFileOptions(const QString& title, const std::vector<OptionRow>& rows,
                                        DzFileIOSettings& options)
{
    OptionsDialog dialog(title, rows, options, dzApp->getDialogParent());
    if (dialog.exec() != QDialog::Accepted)
        return false;
    dialog.store(options);
    return true;
}

std::optional<QString> WindowAttendant::chooseFileToSave(const QString& title, const QString& startingDir)
{
    return AskForSaveFile(title, startingDir);
}

} // namespace openhost
