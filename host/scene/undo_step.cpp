// One step of what was done to the scene.
// SPDX-License-Identifier: MIT

#include "undo_step.h"

#include "dznode.h"
#include "dzscene.h"
#include "scene/changes_together.h"

#include <QCoreApplication>

#include <algorithm>
#include <optional>
#include <utility>

namespace openhost {

std::shared_ptr<const Selection> Selection::present()
{
    auto selection = std::make_shared<Selection>();
    for (DzNodeListIterator node = dzScene->selectedNodeListIterator(); node.hasNext();)
        selection->nodes.emplace_back(node.next());
    selection->primary = dzScene->getPrimarySelection();
    return selection;
}

void Selection::restore() const
{
    QList<DzNode*> present;
    for (const QPointer<DzNode>& node : nodes)
        if (node && node->isInScene())
            present.append(node);
    dzScene->setSelection(present, primary && present.contains(primary) ? primary : nullptr);
}

namespace {

template <class Iterator, class Apply>
void ApplyAll(Iterator change, Iterator end, const Apply& apply)
{
    // A dial drives others: told together, a step of thousands does not tell each of them for each.
    std::optional<ChangesTogether> together;
    for (; change != end; ++change) {
        if (!(*change)->isValue())
            together.reset();
        else if (!together)
            together.emplace();
        apply(**change);
    }
}

} // namespace

void UndoAll(const Changes& changes)
{
    ApplyAll(changes.rbegin(), changes.rend(), [](Change& change) { change.undo(); });
}

void RedoAll(const Changes& changes)
{
    ApplyAll(changes.begin(), changes.end(), [](Change& change) { change.redo(); });
}

QString CaptionOf(const Changes& changes)
{
    if (changes.empty())
        return QString();
    ChangeRank highest = ChangeRank::Detail;
    for (const auto& change : changes)
        highest = std::max(highest, change->rank());
    QStringList captions;
    for (const auto& change : changes)
        if (change->rank() == highest)
            captions.append(change->caption());
    captions.removeDuplicates();
    captions.removeAll(QString());
    if (captions.isEmpty())
        return QCoreApplication::translate("openhost::Undo", "Change");
    return captions.size() == 1 ? captions.first()
                                : QCoreApplication::translate("openhost::Undo", "%1 and %2 More")
                                      .arg(captions.first(), QString::number(captions.size() - 1));
}

bool AreVain(const Changes& changes)
{
    return std::all_of(changes.begin(), changes.end(), [](const auto& change) { return change->isVain(); });
}

bool AreAboutNodes(const Changes& changes)
{
    return std::any_of(changes.begin(), changes.end(),
                       [](const auto& change) { return change->rank() == ChangeRank::Node; });
}

UndoStep::UndoStep(const QString& caption, Changes changes, std::shared_ptr<const Selection> before,
                   std::shared_ptr<const Selection> after, std::size_t size)
    : QUndoCommand(caption), _changes(std::move(changes)), _before(std::move(before)),
      _after(std::move(after)), _size(size)
{
}

void UndoStep::undo()
{
    UndoAll(_changes);
    if (_before)
        _before->restore();
}

void UndoStep::redo()
{
    if (std::exchange(_isNew, false))
        return;
    RedoAll(_changes);
    if (_after)
        _after->restore();
}

void UndoStep::forget()
{
    _isForgotten = true;
    _changes.clear();
    _before.reset();
    _after.reset();
    _size = 0;
}

} // namespace openhost
