// Signals of the host's objects in scripts.
// SPDX-License-Identifier: MIT

#include "signal_guard.h"

#include <QMetaMethod>
#include <QScriptClass>
#include <QScriptEngine>

#include <set>

Q_DECLARE_METATYPE(QScriptContext*)

namespace openhost {

/// What stands for one signal in the wrappers of a class. The data of each instance is its wrapper.
class SignalGuard::Stand : public QScriptClass {
public:
    Stand(QScriptEngine& engine, QByteArray signature, QScriptValue prototype)
        : QScriptClass(&engine), _signature(std::move(signature)), _prototype(std::move(prototype))
    {
    }

    QString name() const override { return QStringLiteral("Function"); }
    QScriptValue prototype() const override { return _prototype; }
    bool supportsExtension(Extension extension) const override { return extension == Callable; }
    QVariant extension(Extension, const QVariant& context) override
    {
        context.value<QScriptContext*>()->throwError(
            QScriptContext::TypeError,
            QStringLiteral("only the host sends the signal %1; a script can connect to it")
                .arg(QString::fromLatin1(_signature)));
        return QVariant();
    }

    const QByteArray& signature() const { return _signature; }

private:
    QByteArray _signature;
    QScriptValue _prototype;
};

namespace {

/// What connect and disconnect get: a function, or an object and a function or the name of one.
struct Receiver {
    explicit Receiver(const QScriptContext& context)
    {
        function = context.argument(0);
        if (context.argumentCount() < 2)
            return;
        object = function;
        function = context.argument(1);
        if (!function.isFunction())
            function = object.property(function.toString());
    }
    QScriptValue object, function;
};

} // namespace

SignalGuard::SignalGuard(QScriptEngine& engine) : _engine(engine) {}
SignalGuard::~SignalGuard() = default;

QScriptValue SignalGuard::Change(QScriptContext& context, ConnectionChange change, const char* refusal)
{
    const auto* const stand = dynamic_cast<const Stand*>(context.thisObject().scriptClass());
    QObject* const sender = context.thisObject().data().toQObject();
    if (!stand || !sender)
        return context.throwError(QScriptContext::TypeError,
                                  QStringLiteral("this is no signal of an object that exists"));
    const Receiver receiver(context);
    if (!receiver.function.isFunction())
        return context.throwError(QScriptContext::TypeError,
                                  QStringLiteral("what is to hear the signal is not a function"));
    // Qt marks the text of a signal so.
    const QByteArray signal = '2' + stand->signature();
    if (!change(sender, signal.constData(), receiver.object, receiver.function))
        return context.throwError(QLatin1String(refusal));
    return context.engine()->undefinedValue();
}

QScriptValue SignalGuard::Connect(QScriptContext* context, QScriptEngine*)
{
    return Change(*context, qScriptConnect, "the signal cannot be connected to that");
}

QScriptValue SignalGuard::Disconnect(QScriptContext* context, QScriptEngine*)
{
    return Change(*context, qScriptDisconnect, "the signal is not connected to that");
}

void SignalGuard::guard(QScriptValue& wrapper)
{
    if (wrapper.property(QStringLiteral("destroyed")).scriptClass())
        return;
    for (const Name& name : namesOf(*wrapper.toQObject()->metaObject()))
        wrapper.setProperty(name.text, _engine.newObject(name.stand.get(), wrapper));
}

const std::vector<SignalGuard::Name>& SignalGuard::namesOf(const QMetaObject& metaObject)
{
    const auto [found, isNew] = _names.try_emplace(&metaObject);
    std::vector<Name>& names = found->second;
    if (!isNew)
        return names;
    std::set<QByteArray> seen;
    for (int i = 0; i < metaObject.methodCount(); ++i) {
        const QMetaMethod method = metaObject.method(i);
        if (method.methodType() != QMetaMethod::Signal)
            continue;
        const auto stand = std::make_shared<Stand>(_engine, method.methodSignature(), prototype());
        // Of the signals of one name the first has all arguments.
        for (const QByteArray& text : {method.methodSignature(), method.name()})
            if (seen.insert(text).second)
                names.push_back({_engine.toStringHandle(QString::fromLatin1(text)), stand});
    }
    return names;
}

const QScriptValue& SignalGuard::prototype()
{
    if (_prototype.isObject())
        return _prototype;
    _prototype = _engine.newObject();
    _prototype.setPrototype(_engine.globalObject().property(QStringLiteral("Function")).prototype());
    _prototype.setProperty(QStringLiteral("connect"), _engine.newFunction(Connect));
    _prototype.setProperty(QStringLiteral("disconnect"), _engine.newFunction(Disconnect));
    return _prototype;
}

} // namespace openhost
