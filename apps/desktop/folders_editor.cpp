// A list of the content folders, to be changed.
// SPDX-License-Identifier: MIT

#include "folders_editor.h"

#include <QFileDialog>
#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace desktop {

FoldersEditor::FoldersEditor(const QStringList& folders) : _list(new QListWidget)
{
    auto* const text = new QLabel(
        tr("Figures and what belongs to them are looked for in these folders. The first one that has a file "
           "is taken."));
    text->setWordWrap(true);
    _list->setAccessibleName(tr("Content folders"));
    _list->setTextElideMode(Qt::ElideMiddle);
    _list->setLayoutDirection(Qt::LeftToRight); // as paths are written everywhere
    _list->setMinimumWidth(60 * fontMetrics().averageCharWidth());

    auto* const beside = new QVBoxLayout;
    beside->addWidget(makeButton(tr("&Add..."), SLOT(add())));
    beside->addWidget(_remove = makeButton(tr("&Remove"), SLOT(remove())));
    beside->addWidget(_up = makeButton(tr("Move &Up"), SLOT(moveUp())));
    beside->addWidget(_down = makeButton(tr("Move &Down"), SLOT(moveDown())));
    beside->addStretch();

    auto* const grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->addWidget(text, 0, 0, 1, 2);
    grid->addWidget(_list, 1, 0);
    grid->addLayout(beside, 1, 1);
    connect(_list, SIGNAL(currentRowChanged(int)), SLOT(updateButtons()));
    setFolders(folders);
}

void FoldersEditor::setFolders(const QStringList& folders)
{
    _list->clear();
    _list->addItems(folders);
    _list->setCurrentRow(0);
    updateButtons();
}

QPushButton* FoldersEditor::makeButton(const QString& text, const char* slot)
{
    auto* const button = new QPushButton(text, this);
    button->setAutoDefault(false);
    connect(button, SIGNAL(clicked()), slot);
    return button;
}

QStringList FoldersEditor::folders() const
{
    QStringList all;
    for (int i = 0; i < _list->count(); ++i)
        all.append(_list->item(i)->text());
    return all;
}

void FoldersEditor::add()
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

void FoldersEditor::remove()
{
    delete _list->takeItem(_list->currentRow());
    updateButtons();
}

void FoldersEditor::moveUp()
{
    move(-1);
}

void FoldersEditor::moveDown()
{
    move(1);
}

void FoldersEditor::move(int by)
{
    const int row = _list->currentRow();
    QListWidgetItem* const item = _list->takeItem(row);
    _list->insertItem(row + by, item);
    _list->setCurrentItem(item);
}

void FoldersEditor::updateButtons()
{
    const int row = _list->currentRow();
    _remove->setEnabled(row >= 0);
    _up->setEnabled(row > 0);
    _down->setEnabled(row >= 0 && row + 1 < _list->count());
}

} // namespace desktop
