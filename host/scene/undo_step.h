// One step of what was done to the scene.
// SPDX-License-Identifier: MIT

#pragma once

#include "scene/undo_recording.h"

#include <QList>
#include <QUndoCommand>

#include <memory>
#include <vector>

namespace openhost {

/// In the order of selection, the primary one apart.
struct Selection {
    std::vector<QPointer<DzNode>> nodes;
    QPointer<DzNode> primary;

    static std::shared_ptr<const Selection> present();
    void restore() const;
};

using Changes = std::vector<std::unique_ptr<Change>>;

void UndoAll(const Changes& changes);
void RedoAll(const Changes& changes);
/// Made of the changes that weigh most; empty for none.
QString CaptionOf(const Changes& changes);
/// Whether all of them together change nothing.
bool AreVain(const Changes& changes);
/// Whether nodes came or went, which says more than what somebody did for it.
bool AreAboutNodes(const Changes& changes);

class UndoStep : public QUndoCommand {
public:
    UndoStep(const QString& caption, Changes changes, std::shared_ptr<const Selection> before,
             std::shared_ptr<const Selection> after, std::size_t size);

    void undo() override;
    void redo() override;
    std::size_t size() const { return _size; }
    /// Lets go of all; the step is there in name alone.
    void forget();
    bool isForgotten() const { return _isForgotten; }

private:
    Changes _changes;
    std::shared_ptr<const Selection> _before, _after;
    std::size_t _size;
    bool _isNew = true; ///< the stack does again what it is given, which has just been done
    bool _isForgotten = false;
};

} // namespace openhost
