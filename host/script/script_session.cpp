// One run of a script.
// SPDX-License-Identifier: MIT

#include "script_session.h"

#include "openhost/script_function.h"

#include "app/guard.h"
#include "array_guard.h"
#include "base/spelling.h"
#include "dzcontroller.h"
#include "dzmodifier.h"
#include "dznode.h"
#include "dzobject.h"
#include "dzproperty.h"
#include "dzrefcounteditem.h"
#include "dzshape.h"
#include "dzundostack.h"
#include "openhost/diagnostics.h"
#include "scene/changes_together.h"
#include "scene/undo_recording.h"
#include "script_classes.h"
#include "script_functions.h"
#include "script_limits.h"
#include "script_result.h"
#include "thrown_value.h"

#include <QFileInfo>
#include <QScriptValueIterator>

#include <csignal>

#include <fmt/format.h>

namespace openhost {

namespace {

/// How often a running script is asked to look at its clock and at the stop sign, in milliseconds.
constexpr int watchInterval = 50;

volatile std::sig_atomic_t g_stop = 0;
int g_running = 0;

/// Whether the host holds the object by now.
bool IsTaken(const QObject& object)
{
    if (object.parent() || IsHeldByUndo(object))
        return true;
    if (const auto* const node = qobject_cast<const DzNode*>(&object))
        return node->isInScene() || node->getNodeParent();
    if (const auto* const owned = qobject_cast<const DzObject*>(&object))
        return owned->getNode();
    if (const auto* const modifier = qobject_cast<const DzModifier*>(&object))
        return modifier->getObject();
    if (const auto* const shape = qobject_cast<const DzShape*>(&object))
        return shape->getObject();
    if (const auto* const property = qobject_cast<const DzProperty*>(&object))
        return property->getOwner();
    if (const auto* const controller = qobject_cast<const DzController*>(&object))
        return controller->getOwner();
    return false;
}

/// Deletes what nobody holds.
void LetGo(QObject* object)
{
    if (const auto* const counted = qobject_cast<DzRefCountedItem*>(object)) {
        if (counted->getRefCount() == 0)
            delete object;
    } else if (!IsTaken(*object)) {
        delete object;
    }
}

} // namespace

ScriptSession::ScriptSession(const QVariantList& arguments, int timeLimit)
    : _arguments(arguments), _timeLimit(timeLimit), _holds(OpenHolds())
{
    // A script may run another; a stop ends them all, and only a run of its own takes it back.
    if (g_running++ == 0)
        g_stop = 0;
    if (!CurrentKeeper())
        SetCurrentKeeper(this);
    _engine.setProperty("session", QVariant::fromValue<QObject*>(this));
    _engine.setProcessEventsInterval(watchInterval);
    RegisterScriptClasses(_engine);
    RegisterScriptFunctions(_engine);
    GuardArrayMethods(_engine);
    connect(&_watch, SIGNAL(timeout()), SLOT(checkStop()));
    _watch.start(watchInterval);
    _clock.start();
}

ScriptSession::~ScriptSession()
{
    --g_running;
    if (OpenHolds() > _holds)
        Report(
            {base::Severity::Warning, {}, "script", "began a step to undo and did not end it; it ends here"});
    while (OpenHolds() > _holds)
        dzUndoStack->accept();
    if (CurrentKeeper() == this)
        SetCurrentKeeper(nullptr);
    // The engine lets go of its wrappers first, so that no script value points to what is deleted.
    _engine.setGlobalObject(_engine.newObject());
    _engine.collectGarbage();
    const ChangesTogether together;
    for (const QPointer<QObject>& object : _made)
        if (object)
            LetGo(object);
}

ScriptSession& ScriptSession::Of(QScriptEngine* engine)
{
    return *static_cast<ScriptSession*>(engine->property("session").value<QObject*>());
}

bool ScriptSession::evaluate(const QString& code, const QString& filename)
{
    const ForeignFrames engine;
    _filename = filename;
    _running = QStringList(QFileInfo(filename).canonicalFilePath());
    return finish(_engine.evaluate(code, filename));
}

bool ScriptSession::call(const QString& function, const QVariantList& arguments)
{
    if (_hasExited)
        return finishExit();
    QScriptValue callee = _engine.globalObject().property(function);
    if (!callee.isFunction()) {
        _errorMessage = QStringLiteral("there is no function %1").arg(function);
        return false;
    }
    QScriptValueList values;
    for (const QVariant& argument : arguments)
        values.append(_engine.toScriptValue(argument));
    const ForeignFrames engine;
    return finish(callee.call(QScriptValue(), values));
}

bool ScriptSession::finish(const QScriptValue& value)
{
    _result = QVariant();
    if (_wasStopped) {
        _errorMessage = g_stop ? QStringLiteral("the script was stopped")
                               : QStringLiteral("the script was stopped after %1 s").arg(_timeLimit / 1000.0);
        return false;
    }
    if (_hasExited)
        return finishExit();
    if (_engine.hasUncaughtException()) {
        noteError();
        return false;
    }
    if (const char* const why = WhyNotCopied(value))
        Report({base::Severity::Warning, {}, "script", fmt::format("its result {} and is left out", why)});
    else
        _result = value.toVariant();
    return true;
}

bool ScriptSession::finishExit()
{
    _engine.clearExceptions();
    if (_exitStatus != 0)
        _errorMessage = QStringLiteral("the script ended with the status %1").arg(_exitStatus);
    return _exitStatus == 0;
}

void ScriptSession::noteError()
{
    const QScriptValue thrown = _engine.uncaughtException();
    placeError(thrown);
    _stackTrace = _engine.uncaughtExceptionBacktrace();
    _engine.clearExceptions(); // what describes it may run the script's code
    _errorMessage = DescribeThrown(thrown);
    _engine.clearExceptions();
    if (thrown.isError())
        _errorMessage += likelyMeant(thrown.property(QStringLiteral("message")).toString());
}

/// Behind the engine's sentence about a name that there is not; empty where no other is like it.
QString ScriptSession::likelyMeant(const QString& message)
{
    const QLatin1String beginning("Can't find variable: ");
    if (!message.startsWith(beginning))
        return QString();
    std::vector<std::string> names;
    for (QScriptValueIterator global(_engine.globalObject()); global.hasNext();) {
        global.next();
        names.push_back(global.name().toStdString());
    }
    const std::string meant = base::LikelyMeant(message.mid(beginning.size()).toStdString(), names);
    return meant.empty() ? QString()
                         : QStringLiteral("; did you mean %1?").arg(QString::fromStdString(meant));
}

/// The engine writes the place into objects, but not into texts and numbers.
void ScriptSession::placeError(const QScriptValue& thrown)
{
    _errorLine = _engine.uncaughtExceptionLineNumber();
    _errorFile = _filename;
    const QScriptValue file = thrown.property(QStringLiteral("fileName"));
    if (!_hasIncluded)
        return;
    if (thrown.isObject() && file.isString()) {
        _errorFile = file.toString();
        _errorLine = thrown.property(QStringLiteral("lineNumber")).toInt32();
    } else if (thrown.strictlyEquals(_fromIncluded.thrown)) {
        _errorFile = _fromIncluded.file;
        _errorLine = _fromIncluded.line;
    } else {
        _errorFile = (_filename.isEmpty() ? QStringLiteral("the script") : _filename) +
                     QStringLiteral(" or a file that it includes");
    }
}

void ScriptSession::noteIncluded(const QString& file)
{
    _hasIncluded = true;
    // The innermost of files that include each other is the first to tell.
    const QScriptValue thrown = _engine.uncaughtException();
    if (_engine.hasUncaughtException() && !thrown.strictlyEquals(_fromIncluded.thrown))
        _fromIncluded = {thrown, file, _engine.uncaughtExceptionLineNumber()};
}

void ScriptSession::exit(int status)
{
    _hasExited = true;
    _exitStatus = status;
    _engine.abortEvaluation();
}

void ScriptSession::passOnEnd()
{
    if (_hasExited || _wasStopped)
        _engine.abortEvaluation();
}

void ScriptSession::adopt(QObject* object)
{
    _made.emplace_back(object);
}

bool ScriptSession::checkStop()
{
    if (!_wasStopped && (g_stop || (_timeLimit > 0 && _clock.elapsed() >= _timeLimit))) {
        _wasStopped = true;
        _engine.abortEvaluation();
    }
    return _wasStopped;
}

bool ScriptSession::IsNestedTooDeeply()
{
    return g_running >= mostNestedScripts;
}

void ScriptSession::StopAll()
{
    g_stop = 1;
}

bool ScriptSession::hasHold() const
{
    return OpenHolds() > _holds;
}

bool IsScriptRunning()
{
    return g_running > 0;
}

} // namespace openhost
