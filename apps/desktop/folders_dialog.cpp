// Choosing the content folders.
// SPDX-License-Identifier: MIT

#include "folders_dialog.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace desktop {

FoldersDialog::FoldersDialog(QWidget* parent, const QStringList& folders)
    : QDialog(parent), _list(new QListWidget(this))
{
    setWindowTitle(tr("Content Folders"));
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    auto* const text = new QLabel(
        tr("Figures and what belongs to them are looked for in these folders. The first one that has a file "
           "is taken."));
    text->setWordWrap(true);
    _list->addItems(folders);
    _list->setTextElideMode(Qt::ElideMiddle);
    _list->setMinimumWidth(60 * fontMetrics().averageCharWidth());

    auto* const beside = new QVBoxLayout;
    beside->addWidget(makeButton("&Add...", SLOT(add())));
    beside->addWidget(_remove = makeButton("&Remove", SLOT(remove())));
    beside->addWidget(_up = makeButton("Move &Up", SLOT(moveUp())));
    beside->addWidget(_down = makeButton("Move &Down", SLOT(moveDown())));
    beside->addStretch();
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(buttons, SIGNAL(accepted()), SLOT(accept()));
    connect(buttons, SIGNAL(rejected()), SLOT(reject()));

    auto* const grid = new QGridLayout(this);
    grid->addWidget(text, 0, 0, 1, 2);
    grid->addWidget(_list, 1, 0);
    grid->addLayout(beside, 1, 1);
    grid->addWidget(buttons, 2, 0, 1, 2);
    connect(_list, SIGNAL(currentRowChanged(int)), SLOT(updateButtons()));
    _list->setCurrentRow(0);
    updateButtons();
}

QPushButton* FoldersDialog::makeButton(const char* text, const char* slot)
{
    auto* const button = new QPushButton(tr(text), this);
    button->setAutoDefault(false);
    connect(button, SIGNAL(clicked()), slot);
    return button;
}

QStringList FoldersDialog::folders() const
{
    QStringList all;
    for (int i = 0; i < _list->count(); ++i)
        all.append(_list->item(i)->text());
    return all;
}

void FoldersDialog::add()
{
    const QString folder = QFileDialog::getExistingDirectory(this, tr("Add Content Folder"));
    if (folder.isEmpty())
        return;
    const QList<QListWidgetItem*> same = _list->findItems(folder, Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (same.isEmpty())
        _list->addItem(folder);
    _list->setCurrentItem(same.isEmpty() ? _list->item(_list->count() - 1) : same.first());
    updateButtons();
}

void FoldersDialog::remove()
{
    delete _list->takeItem(_list->currentRow());
    updateButtons();
}

void FoldersDialog::moveUp()
{
    move(-1);
}

void FoldersDialog::moveDown()
{
    move(1);
}

void FoldersDialog::move(int by)
{
    const int row = _list->currentRow();
    QListWidgetItem* const item = _list->takeItem(row);
    _list->insertItem(row + by, item);
    _list->setCurrentItem(item);
}

void FoldersDialog::updateButtons()
{
    const int row = _list->currentRow();
    _remove->setEnabled(row >= 0);
    _up->setEnabled(row > 0);
    _down->setEnabled(row >= 0 && row + 1 < _list->count());
}

} // namespace desktop
