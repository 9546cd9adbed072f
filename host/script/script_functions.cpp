// Functions and objects that scripts find as globals.
// SPDX-License-Identifier: MIT

#include "script_functions.h"

#include "dzapp.h"
#include "dzerror.h"
#include "dzmainwindow.h"
#include "dzprogress.h"
#include "dzscene.h"
#include "dzundostack.h"
#include "message_box.h"
#include "openhost/script_function.h"
#include "script/script_output.h"
#include "script_classes.h"
#include "script_include.h"
#include "script_session.h"

#include <QElapsedTimer>
#include <QThread>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <memory>
#include <optional>
#include <vector>

namespace openhost {

namespace {

/// Nothing where one of them cannot be made a text.
std::optional<QString> JoinedArguments(const QScriptContext& context, QScriptEngine* engine)
{
    ScriptSession& session = ScriptSession::Of(engine);
    QStringList texts;
    for (int i = 0; i < context.argumentCount(); ++i)
        if (!session.isConverted([&] { texts.append(context.argument(i).toString()); }))
            return std::nullopt;
    return texts.join(QLatin1Char(' '));
}

int g_outputError = 0;

QScriptValue Print(QScriptContext* context, QScriptEngine* engine)
{
    const std::optional<QString> line = JoinedArguments(*context, engine);
    if (!line)
        return engine->undefinedValue();
    dzApp->log(*line);
    ScriptOutput::Tell(*line);
    if (dzApp->isHeadless()) {
        std::fprintf(stdout, "%s\n", line->toUtf8().constData());
        // Nobody may be left who reads, and a script that prints for ever would go on for nobody.
        if (std::fflush(stdout) != 0) {
            g_outputError = errno;
            ScriptSession::StopAll();
            ScriptSession::Of(engine).checkStop();
        }
    }
    return engine->undefinedValue();
}

QScriptValue DebugLine(QScriptContext* context, QScriptEngine* engine)
{
    const std::optional<QString> line = JoinedArguments(*context, engine);
    if (!line)
        return engine->undefinedValue();
    dzApp->debug(*line);
    ScriptOutput::Tell(*line);
    return engine->undefinedValue();
}

QScriptValue GetArguments(QScriptContext*, QScriptEngine* engine)
{
    return engine->toScriptValue(ScriptSession::Of(engine).arguments());
}

QScriptValue GetErrorMessage(QScriptContext* context, QScriptEngine*)
{
    return QScriptValue(getErrorMessage(static_cast<DzError>(context->argument(0).toInt32())));
}

/// Statuses above have a meaning of their own to shells.
constexpr int highestStatus = 125;

QScriptValue Exit(QScriptContext* context, QScriptEngine* engine)
{
    const QScriptValue given = context->argument(0);
    double status = 0.0;
    if (!given.isUndefined() && !ScriptSession::Of(engine).isConverted([&] { status = given.toNumber(); }))
        return engine->undefinedValue();
    if (!(status >= 0.0 && status <= highestStatus) || status != std::floor(status))
        return context->throwError(QScriptContext::RangeError,
                                   QStringLiteral("%1 is no status; a script can end with 0 to %2")
                                       .arg(given.toString(), QString::number(highestStatus)));
    ScriptSession::Of(engine).exit(static_cast<int>(status));
    return engine->undefinedValue();
}

/// Waits in small pieces, so that a run can be stopped meanwhile.
QScriptValue Sleep(QScriptContext* context, QScriptEngine* engine)
{
    constexpr qint64 piece = 20;
    const qint64 wanted = std::max(0, context->argument(0).toInt32());
    ScriptSession& session = ScriptSession::Of(engine);
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < wanted && !session.checkStop())
        QThread::msleep(static_cast<unsigned long>(std::min(piece, wanted - clock.elapsed())));
    return engine->undefinedValue();
}

QScriptValue ProcessEvents(QScriptContext*, QScriptEngine* engine)
{
    QCoreApplication::processEvents();
    return engine->undefinedValue();
}

/// What one run shows the user; it goes with the run, however that ends.
class ScriptDisplays : public QObject {
public:
    explicit ScriptDisplays(QObject* parent) : QObject(parent) {}
    ~ScriptDisplays() override
    {
        for (; busyCursors > 0; --busyCursors)
            dzApp->clearBusyCursor();
    }
    std::vector<std::unique_ptr<DzProgress>> progress; ///< innermost last
    int busyCursors = 0;

    static ScriptDisplays& Of(QScriptEngine* engine)
    {
        ScriptSession& session = ScriptSession::Of(engine);
        for (QObject* const child : session.children())
            if (auto* const displays = dynamic_cast<ScriptDisplays*>(child))
                return *displays;
        return *new ScriptDisplays(&session);
    }
};

QScriptValue SetBusyCursor(QScriptContext*, QScriptEngine* engine)
{
    ++ScriptDisplays::Of(engine).busyCursors;
    dzApp->setBusyCursor();
    return engine->undefinedValue();
}

QScriptValue ClearBusyCursor(QScriptContext*, QScriptEngine* engine)
{
    ScriptDisplays& displays = ScriptDisplays::Of(engine);
    if (displays.busyCursors == 0)
        return engine->undefinedValue(); // those of others are theirs
    --displays.busyCursors;
    dzApp->clearBusyCursor();
    return engine->undefinedValue();
}

QScriptValue StartProgress(QScriptContext* context, QScriptEngine* engine)
{
    ScriptDisplays::Of(engine).progress.push_back(
        std::make_unique<DzProgress>(context->argument(0).toString(), context->argument(1).toInt32(),
                                     context->argument(2).toBool(), context->argument(3).toBool()));
    return engine->undefinedValue();
}

QScriptValue StepProgress(QScriptContext* context, QScriptEngine* engine)
{
    auto& progress = ScriptDisplays::Of(engine).progress;
    if (!progress.empty())
        progress.back()->step(context->argumentCount() > 0 ? context->argument(0).toInt32() : 1);
    return engine->undefinedValue();
}

QScriptValue SetProgressInfo(QScriptContext* context, QScriptEngine* engine)
{
    auto& progress = ScriptDisplays::Of(engine).progress;
    if (!progress.empty())
        progress.back()->setInfo(context->argument(0).toString());
    return engine->undefinedValue();
}

QScriptValue ProgressIsCancelled(QScriptContext*, QScriptEngine* engine)
{
    const auto& progress = ScriptDisplays::Of(engine).progress;
    return QScriptValue(!progress.empty() && progress.back()->isCancelled());
}

QScriptValue FinishProgress(QScriptContext*, QScriptEngine* engine)
{
    auto& progress = ScriptDisplays::Of(engine).progress;
    if (!progress.empty())
        progress.pop_back();
    return engine->undefinedValue();
}

QScriptValue BeginUndo(QScriptContext*, QScriptEngine* engine)
{
    dzUndoStack->beginHold();
    return engine->undefinedValue();
}

QScriptValue AcceptUndo(QScriptContext* context, QScriptEngine* engine)
{
    if (!ScriptSession::Of(engine).hasHold())
        return QScriptValue(false);
    const QScriptValue caption = context->argument(0);
    return QScriptValue(dzUndoStack->accept(caption.isUndefined() ? QString() : caption.toString()));
}

QScriptValue CancelUndo(QScriptContext*, QScriptEngine* engine)
{
    return QScriptValue(ScriptSession::Of(engine).hasHold() && dzUndoStack->cancel());
}

const ScriptFunction hostFunctions[] = {
    {"print", "value, ...", "Writes the values as one line to standard output and to the log.", Print},
    {"debug", "value, ...", "Writes the values as one line to the log, which --verbose shows.", DebugLine},
    {"include", "file",
     "Runs another script's code. The file is looked for beside the script that names it, then in the "
     "content "
     "folders. Its variables and functions are the whole script's.",
     Include},
    {"getArguments", "", "An array of the words behind the script's name.", GetArguments},
    {"getErrorMessage", "error", "What an error number of the host's functions means.", GetErrorMessage},
    {"exit", "status = 0", "Ends the script here with a status from 0 to 125. Neither catch nor finally run.",
     Exit},
    {"sleep", "milliseconds", "Waits.", Sleep},
    {"processEvents", "", "Lets windows be drawn and buttons be pressed during long work.", ProcessEvents},
    {"setBusyCursor", "", "Shows that the program is busy, until clearBusyCursor() is called as often.",
     SetBusyCursor},
    {"clearBusyCursor", "", "Takes one setBusyCursor() of this script back.", ClearBusyCursor},
    {"startProgress", "text, steps, cancellable = false, showsTime = false",
     "Shows progress until finishProgress(); one may begin within another.", StartProgress},
    {"stepProgress", "steps = 1", "So many steps are done.", StepProgress},
    {"setProgressInfo", "text", "Shows another text.", SetProgressInfo},
    {"progressIsCancelled", "", "Whether the user has cancelled the progress.", ProgressIsCancelled},
    {"finishProgress", "", "Ends the progress that was begun last.", FinishProgress},
    {"beginUndo", "", "What is done to the scene until acceptUndo() or cancelUndo() is one step.", BeginUndo},
    {"acceptUndo", "caption = \"\"", "Ends the step, which the Edit menu then offers to undo by that name.",
     AcceptUndo},
    {"cancelUndo", "", "Takes back what was done since beginUndo().", CancelUndo},
};

std::vector<ScriptFunction>& AddedFunctions()
{
    static std::vector<ScriptFunction> functions;
    return functions;
}

} // namespace

int OutputError()
{
    return g_outputError;
}

void RegisterScriptFunction(const ScriptFunction& function)
{
    AddedFunctions().push_back(function);
}

std::vector<ScriptFunction> ScriptFunctions()
{
    std::vector<ScriptFunction> all(std::begin(hostFunctions), std::end(hostFunctions));
    all.insert(all.end(), AddedFunctions().begin(), AddedFunctions().end());
    return all;
}

void RegisterScriptFunctions(QScriptEngine& engine)
{
    QScriptValue global = engine.globalObject();
    for (const ScriptFunction& entry : ScriptFunctions())
        global.setProperty(QLatin1String(entry.name), engine.newFunction(entry.function));
    global.setProperty(QStringLiteral("Scene"), WrapObject(engine, dzScene));
    global.setProperty(QStringLiteral("App"), WrapObject(engine, dzApp));
    global.setProperty(QStringLiteral("UndoStack"), WrapObject(engine, dzUndoStack));
    if (dzApp->getInterface())
        global.setProperty(QStringLiteral("MainWindow"), WrapObject(engine, dzApp->getInterface()));
    auto* const messageBox = new ScriptMessageBox;
    messageBox->setParent(&ScriptSession::Of(&engine));
    global.setProperty(QStringLiteral("MessageBox"), WrapObject(engine, messageBox));
}

} // namespace openhost
