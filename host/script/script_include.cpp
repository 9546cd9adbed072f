// Scripts that are made of several files.
// SPDX-License-Identifier: MIT

#include "script_include.h"

#include "base/errors.h"
#include "dzapp.h"
#include "dzcontentmgr.h"
#include "script_limits.h"
#include "script_session.h"
#include "script_text.h"

#include <QDir>
#include <QFileInfo>
#include <QScriptContextInfo>
#include <QScriptEngine>

namespace openhost {

namespace {

QScriptValue Fail(QScriptContext& context, const QString& why)
{
    return context.throwError(QStringLiteral("include: ") + why);
}

/// Of files that include each other, each is told by the next.
QString CycleText(const QStringList& running, const QString& file)
{
    QStringList between = running.mid(running.indexOf(file) + 1);
    for (QString& one : between)
        one = QFileInfo(one).fileName();
    const QString through =
        between.isEmpty() ? QString() : QStringLiteral(", by way of ") + between.join(QStringLiteral(", "));
    return QStringLiteral("%1 includes itself%2").arg(QFileInfo(file).fileName(), through);
}

QScriptValue Run(QScriptContext& context, QScriptEngine& engine, const QString& file)
{
    const QString code = ReadScript(file);
    if (const std::optional<CodeFault> fault = FindFault(code))
        return Fail(context,
                    QStringLiteral("%1, line %2: %3").arg(file, QString::number(fault->line), fault->what));
    // Its variables and functions are everybody's.
    context.setActivationObject(engine.globalObject());
    context.setThisObject(engine.globalObject());
    ScriptSession& session = ScriptSession::Of(&engine);
    session.running().append(QFileInfo(file).canonicalFilePath());
    engine.evaluate(code, file);
    session.running().removeLast();
    session.noteIncluded(file);
    session.passOnEnd();
    return engine.undefinedValue();
}

} // namespace

QString FindIncluded(const QString& name, const QString& fromFile)
{
    const QFileInfo beside(QFileInfo(fromFile).dir(), name); // an absolute name stays what it is
    if (beside.isFile())
        return QDir::cleanPath(beside.filePath());
    return dzApp->getContentMgr()->getAbsolutePath(name, false);
}

QScriptValue Include(QScriptContext* context, QScriptEngine* engine)
{
    QString name;
    if (!ScriptSession::Of(engine).isConverted([&] { name = context->argument(0).toString(); }))
        return engine->undefinedValue();
    if (context->argumentCount() != 1 || name.isEmpty())
        return Fail(*context, QStringLiteral("it takes the name of one file"));
    const QString from = QScriptContextInfo(context->parentContext()).fileName();
    const QString file = FindIncluded(name, from);
    if (file.isEmpty())
        return Fail(*context, QStringLiteral("there is no file %1, neither beside %2 nor in a content folder")
                                  .arg(name, from.isEmpty() ? QStringLiteral("the script") : from));
    const QStringList& running = ScriptSession::Of(engine).running();
    const QString place = QFileInfo(file).canonicalFilePath();
    if (running.contains(place))
        return Fail(*context, CycleText(running, place));
    if (running.size() >= mostIncludedScripts)
        return Fail(*context,
                    QStringLiteral("more than %1 files include each other").arg(mostIncludedScripts));
    try {
        return Run(*context, *engine, file);
    } catch (const base::Error& error) {
        return Fail(*context, QString::fromStdString(error.what()));
    }
}

} // namespace openhost
