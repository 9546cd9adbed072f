// Scripts.
// SPDX-License-Identifier: MIT

#include "dzscript.h"

#include "base/errors.h"
#include "dzapp.h"
#include "openhost/class_registry.h"
#include "openhost/diagnostics.h"
#include "script_functions.h"
#include "script_limits.h"
#include "script_result.h"
#include "script_session.h"
#include "script_text.h"

#include <QScriptEngine>

#include <algorithm>
#include <optional>

struct DzScript::Impl {
    QString code;
    QString filename;
    int timeLimit = 0;
    openhost::ScriptResult result;
    QString errorMessage;
    int errorLine = -1;
    QString errorFile;
    int exitStatus = 0;
    QStringList stackTrace;

    void forget()
    {
        result = openhost::ScriptResult();
        errorMessage.clear();
        errorLine = -1;
        errorFile.clear();
        exitStatus = 0;
        stackTrace.clear();
    }

    bool keep(const openhost::ScriptSession& session, bool succeeded)
    {
        result = openhost::ScriptResult(session.result());
        errorMessage = session.errorMessage();
        errorLine = session.errorLine();
        errorFile = session.errorFile();
        exitStatus = session.exitStatus();
        stackTrace = session.stackTrace();
        if (!succeeded)
            logError();
        return succeeded;
    }

    /// @return whether the script may run
    bool begin()
    {
        forget();
        if (!isFaulty() && !openhost::ScriptSession::IsNestedTooDeeply())
            return true;
        if (errorMessage.isEmpty())
            errorMessage =
                QStringLiteral("more than %1 scripts run each other").arg(openhost::mostNestedScripts);
        logError();
        return false;
    }

    bool isFaulty()
    {
        const std::optional<openhost::CodeFault> fault = openhost::FindFault(code);
        if (!fault)
            return false;
        errorLine = fault->line;
        errorMessage = fault->what;
        errorFile = filename;
        return true;
    }

    void logError() const
    {
        const QString named = errorFile.isEmpty() ? filename : errorFile;
        const QString place = named.isEmpty() ? QStringLiteral("script") : named;
        dzApp->warning(
            errorLine > 0
                ? QStringLiteral("%1, line %2: %3").arg(place, QString::number(errorLine), errorMessage)
                : QStringLiteral("%1: %2").arg(place, errorMessage));
    }
};

DzScript::DzScript() : _impl(new Impl) {}
DzScript::~DzScript() = default;

void DzScript::addLine(const QString& line, int indent)
{
    constexpr int indentWidth = 4;
    constexpr int mostLevels = 1000; // blanks mean nothing to the code
    _impl->code +=
        QString(std::clamp(indent, 0, mostLevels) * indentWidth, QLatin1Char(' ')) + line + QLatin1Char('\n');
}

void DzScript::addCode(const QString& code)
{
    _impl->code += code;
}

void DzScript::setCode(const QString& code)
{
    _impl->code = code;
}

QString DzScript::getCode() const
{
    return _impl->code;
}

void DzScript::clear()
{
    _impl->code.clear();
    _impl->filename.clear();
    _impl->forget();
}

bool DzScript::loadFromFile(const QString& filename, bool)
{
    try {
        _impl->code = openhost::ReadScript(filename);
    } catch (const base::Error& error) {
        openhost::Report({base::Severity::Warning, {}, {}, error.what()});
        return false;
    }
    _impl->filename = filename;
    return true;
}

QString DzScript::getFilename() const
{
    return _impl->filename;
}

void DzScript::setFilename(const QString& filename)
{
    _impl->filename = filename;
}

bool DzScript::checkSyntax()
{
    _impl->forget();
    if (_impl->isFaulty())
        return false;
    const QScriptSyntaxCheckResult check = QScriptEngine::checkSyntax(_impl->code);
    if (check.state() == QScriptSyntaxCheckResult::Valid)
        return true;
    _impl->errorMessage = check.errorMessage();
    _impl->errorFile = _impl->filename;
    _impl->errorLine = check.errorLineNumber();
    return false;
}

bool DzScript::execute()
{
    return execute(QVariantList());
}

bool DzScript::execute(const QVariantList& args)
{
    if (!_impl->begin())
        return false;
    openhost::ScriptSession session(args, _impl->timeLimit);
    return _impl->keep(session, session.evaluate(_impl->code, _impl->filename));
}

bool DzScript::call(const QString& function, const QVariantList& args)
{
    if (!_impl->begin())
        return false;
    openhost::ScriptSession session(args, _impl->timeLimit);
    const bool succeeded = session.evaluate(_impl->code, _impl->filename) && session.call(function, args);
    return _impl->keep(session, succeeded);
}

QVariant DzScript::result() const
{
    return _impl->result.value();
}

QString DzScript::errorMessage() const
{
    return _impl->errorMessage;
}

int DzScript::errorLine() const
{
    return _impl->errorLine;
}

QStringList DzScript::stackTrace() const
{
    return _impl->stackTrace;
}

QString DzScript::errorFile() const
{
    return _impl->errorFile;
}

int DzScript::exitStatus() const
{
    return _impl->exitStatus;
}

QVariant DzScript::evaluate(const QString& code, QObject* context)
{
    DzScript script;
    script._impl->code = code;
    if (!script._impl->begin())
        return QVariant();
    openhost::ScriptSession session(QVariantList(), 0);
    QScriptEngine& engine = session.engine();
    QScriptContext* const frame = engine.pushContext();
    if (context)
        frame->pushScope(engine.newQObject(context));
    script._impl->keep(session, session.evaluate(code, QString()));
    return script.result();
}

void DzScript::setTimeLimit(int milliseconds)
{
    _impl->timeLimit = milliseconds;
}

void DzScript::stopAll()
{
    openhost::ScriptSession::StopAll();
}

int DzScript::outputError()
{
    return openhost::OutputError();
}

namespace {

const openhost::BuiltInClass<DzScript> registration;

} // namespace
