// Making objects of classes known by name.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzguid.h"

#include <QObject>
#include <QScriptEngine>
#include <QVariant>

/// Makes instances of one class. Known to the application once its plug-in is loaded.
class DzClassFactory {
public:
    DzClassFactory(const QMetaObject* metaObject, const DzGuid& guid);
    virtual ~DzClassFactory();

    /// A new object that the caller owns; null on failure.
    virtual QObject* createInstance() const = 0;
    virtual QObject* createInstance(const QVariantList& arguments) const = 0;
    /// Makes the class known to a script engine.
    virtual void registerClass(QScriptEngine& engine) const;

    QString className() const;
    const QMetaObject* metaObject() const { return _metaObject; }
    DzGuid guid() const { return _guid; }
    /// Throws a TypeError in the script.
    /// @param arguments  that `new` of the class takes, as one would write them; empty for none
    static QScriptValue refuseArguments(QScriptContext& context, const QString& className,
                                        const QString& arguments);
    bool matches(const QMetaObject* metaObject) const { return _metaObject == metaObject; }

private:
    Q_DISABLE_COPY(DzClassFactory)
    const QMetaObject* _metaObject;
    DzGuid _guid;
};

/// A factory whose class scripts can make with `new`.
template <class T>
class DzTCustomClassFactory : public DzClassFactory {
public:
    DzTCustomClassFactory(const QMetaObject* metaObject, const DzGuid& guid)
        : DzClassFactory(metaObject, guid)
    {
    }

    void registerClass(QScriptEngine& engine) const override
    {
        qScriptRegisterMetaType<T*>(&engine, objectToScript, objectFromScript);
        const QScriptValue constructor = engine.newFunction(objectCreateFromScript);
        engine.globalObject().setProperty(className(), engine.newQMetaObject(metaObject(), constructor));
    }
    static QScriptValue objectToScript(QScriptEngine* engine, T* const& object)
    {
        return engine->newQObject(object, QScriptEngine::QtOwnership,
                                  QScriptEngine::PreferExistingWrapperObject |
                                      QScriptEngine::ExcludeDeleteLater);
    }
    static void objectFromScript(const QScriptValue& value, T*& object)
    {
        object = qobject_cast<T*>(value.toQObject());
    }
    static QScriptValue objectCreateFromScript(QScriptContext* context, QScriptEngine* engine)
    {
        if (context->argumentCount() > 0)
            return refuseArguments(*context, QLatin1String(T::staticMetaObject.className()), QString());
        return engine->newQObject(new T, QScriptEngine::ScriptOwnership);
    }
};
