// One run of a script.
// SPDX-License-Identifier: MIT

#pragma once

#include "app/letting_go.h"
#include "signal_guard.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QScriptEngine>
#include <QStringList>
#include <QTimer>
#include <QVariant>

#include <vector>

namespace openhost {

/// An engine with the host's globals that can be stopped from outside. When it ends, it deletes what the
/// script made and handed to nobody, and what the script took from its owner.
class ScriptSession : public QObject, private Keeper {
    Q_OBJECT
public:
    /// @param arguments  what getArguments() gives the script
    /// @param timeLimit  in milliseconds; 0 for none
    ScriptSession(const QVariantList& arguments, int timeLimit);
    ~ScriptSession() override;

    QScriptEngine& engine() { return _engine; }
    /// The session whose engine it is.
    static ScriptSession& Of(QScriptEngine* engine);

    /// False when the script throws or is stopped.
    bool evaluate(const QString& code, const QString& filename);
    bool call(const QString& function, const QVariantList& arguments);

    QVariant result() const { return _result; }
    QString errorMessage() const { return _errorMessage; }
    int errorLine() const { return _errorLine; }
    /// Where that line is: the script's own name, that of a file it includes, or in words that it may be
    /// either.
    QString errorFile() const { return _errorFile; }
    /// What exit() was called with; 0 as long as it was not.
    int exitStatus() const { return _exitStatus; }
    QStringList stackTrace() const { return _stackTrace; }
    const QVariantList& arguments() const { return _arguments; }

    /// Remembers an object that the script made.
    void adopt(QObject* object);
    /// Likewise for one that the host let go of: whoever called the script may still have it in its hands.
    void keep(QObject& object) override { adopt(&object); }

    /// Files whose code is being run, the one that was included last at the end; canonical paths.
    QStringList& running() { return _running; }
    /// A file was included. If it threw, the place is kept for what does not know its own.
    void noteIncluded(const QString& file);

    SignalGuard& signalGuard() { return _signalGuard; }

    /// Of the undo stack, begun by the script itself and still open.
    bool hasHold() const;

    /// Ends the run here and now, past all that would catch an error.
    void exit(int status);
    /// The engine forgets that it is to end when it comes back from code that was run within other code.
    void passOnEnd();
    /// False when the value's own code, such as toString, has thrown or ended the run: then nothing is to be
    /// done with what came out.
    template <class Conversion>
    bool isConverted(const Conversion& convert)
    {
        _engine.clearExceptions(); // one that was caught long since
        convert();
        passOnEnd();
        return !_hasExited && !_wasStopped && !_engine.hasUncaughtException();
    }

    /// Whether as many scripts as may be run each other now.
    static bool IsNestedTooDeeply();

    /// Ends every run, until one begins while none is left. Async-signal-safe.
    static void StopAll();

public slots:
    /// Ends the run if that was asked for or its time is over; long work of the host's script functions asks.
    bool checkStop();

private:
    bool finish(const QScriptValue& value);
    bool finishExit();
    void noteError();
    QString likelyMeant(const QString& message);
    void placeError(const QScriptValue& thrown);

    QScriptEngine _engine;
    SignalGuard _signalGuard{_engine};
    QVariantList _arguments;
    std::vector<QPointer<QObject>> _made; ///< by the script, or let go of by the host meanwhile
    QElapsedTimer _clock;
    int _timeLimit;
    int _holds; ///< of the undo stack, open before it began
    QTimer _watch;
    bool _wasStopped = false, _hasExited = false;
    int _exitStatus = 0;
    QVariant _result;
    QString _errorMessage;
    int _errorLine = -1;
    QString _errorFile;
    QStringList _stackTrace;
    QString _filename;
    QStringList _running;
    bool _hasIncluded = false;
    struct {
        QScriptValue thrown;
        QString file;
        int line = -1;
    } _fromIncluded; ///< what an included file threw last
};

} // namespace openhost
