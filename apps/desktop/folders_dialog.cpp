// Choosing the content folders.
// SPDX-License-Identifier: MIT

#include "folders_dialog.h"

#include "folders_editor.h"

#include <QDialogButtonBox>
#include <QVBoxLayout>

namespace desktop {

FoldersDialog::FoldersDialog(QWidget* parent, const QStringList& folders)
    : QDialog(parent), _editor(new FoldersEditor(folders))
{
    setWindowTitle(tr("Content Folders"));
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(buttons, SIGNAL(accepted()), SLOT(accept()));
    connect(buttons, SIGNAL(rejected()), SLOT(reject()));
    auto* const column = new QVBoxLayout(this);
    column->addWidget(_editor, 1);
    column->addWidget(buttons);
}

QStringList FoldersDialog::folders() const
{
    return _editor->folders();
}

} // namespace desktop
