// Taking back what was done to the scene.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzbase.h"

#include <memory>

class DzNode;

namespace openhost {
class UndoAccess;
}

/// Steps that were done to the scene; each is taken back and done again as a whole, to the bit.
///
/// A step ends when control returns to the event loop; a hold, an action, an edit of a property and a load
/// are one step each. What left the scene is kept, as the same object, as long as a step may bring it back.
class DzUndoStack : public DzBase {
    Q_OBJECT
public:
    static constexpr int mostSteps = 200;
    /// Of what the steps alone keep, about, as long as nobody sets another bound; beyond it the oldest are
    /// forgotten. The newest one never is.
    static constexpr std::size_t mostBytes = std::size_t(512) << 20;

    DzUndoStack();
    ~DzUndoStack();

    /// All that is done until accept() or cancel() is one step; nests.
    Q_INVOKABLE void beginHold();
    /// False without a hold. A caption is made from what was done where none is given.
    Q_INVOKABLE bool accept(const QString& caption = QString());
    /// Takes back what was done in the hold. False without one.
    Q_INVOKABLE bool cancel();
    Q_INVOKABLE bool isHolding() const;

    Q_INVOKABLE bool canUndo() const;
    Q_INVOKABLE bool canRedo() const;
    Q_INVOKABLE QString getUndoCaption() const; ///< empty where there is nothing to take back
    Q_INVOKABLE QString getRedoCaption() const;
    /// False where there is nothing to take back, nothing is recorded, or a hold is open.
    Q_INVOKABLE bool undo();
    Q_INVOKABLE bool redo();
    /// Forgets all steps.
    Q_INVOKABLE void clear();

    /// Off at first: whoever lets people take things back turns it on. Holds can be cancelled without.
    void setRecording(bool onOff);
    Q_INVOKABLE bool isRecording() const;

    /// The scene is now as it is in its file.
    void setClean();
    bool isClean() const;
    /// How much a node with all below it, or a modifier, takes in memory, in bytes; about.
    void setMeasure(std::size_t (*measure)(const QObject& held));
    /// How much the steps may take together, in bytes, from now on; the last one stays in any case.
    void setMostBytes(std::size_t bytes);

signals:
    void changed(); ///< what can be taken back or done again
    void cleanChanged(bool clean);
    /// All steps were forgotten, since something was done that cannot be taken back.
    void restarted(const QString& what);

private slots:
    void settle();
    void forgetSelection();

private:
    friend class openhost::UndoAccess;

    struct Impl;
    std::unique_ptr<Impl> _impl;
};

/// The one stack; null while no host runs.
extern DzUndoStack* dzUndoStack;
