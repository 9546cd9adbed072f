// The dialog for the file to save.
// SPDX-License-Identifier: MIT

#include "save_file_dialog.h"

#include "dzapp.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QFileInfo>

namespace openhost {

namespace {

/// The folder itself or the nearest one above it that is there; the dialog takes anything else for a name.
QString NearestFolder(QString folder)
{
    while (!folder.isEmpty() && !QFileInfo(folder).isDir() && QFileInfo(folder).path() != folder)
        folder = QFileInfo(folder).path();
    return folder;
}

} // namespace

QString AskForSaveFile(const QString& title, const QString& startingDir)
{
    QFileDialog dialog(
        dzApp->getDialogParent(),
        QCoreApplication::translate("openhost::SaveFileDialog", "Save %1").arg(title),
        NearestFolder(startingDir),
        QCoreApplication::translate("openhost::SaveFileDialog", "Scene and preset files (*.duf)"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(QStringLiteral("duf"));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return QString();
    return dialog.selectedFiles().constFirst();
}

} // namespace openhost
