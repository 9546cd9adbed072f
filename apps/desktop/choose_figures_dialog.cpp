// Choosing what is to be converted, and to what.
// SPDX-License-Identifier: MIT

#include "choose_figures_dialog.h"

#include "convertible_figures.h"
#include "figure_list.h"
#include "openhost/content_files.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

namespace desktop {

ChooseFiguresDialog::ChooseFiguresDialog(QWidget* parent)
    : QDialog(parent), _source(new FigureList(tr("Figure to convert"))),
      _target(new FigureList(tr("Convert it to"))), _state(new QLabel),
      _scan(std::make_unique<openhost::ContentScan>(openhost::ContentDirectories(), FigureBroughtBy))
{
    setObjectName(QStringLiteral("ChooseFiguresDialog"));
    setWindowTitle(tr("Convert a Figure"));
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    _state->setWordWrap(true);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
    _convert = buttons->addButton(tr("&Convert..."), QDialogButtonBox::AcceptRole);
    _convert->setDefault(true);
    auto* const grid = new QGridLayout(this);
    grid->addWidget(_source, 0, 0);
    grid->addWidget(_target, 0, 1);
    grid->addWidget(_state, 1, 0, 1, 2);
    grid->addWidget(buttons, 2, 0, 1, 2);
    grid->setRowStretch(0, 1);
    connect(buttons, SIGNAL(accepted()), SLOT(acceptChoice()));
    connect(buttons, SIGNAL(rejected()), SLOT(reject()));
    for (FigureList* const list : {_source, _target}) {
        connect(list, SIGNAL(choiceChanged()), SLOT(updateButton()));
        connect(list, SIGNAL(activated()), SLOT(acceptChoice()));
    }
    connect(_scan.get(), SIGNAL(moved()), SLOT(takeFound()));
    resize(90 * fontMetrics().averageCharWidth(), 28 * fontMetrics().lineSpacing());
    _source->setFocus();
    takeFound();
}

ChooseFiguresDialog::~ChooseFiguresDialog() = default;

QString ChooseFiguresDialog::sourceFile() const
{
    return _source->chosenFile();
}

QString ChooseFiguresDialog::targetFile() const
{
    return _target->chosenFile();
}

void ChooseFiguresDialog::takeFound()
{
    for (; _taken < _scan->files().size(); ++_taken) {
        const openhost::UserFile& file = _scan->files()[_taken];
        if (!file.note.isEmpty())
            (IsTarget(file.note) ? _target : _source)->add(file);
    }
    if (_scan->isDone())
        _target->proposePlain();
    updateButton();
}

void ChooseFiguresDialog::updateButton()
{
    _convert->setEnabled(!sourceFile().isEmpty() && !targetFile().isEmpty());
    _state->setText(stateText());
}

QString ChooseFiguresDialog::stateText() const
{
    if (!_scan->isDone())
        return tr("Looking for figures in the content folders...");
    if (openhost::ContentDirectories().isEmpty())
        return tr("There is no content folder yet. File > Content Folders... says where your figures are.");
    if (_source->count() == 0)
        return tr("The content folders have no Genesis 3, 8 or 8.1 figure.");
    if (_target->count() == 0)
        return tr("The content folders have no Genesis 9 figure.");
    return _convert->isEnabled() ? tr("Both are loaded, and you are asked what to convert.")
                                 : tr("Choose one on each side.");
}

void ChooseFiguresDialog::acceptChoice()
{
    if (_convert->isEnabled())
        accept();
}

} // namespace desktop
