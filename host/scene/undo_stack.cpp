// Taking back what was done to the scene: where a step begins and ends, and how many are kept.
// SPDX-License-Identifier: MIT

#include "dzundostack.h"

#include "dznode.h"
#include "dzscene.h"
#include "openhost/diagnostics.h"
#include "undo_step.h"

#include <QHash>
#include <QSet>
#include <QUndoStack>

#include <algorithm>
#include <functional>
#include <set>
#include <utility>

DzUndoStack* dzUndoStack = nullptr;

namespace {

using openhost::Change;
using openhost::Changes;
using openhost::Selection;
using openhost::UndoStep;

constexpr std::size_t bytesOfAChange = 200; ///< about, with what it points to

/// What is on its way to be a step, or part of one.
struct Level {
    enum Kind {
        Automatic, ///< until control returns to the event loop
        Edit,      ///< of a property
        Action,    ///< until it has ended, and control has returned
        Hold
    };
    Kind kind = Automatic;
    QString caption;
    const DzBase* edited = nullptr;
    Changes changes;
    std::set<std::pair<const void*, const void*>> recorded;
    QSet<const DzNode*> entered;
    bool hasMoves = false; ///< nodes hang elsewhere than before
    std::vector<QPointer<DzNode>> left;
    std::shared_ptr<const Selection> selection; ///< as it was at the beginning
    QString beyond;                             ///< what cannot be taken back
};

/// As long as it lives; put back also when something is thrown.
class Replaying {
public:
    Replaying(bool& state, bool is) : _state(state), _was(std::exchange(state, is)) {}
    ~Replaying() { _state = _was; }
    Replaying(const Replaying&) = delete;
    Replaying& operator=(const Replaying&) = delete;

private:
    bool& _state;
    bool _was;
};

} // namespace

struct DzUndoStack::Impl {
    std::size_t mostBytes = DzUndoStack::mostBytes;
    QUndoStack steps;
    std::vector<Level> levels; ///< open, the outermost first
    int runningActions = 0;
    bool isRecording = false;
    bool isReplaying = false;
    bool isSettling = false;    ///< settle() is due
    bool isToBeCleared = false; ///< when the replay has ended
    int pauses = 0;
    std::shared_ptr<const Selection> selection; ///< the present one; null when it is to be read again
    QHash<const QObject*, QPointer<const QObject>> held; ///< another may stand where one was that is gone
    std::size_t (*measure)(const QObject& held) = nullptr;

    bool isActive() const { return !isReplaying && pauses == 0 && (isRecording || isHolding()); }
    bool isHolding() const
    {
        return std::any_of(levels.begin(), levels.end(),
                           [](const Level& level) { return level.kind == Level::Hold; });
    }
    const UndoStep* step(int index) const
    {
        const auto* const command = index >= 0 ? steps.command(index) : nullptr;
        const auto* const found = static_cast<const UndoStep*>(command);
        return found && !found->isForgotten() ? found : nullptr;
    }
    std::shared_ptr<const Selection> presentSelection()
    {
        if (!selection)
            selection = Selection::present();
        return selection;
    }
};

namespace openhost {

/// What recording and replaying need of the stack.
class UndoAccess {
public:
    static DzUndoStack::Impl* Of() { return dzUndoStack ? dzUndoStack->_impl.get() : nullptr; }

    static Level& Open(Level::Kind kind)
    {
        DzUndoStack::Impl& impl = *Of();
        impl.levels.emplace_back();
        impl.levels.back().kind = kind;
        impl.levels.back().selection = impl.presentSelection();
        return impl.levels.back();
    }

    /// The innermost; one is opened where none is.
    static Level& Top()
    {
        DzUndoStack::Impl& impl = *Of();
        if (impl.levels.empty()) {
            Open(Level::Automatic);
            SettleSoon();
        }
        return impl.levels.back();
    }

    static void SettleSoon()
    {
        if (!std::exchange(Of()->isSettling, true))
            QMetaObject::invokeMethod(dzUndoStack, "settle", Qt::QueuedConnection);
    }

    /// The outermost level becomes a step, unless it holds nothing.
    /// @param caption  a copy: the level that it may be of goes
    static void Commit(QString caption)
    {
        DzUndoStack::Impl& impl = *Of();
        Q_ASSERT(impl.levels.size() == 1);
        CutOffLeft(impl.levels.front()); // part of the step
        Level level = std::move(impl.levels.front());
        impl.levels.clear();
        if (!impl.isRecording)
            return;
        if (!level.beyond.isEmpty())
            return Restart(std::move(level));
        if (level.changes.empty())
            return;
        // Such as a drag of a dial back to where it began.
        if (AreVain(level.changes)) {
            emit dzUndoStack->changed();
            return;
        }
        Push(std::move(level), caption);
    }

    /// Commits what is no hold.
    /// @return whether a hold, or an action that is under way, is open
    static bool CommitEnded()
    {
        DzUndoStack::Impl& impl = *Of();
        if (impl.levels.size() == 1 && impl.levels.front().kind != Level::Hold &&
            !(impl.levels.front().kind == Level::Action && impl.runningActions > 0))
            Commit(impl.levels.front().caption);
        return !impl.levels.empty();
    }

    static void Replay(const std::function<void()>& replay)
    {
        DzUndoStack::Impl& impl = *Of();
        {
            const Replaying replaying(impl.isReplaying, true);
            replay();
            dzScene->rootsChanged();
        }
        // Listeners may have asked for it meanwhile.
        if (std::exchange(impl.isToBeCleared, false))
            dzUndoStack->clear();
    }

    /// Takes back what the innermost level has done, and closes it.
    static void Cancel()
    {
        DzUndoStack::Impl& impl = *Of();
        CutOffLeft(impl.levels.back());
        Level level = std::move(impl.levels.back());
        impl.levels.pop_back();
        Replay([&level] {
            UndoAll(level.changes);
            level.selection->restore();
        });
        if (!level.beyond.isEmpty())
            PassOn(std::move(level));
        emit dzUndoStack->changed();
    }

    /// The innermost level becomes part of the one around it.
    static void Merge()
    {
        DzUndoStack::Impl& impl = *Of();
        Level inner = std::move(impl.levels.back());
        impl.levels.pop_back();
        Level& outer = impl.levels.back();
        std::move(inner.changes.begin(), inner.changes.end(), std::back_inserter(outer.changes));
        outer.recorded.insert(inner.recorded.begin(), inner.recorded.end());
        outer.entered.unite(inner.entered);
        outer.hasMoves = outer.hasMoves || inner.hasMoves;
        outer.left.insert(outer.left.end(), inner.left.begin(), inner.left.end());
        if (outer.beyond.isEmpty())
            outer.beyond = inner.beyond;
    }

    /// What has come back to the scene meanwhile keeps its links.
    static void CutOffLeft(Level& level)
    {
        for (const QPointer<DzNode>& root : std::exchange(level.left, {}))
            if (root && !root->isInScene())
                CutOff(*root);
    }

    static void ForgetOldest()
    {
        DzUndoStack::Impl& impl = *Of();
        std::size_t kept = 0;
        for (int i = impl.steps.count() - 1; i >= 0; --i) {
            auto* const step = const_cast<UndoStep*>(static_cast<const UndoStep*>(impl.steps.command(i)));
            kept += step->size();
            if (kept > impl.mostBytes && i != impl.steps.count() - 1)
                step->forget();
        }
    }

private:
    /// Of a level that was taken back, as far as that could be.
    static void PassOn(Level level)
    {
        DzUndoStack::Impl& impl = *Of();
        if (!impl.levels.empty()) {
            if (impl.levels.back().beyond.isEmpty())
                impl.levels.back().beyond = level.beyond;
        } else if (impl.isRecording) {
            Restart(std::move(level));
        } else {
            Tell(level.beyond, "this is not taken back");
        }
    }

    static void Tell(const QString& what, const char* how)
    {
        Report({base::Severity::Note, {}, what.toStdString(), how});
    }

    static void Push(Level level, const QString& given)
    {
        DzUndoStack::Impl& impl = *Of();
        const bool isNamed = !given.isEmpty() && (level.kind == Level::Hold || !AreAboutNodes(level.changes));
        const QString caption = isNamed ? given : CaptionOf(level.changes);
        std::size_t size = 0;
        for (const auto& change : level.changes) {
            size += bytesOfAChange + change->ownBytes();
            if (impl.measure && change->held())
                size += impl.measure(*change->held());
        }
        impl.steps.push(
            new UndoStep(caption, std::move(level.changes), level.selection, impl.presentSelection(), size));
        ForgetOldest();
        emit dzUndoStack->changed();
    }

    static void Restart(Level level)
    {
        level.changes.clear();
        Of()->steps.clear();
        Of()->steps.resetClean();
        Tell(level.beyond, "this and what was done before cannot be taken back");
        emit dzUndoStack->changed();
        emit dzUndoStack->restarted(level.beyond);
    }
};

bool IsRecording()
{
    return dzUndoStack && UndoAccess::Of()->isActive();
}

namespace {

bool IsWithinHeld(const DzElement& top)
{
    const auto* node = qobject_cast<const DzNode*>(&top);
    while (node && node->getNodeParent())
        node = node->getNodeParent();
    return IsHeldByUndo(node ? static_cast<const DzElement&>(*node) : top);
}

} // namespace

bool IsRecording(const DzElement* element)
{
    if (!IsRecording() || !element)
        return false;
    while (const DzElement* const parent = element->getElementParent())
        element = parent;
    const auto* const node = qobject_cast<const DzNode*>(element);
    if (!node || !node->isInScene())
        return IsWithinHeld(*element);
    const std::vector<Level>& levels = UndoAccess::Of()->levels;
    return levels.empty() || !levels.back().entered.contains(node);
}

bool IsReplaying()
{
    return dzUndoStack && UndoAccess::Of()->isReplaying;
}

void Record(std::unique_ptr<Change> change)
{
    UndoAccess::Top().changes.push_back(std::move(change));
}

bool IsFirstOf(const void* object, const void* what)
{
    return UndoAccess::Top().recorded.emplace(object, what).second;
}

void RecordBeyondUndo(const DzElement* element, const QString& what)
{
    if (IsRecording(element) && UndoAccess::Top().beyond.isEmpty())
        UndoAccess::Top().beyond = what;
}

Changes Captured(const std::function<void()>& work)
{
    auto& impl = *UndoAccess::Of();
    const Replaying paused(impl.isReplaying, false);
    UndoAccess::Open(Level::Hold);
    try {
        work();
    } catch (...) {
        impl.levels.pop_back();
        throw;
    }
    Changes changes = std::move(impl.levels.back().changes);
    impl.levels.pop_back();
    return changes;
}

void TakeBack(const Changes& changes)
{
    UndoAll(changes);
}

void NoteEntered(const QList<DzNode*>& nodes, std::unique_ptr<Change> change)
{
    Level& level = UndoAccess::Top();
    if (change)
        level.changes.push_back(std::move(change));
    for (const DzNode* const node : nodes)
        level.entered.insert(node);
}

void NoteMoved(const DzNode& node, std::unique_ptr<Change> entry)
{
    Level& level = UndoAccess::Top();
    level.hasMoves = true;
    if (!level.entered.contains(&node))
        return;
    // It came with one above it, and before whatever has been done with it since.
    for (const DzNode* above = &node; above; above = above->getNodeParent()) {
        const auto known = std::find_if(level.changes.begin(), level.changes.end(),
                                        [&](const auto& change) { return change->isEntryOf(*above); });
        if (known == level.changes.end())
            continue;
        if (above != &node)
            level.changes.insert(known + 1, std::move(entry));
        return;
    }
}

bool IsToBeHeld(const QList<DzNode*>& leaving)
{
    Level& level = UndoAccess::Top();
    const bool isOfThisStep = std::all_of(leaving.begin(), leaving.end(),
                                          [&](DzNode* node) { return level.entered.contains(node); });
    if (!isOfThisStep || level.hasMoves)
        return true;
    const auto isEntryOfOne = [&](const std::unique_ptr<Change>& change) {
        return std::any_of(leaving.begin(), leaving.end(),
                           [&](const DzNode* node) { return change->isEntryOf(*node); });
    };
    for (const DzNode* const node : leaving)
        level.entered.remove(node);
    level.changes.erase(std::remove_if(level.changes.begin(), level.changes.end(), isEntryOfOne),
                        level.changes.end());
    return false;
}

void NoteLeft(DzNode& root)
{
    UndoAccess::Top().left.emplace_back(&root);
}

bool IsHeldByUndo(const QObject& object)
{
    return dzUndoStack && UndoAccess::Of()->held.value(&object);
}

void SetHeldByUndo(const QObject& object, bool isHeld)
{
    if (!dzUndoStack)
        return;
    if (isHeld)
        UndoAccess::Of()->held.insert(&object, &object);
    else
        UndoAccess::Of()->held.remove(&object);
}

UndoPause::UndoPause()
{
    if (!dzUndoStack)
        return;
    dzUndoStack->clear();
    auto& impl = *UndoAccess::Of();
    impl.steps.resetClean();
    ++impl.pauses;
    for (Level& level : impl.levels)
        if (level.kind == Level::Hold)
            level.beyond = QCoreApplication::translate("openhost::Undo", "Clear the Scene");
}

UndoPause::~UndoPause()
{
    if (dzUndoStack)
        --UndoAccess::Of()->pauses;
}

UserStep::UserStep(const QString& caption)
{
    if (!dzUndoStack)
        return;
    auto& impl = *UndoAccess::Of();
    const bool isWithinAnother = impl.runningActions++ > 0 || UndoAccess::CommitEnded();
    if (!isWithinAnother && impl.isActive())
        UndoAccess::Open(Level::Action).caption = caption;
}

UserStep::~UserStep()
{
    if (!dzUndoStack || UndoAccess::Of()->runningActions == 0)
        return;
    // Others hear of the action after it has run, and what they do belongs to it.
    if (--UndoAccess::Of()->runningActions == 0)
        UndoAccess::SettleSoon();
}

void BeginEdit(const DzBase& edited)
{
    if (!dzUndoStack || UndoAccess::CommitEnded() || !UndoAccess::Of()->isActive())
        return;
    UndoAccess::Open(Level::Edit).edited = &edited;
}

namespace {

bool IsBeingEdited(const DzBase& edited)
{
    return dzUndoStack && UndoAccess::Of()->levels.size() == 1 &&
           UndoAccess::Of()->levels.front().edited == &edited;
}

} // namespace

void FinishEdit(const DzBase& edited)
{
    if (IsBeingEdited(edited))
        UndoAccess::CommitEnded();
}

void CancelEdit(const DzBase& edited)
{
    if (IsBeingEdited(edited))
        UndoAccess::Cancel();
}

int OpenHolds()
{
    const auto isHold = [](const Level& level) { return level.kind == Level::Hold; };
    return dzUndoStack ? static_cast<int>(std::count_if(UndoAccess::Of()->levels.begin(),
                                                        UndoAccess::Of()->levels.end(), isHold))
                       : 0;
}

} // namespace openhost

using openhost::UndoAccess;

DzUndoStack::DzUndoStack() : _impl(new Impl)
{
    dzUndoStack = this;
    _impl->steps.setUndoLimit(mostSteps);
    connect(&_impl->steps, SIGNAL(cleanChanged(bool)), SIGNAL(cleanChanged(bool)));
    connect(dzScene, SIGNAL(nodeSelectionListChanged()), SLOT(forgetSelection()));
    connect(dzScene, SIGNAL(primarySelectionChanged(DzNode*)), SLOT(forgetSelection()));
}

DzUndoStack::~DzUndoStack()
{
    ++_impl->pauses;
    _impl->steps.disconnect(this);
    _impl->levels.clear();
    _impl->steps.clear();
    dzUndoStack = nullptr;
}

void DzUndoStack::forgetSelection()
{
    _impl->selection.reset();
}

void DzUndoStack::settle()
{
    _impl->isSettling = false;
    // An edit ends when its widget says so.
    if (_impl->levels.size() == 1 && _impl->levels.front().kind != Level::Edit)
        UndoAccess::CommitEnded();
}

void DzUndoStack::beginHold()
{
    UndoAccess::CommitEnded();
    UndoAccess::Open(Level::Hold);
}

bool DzUndoStack::accept(const QString& caption)
{
    if (_impl->levels.empty() || _impl->levels.back().kind != Level::Hold)
        return false;
    if (_impl->levels.size() == 1)
        UndoAccess::Commit(caption);
    else
        UndoAccess::Merge();
    return true;
}

bool DzUndoStack::cancel()
{
    if (_impl->levels.empty() || _impl->levels.back().kind != Level::Hold)
        return false;
    UndoAccess::Cancel();
    return true;
}

bool DzUndoStack::isHolding() const
{
    return _impl->isHolding();
}

bool DzUndoStack::canUndo() const
{
    const bool isUnderWay = !_impl->levels.empty() && !_impl->levels.front().changes.empty();
    return !isHolding() && (isUnderWay || _impl->step(_impl->steps.index() - 1));
}

bool DzUndoStack::canRedo() const
{
    const bool isUnderWay = !_impl->levels.empty() && !_impl->levels.front().changes.empty();
    return !isHolding() && !isUnderWay && _impl->step(_impl->steps.index());
}

QString DzUndoStack::getUndoCaption() const
{
    if (!_impl->levels.empty() && !_impl->levels.front().changes.empty())
        return openhost::CaptionOf(_impl->levels.front().changes);
    const openhost::UndoStep* const step = _impl->step(_impl->steps.index() - 1);
    return step ? step->text() : QString();
}

QString DzUndoStack::getRedoCaption() const
{
    const openhost::UndoStep* const step = canRedo() ? _impl->step(_impl->steps.index()) : nullptr;
    return step ? step->text() : QString();
}

bool DzUndoStack::undo()
{
    if (isHolding() || _impl->isReplaying)
        return false;
    // What an action that is under way has done so far is a step of its own, as a script may ask for.
    if (!_impl->levels.empty())
        UndoAccess::Commit(_impl->levels.front().caption);
    if (!canUndo())
        return false;
    UndoAccess::Replay([this] { _impl->steps.undo(); });
    emit changed();
    return true;
}

bool DzUndoStack::redo()
{
    if (isHolding() || _impl->isReplaying)
        return false;
    if (!_impl->levels.empty())
        UndoAccess::Commit(_impl->levels.front().caption);
    if (!canRedo())
        return false;
    UndoAccess::Replay([this] { _impl->steps.redo(); });
    emit changed();
    return true;
}

void DzUndoStack::clear()
{
    if (_impl->isReplaying) {
        _impl->isToBeCleared = true;
        return;
    }
    for (Level& level : _impl->levels) {
        UndoAccess::CutOffLeft(level);
        Level emptied;
        emptied.kind = level.kind;
        emptied.caption = level.caption;
        emptied.edited = level.edited;
        emptied.selection = level.selection;
        level = std::move(emptied);
    }
    const bool wasClean = isClean();
    _impl->steps.clear();
    if (!wasClean)
        _impl->steps.resetClean();
    emit changed();
}

void DzUndoStack::setRecording(bool onOff)
{
    _impl->isRecording = onOff;
    if (!onOff)
        clear();
}

bool DzUndoStack::isRecording() const
{
    return _impl->isRecording;
}

void DzUndoStack::setClean()
{
    if (!_impl->levels.empty())
        UndoAccess::CommitEnded();
    _impl->steps.setClean();
}

bool DzUndoStack::isClean() const
{
    return _impl->steps.isClean();
}

void DzUndoStack::setMostBytes(std::size_t bytes)
{
    _impl->mostBytes = bytes;
    UndoAccess::ForgetOldest();
    emit changed();
}

void DzUndoStack::setMeasure(std::size_t (*measure)(const QObject& held))
{
    _impl->measure = measure;
}
