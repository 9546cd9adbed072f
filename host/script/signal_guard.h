// Signals of the host's objects in scripts.
// SPDX-License-Identifier: MIT

#pragma once

#include <QScriptEngine>
#include <QScriptString>
#include <QScriptValue>

#include <memory>
#include <unordered_map>
#include <vector>

namespace openhost {

/// Lets the scripts of one engine connect and disconnect signals, but not send them: who hears one takes it
/// for the host's word. Calling one throws a TypeError.
class SignalGuard {
public:
    explicit SignalGuard(QScriptEngine& engine);
    ~SignalGuard();
    SignalGuard(const SignalGuard&) = delete;
    SignalGuard& operator=(const SignalGuard&) = delete;

    /// Stands before the signals of the wrapped object.
    void guard(QScriptValue& wrapper);

private:
    class Stand;
    using ConnectionChange = bool (*)(QObject*, const char*, const QScriptValue&, const QScriptValue&);

    /// One name under which scripts find a signal.
    struct Name {
        QScriptString text;
        std::shared_ptr<Stand> stand;
    };

    static QScriptValue Connect(QScriptContext* context, QScriptEngine* engine);
    static QScriptValue Disconnect(QScriptContext* context, QScriptEngine* engine);
    static QScriptValue Change(QScriptContext& context, ConnectionChange change, const char* refusal);

    const std::vector<Name>& namesOf(const QMetaObject& metaObject);
    const QScriptValue& prototype();

    QScriptEngine& _engine;
    QScriptValue _prototype;
    std::unordered_map<const QMetaObject*, std::vector<Name>> _names;
};

} // namespace openhost
