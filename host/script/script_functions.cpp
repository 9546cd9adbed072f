// Functions and objects that scripts find as globals.
// SPDX-License-Identifier: MIT

#include "script_functions.h"

#include "dzapp.h"
#include "dzerror.h"
#include "dzmainwindow.h"
#include "dzprogress.h"
#include "dzscene.h"
#include "message_box.h"
#include "script/script_output.h"
#include "script_classes.h"
#include "script_include.h"
#include "script_session.h"

#include <QElapsedTimer>
#include <QThread>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <vector>

namespace openhost {

namespace {

QString JoinedArguments(const QScriptContext& context)
{
    QStringList texts;
    for (int i = 0; i < context.argumentCount(); ++i)
        texts.append(context.argument(i).toString());
    return texts.join(QLatin1Char(' '));
}

QScriptValue Print(QScriptContext* context, QScriptEngine* engine)
{
    const QString line = JoinedArguments(*context);
    dzApp->log(line);
    ScriptOutput::Tell(line);
    if (dzApp->isHeadless()) {
        std::fprintf(stdout, "%s\n", line.toUtf8().constData());
        std::fflush(stdout);
    }
    return engine->undefinedValue();
}

QScriptValue DebugLine(QScriptContext* context, QScriptEngine* engine)
{
    const QString line = JoinedArguments(*context);
    dzApp->debug(line);
    ScriptOutput::Tell(line);
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
    const double status = given.isUndefined() ? 0.0 : given.toNumber();
    if (!(status >= 0.0 && status <= highestStatus) || status != std::floor(status))
        return context->throwError(QScriptContext::RangeError,
                                   QStringLiteral("%1 is no status; a script can end with 0 to %2")
                                       .arg(given.toString())
                                       .arg(highestStatus));
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

struct GlobalFunction {
    const char* name;
    QScriptEngine::FunctionSignature function;
};

const GlobalFunction globalFunctions[] = {
    {"print", Print},
    {"debug", DebugLine},
    {"getArguments", GetArguments},
    {"getErrorMessage", GetErrorMessage},
    {"include", Include},
    {"exit", Exit},
    {"sleep", Sleep},
    {"processEvents", ProcessEvents},
    {"setBusyCursor", SetBusyCursor},
    {"clearBusyCursor", ClearBusyCursor},
    {"startProgress", StartProgress},
    {"stepProgress", StepProgress},
    {"setProgressInfo", SetProgressInfo},
    {"progressIsCancelled", ProgressIsCancelled},
    {"finishProgress", FinishProgress},
};

} // namespace

void RegisterScriptFunctions(QScriptEngine& engine)
{
    QScriptValue global = engine.globalObject();
    for (const GlobalFunction& entry : globalFunctions)
        global.setProperty(QLatin1String(entry.name), engine.newFunction(entry.function));
    global.setProperty(QStringLiteral("Scene"), WrapObject(engine, dzScene));
    global.setProperty(QStringLiteral("App"), WrapObject(engine, dzApp));
    if (dzApp->getInterface())
        global.setProperty(QStringLiteral("MainWindow"), WrapObject(engine, dzApp->getInterface()));
    auto* const messageBox = new ScriptMessageBox;
    messageBox->setParent(&ScriptSession::Of(&engine));
    global.setProperty(QStringLiteral("MessageBox"), WrapObject(engine, messageBox));
}

} // namespace openhost
