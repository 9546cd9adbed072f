// What is done to many dials at once.
// SPDX-License-Identifier: MIT

#include "dial_menu.h"

#include "dznode.h"

#include <QApplication>
#include <QClipboard>

#include <algorithm>
#include <utility>

namespace openhost {

DialMenu::DialMenu(std::function<Dials()> dials, std::function<DzNode*()> node, QWidget* parent)
    : QMenu(parent), _dials(std::move(dials)), _node(std::move(node)),
      _changedOnly(addAction(tr("&Changed Dials Only"))), _restore(nullptr), _copy(nullptr), _paste(nullptr)
{
    _changedOnly->setCheckable(true);
    addSeparator();
    addAction(tr("&Memorize Shown Dials"), this, SLOT(memorize()));
    _restore = addAction(tr("Restore Memor&ized Dials"), this, SLOT(restore()));
    addAction(tr("&Reset Shown Dials"), this, SLOT(reset()));
    addSeparator();
    _copy = addAction(tr("Co&py Shape"), this, SLOT(copyShape()));
    _paste = addAction(tr("Paste &Shape"), this, SLOT(pasteShape()));
    connect(_changedOnly, SIGNAL(toggled(bool)), SIGNAL(filterChanged()));
    connect(this, SIGNAL(aboutToShow()), SLOT(update()));
}

void DialMenu::showAll()
{
    _changedOnly->setChecked(false);
}

void DialMenu::update()
{
    const Dials dials = _dials();
    _restore->setEnabled(
        std::any_of(dials.begin(), dials.end(), [](const auto& dial) { return dial && IsMemorized(*dial); }));
    _copy->setEnabled(_node() != nullptr);
    _paste->setEnabled(_node() && IsShape(QApplication::clipboard()->text().toUtf8()));
}

void DialMenu::memorize()
{
    const int count = MemorizeDials(_dials());
    emit told(count == 1 ? tr("The value of 1 dial is memorized.")
                         : tr("The values of %1 dials are memorized.").arg(count));
}

void DialMenu::restore()
{
    emit told(RestoreDials(_dials()).text());
}

void DialMenu::reset()
{
    emit told(ResetDials(_dials()).text());
}

void DialMenu::copyShape()
{
    const DzNode* const node = _node();
    if (!node)
        return;
    QApplication::clipboard()->setText(QString::fromUtf8(CopyShape(*node)));
    emit told(tr("The shape of %1 is copied.").arg(node->getLabel()));
}

void DialMenu::pasteShape()
{
    DzNode* const node = _node();
    const QByteArray text = QApplication::clipboard()->text().toUtf8();
    if (!node)
        return;
    emit told(IsShape(text) ? PasteShape(text, *node).text() : tr("No shape has been copied."));
}

} // namespace openhost
