// Windows for what a person should know or decide.
// SPDX-License-Identifier: MIT

#include "openhost/window_attendant.h"

#include "dform_load_options.h"
#include "dzapp.h"
#include "openhost/plain_tip.h"
#include "options_dialog.h"
#include "save_file_dialog.h"

#include <QApplication>
#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>

namespace openhost {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(openhost::WindowAttendant)
};

/// As many lines as a box has room for; the log has them all.
QString FirstLines(const QStringList& lines)
{
    constexpr int shown = 10;
    QString text = QStringList(lines.mid(0, shown)).join(QLatin1Char('\n'));
    if (lines.size() > shown)
        text += QLatin1Char('\n') + Texts::tr("and %n more", nullptr, int(lines.size() - shown));
    return text;
}

constexpr int listWidth = 60; ///< characters

class MissingFilesDialog : public QDialog {
public:
    MissingFilesDialog(QWidget* parent, const QStringList& files) : QDialog(parent)
    {
        setObjectName(QStringLiteral("MissingAssetsDialog"));
        setWindowTitle(Texts::tr("Missing Files"));
        setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
        setModal(true);
        auto* const text =
            new QLabel(Texts::tr("These files are in no content library. What refers to them is left out."));
        text->setWordWrap(true);
        auto* const list = new QListWidget;
        list->addItems(files);
        for (int i = 0; i < files.size(); ++i)
            list->item(i)->setToolTip(PlainTip(files.at(i)));
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
    QMessageBox box(QMessageBox::Warning, Texts::tr("Error opening file"),
                    Texts::tr("The file could not be opened.\n\n") + text, QMessageBox::Ok,
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
        QMessageBox::Warning, Texts::tr("Duplicate Formulas Found"),
        Texts::tr("Formulas that say the same more than once drive:\n\n%1").arg(FirstLines(outputs)),
        QMessageBox::Ok, dzApp->getDialogParent());
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

std::optional<bool> WindowAttendant::mayReplaceFiles(const QStringList& files)
{
    const bool isOne = files.size() == 1;
    const QString told = isOne ? Texts::tr("There is a file for a morph of this name already:")
                               : Texts::tr("There are files for morphs of these names already:");
    const QString loss = isOne ? Texts::tr("Replacing it loses the morph that it holds.")
                               : Texts::tr("Replacing them loses the morphs that they hold.");
    QMessageBox box(QMessageBox::Warning, Texts::tr("Replace Morph Files"),
                    QStringList{told, FirstLines(files), loss}.join(QLatin1String("\n\n")),
                    QMessageBox::NoButton, dzApp->getDialogParent());
    box.setTextFormat(Qt::PlainText);
    const QAbstractButton* const replace = box.addButton(Texts::tr("Replace"), QMessageBox::DestructiveRole);
    QPushButton* const cancel = box.addButton(QMessageBox::Cancel);
    box.setDefaultButton(cancel);
    box.setEscapeButton(cancel);
    box.exec();
    return box.clickedButton() == replace;
}

bool WindowAttendant::mayExceedLimits(const QStringList& dials)
{
    QMessageBox box(
        QMessageBox::Question, Texts::tr("Preset Exceeds Limits"),
        Texts::tr("The preset goes beyond the limits of these dials:\n\n%1").arg(FirstLines(dials)),
        QMessageBox::NoButton, dzApp->getDialogParent());
    box.setTextFormat(Qt::PlainText);
    const QAbstractButton* const off = box.addButton(Texts::tr("Turn Limits Off"), QMessageBox::AcceptRole);
    QPushButton* const keep = box.addButton(Texts::tr("Keep Limits"), QMessageBox::RejectRole);
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
