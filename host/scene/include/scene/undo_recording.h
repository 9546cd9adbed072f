// Recording what is done to the scene, where it is done.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzcontroller.h"
#include "dzelement.h"
#include "dzproperty.h"
#include "scene/undo_captions.h"

#include <QPointer>
#include <QString>

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

class DzNode;

namespace openhost {

/// What names a step that holds several changes: the highest of them.
enum class ChangeRank { Detail, Value, Look, Morph, Node };

/// Something that was done, to be taken back and done again in turn. What it names may be gone by then only
/// if it went without being recorded.
class Change {
public:
    virtual ~Change() = default;
    virtual void undo() = 0;
    virtual void redo() = 0;
    virtual ChangeRank rank() const = 0;
    /// As a menu names it, such as "Set Height"; the scene is as after the change.
    virtual QString caption() const = 0;
    /// What this change alone keeps alive; null for nothing.
    virtual const QObject* held() const { return nullptr; }
    /// And how much memory beside it, in bytes.
    virtual std::size_t ownBytes() const { return 0; }
    virtual bool isEntryOf(const DzNode&) const { return false; }
    /// Only values of properties, which can be told together.
    virtual bool isValue() const { return false; }
    /// All is as it was before it, so that taking it back would show nothing.
    virtual bool isVain() const { return false; }
};

/// Whether anything is recorded now; quick, for those who are called often.
bool IsRecording();
/// Whether what happens to the element is. Not outside of the scene, and not where the element came into it
/// with the present step: that is taken back as a whole. What left the scene, and may come back, counts as if
/// it were there.
bool IsRecording(const DzElement* element);
/// While a step is taken back or done again: what follows from a change is a change of its own there.
bool IsReplaying();
/// Before anything is changed, or right after.
void Record(std::unique_ptr<Change> change);
/// False when the present step has recorded the same of the same object.
bool IsFirstOf(const void* object, const void* what);
/// Something was done to the element that cannot be taken back: all steps so far are forgotten, which is
/// told.
void RecordBeyondUndo(const DzElement* element, const QString& what);

/// What the work does, apart from any step; also while one is taken back.
std::vector<std::unique_ptr<Change>> Captured(const std::function<void()>& work);
/// Of what was captured, the last first.
void TakeBack(const std::vector<std::unique_ptr<Change>>& changes);

/// Nodes that come into the scene with the present step.
void NoteEntered(const QList<DzNode*>& nodes, std::unique_ptr<Change> change);
/// It is about to hang elsewhere. From here on the present step holds also what comes and goes with it, for
/// that may hang together with what stays.
/// @param entry  is recorded if the node came with this step below another
void NoteMoved(const DzNode& node, std::unique_ptr<Change> entry);
/// @return false when they came with the present step: the caller lets go of them then, and no step holds
/// them
bool IsToBeHeld(const QList<DzNode*>& leaving);
/// When the step ends, the node is cut off from what stays.
void NoteLeft(DzNode& root);
/// A step may bring it back.
bool IsHeldByUndo(const QObject& object);
void SetHeldByUndo(const QObject& object, bool isHeld);
/// Ends a link, which is kept where a step may bring it back.
void DropLink(DzController& link);
/// Ends the links between these properties and all others, as their end would, and records that.
void CutOff(const std::vector<DzProperty*>& leaving);
/// Likewise of a node with all below it, which also follows nobody then.
void CutOff(DzNode& root);
/// Public and private.
std::vector<DzProperty*> PropertiesOf(const QList<const DzElement*>& elements);

/// The scene is emptied: all steps are forgotten, and nothing is recorded as long as this lives.
class UndoPause {
public:
    UndoPause();
    ~UndoPause();
    UndoPause(const UndoPause&) = delete;
    UndoPause& operator=(const UndoPause&) = delete;
};

/// What a user starts, such as an action of a menu, is one step with what follows before the event loop runs
/// again.
class UserStep {
public:
    explicit UserStep(const QString& caption);
    ~UserStep();
    UserStep(const UserStep&) = delete;
    UserStep& operator=(const UserStep&) = delete;
};

/// A user's edit of a property or element, from its beginning to its end. Another step, too, ends it.
void BeginEdit(const DzBase& edited);
void FinishEdit(const DzBase& edited);
/// Takes back what the edit has done.
void CancelEdit(const DzBase& edited);

/// Holds that are open now, for whoever runs code that may leave some.
int OpenHolds();

/// Where it stood; at the end where others that stood before it are gone for good.
template <class T>
void PutBackAt(QList<T*>& list, int place, T* item)
{
    list.insert(std::min(std::max(place, 0), list.size()), item);
}

inline QString ShownLabel(const DzElement& element)
{
    return element.getLabel();
}
inline QString ShownLabel(const DzProperty& property)
{
    return property.getLabel();
}
inline QString ShownLabel(const DzController& link)
{
    return link.getOwner() ? link.getOwner()->getLabel() : QString();
}

/// Changes nothing, and says what others in the same step are about.
class Naming : public Change {
public:
    Naming(ChangeRank rank, QString caption) : _rank(rank), _caption(std::move(caption)) {}
    void undo() override {}
    void redo() override {}
    ChangeRank rank() const override { return _rank; }
    QString caption() const override { return _caption; }
    bool isVain() const override { return true; }

private:
    ChangeRank _rank;
    QString _caption;
};

/// A value in exchange for the one that is there, in both directions.
/// @tparam Swap  void(Object&, Value&): sets the value, leaves the former one in its place, and tells of it
template <class Object, class Value, class Swap>
class Exchange : public Change {
public:
    Exchange(Object& object, Value former, Swap swap, ChangeRank rank, const char* pattern)
        : _object(&object), _other(std::move(former)), _swap(std::move(swap)), _rank(rank), _pattern(pattern)
    {
    }
    void undo() override { exchange(); }
    void redo() override { exchange(); }
    ChangeRank rank() const override { return _rank; }
    QString caption() const override
    {
        return _object ? Captioned(_pattern, ShownLabel(*_object)) : QString();
    }
    bool isValue() const override { return _rank == ChangeRank::Value; }

protected:
    const Object* object() const { return _object; }
    const Value& other() const { return _other; } ///< which is not the object's at the moment

private:
    void exchange()
    {
        if (_object)
            _swap(*_object, _other);
    }

    QPointer<Object> _object;
    Value _other;
    Swap _swap;
    ChangeRank _rank;
    const char* _pattern;
};

inline void SwapName(DzBase& named, QString& other)
{
    const QString former = named.getName();
    named.setName(other);
    other = former;
}

/// Records the value that is about to be replaced, once in a step: each place that calls this with a function
/// of its own stands for one kind of value.
/// @param owner    decides whether anything is recorded
/// @param pattern  of the caption
template <class Object, class Value, class Swap>
void RecordValue(const DzElement* owner, Object& object, Value former, Swap swap, ChangeRank rank,
                 const char* pattern)
{
    static const char kind = 0;
    if (IsRecording(owner) && IsFirstOf(&object, &kind))
        Record(std::make_unique<Exchange<Object, Value, Swap>>(object, std::move(former), std::move(swap),
                                                               rank, pattern));
}

} // namespace openhost
