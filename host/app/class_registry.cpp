// Factories of the host's own classes.
// SPDX-License-Identifier: MIT

#include "openhost/class_registry.h"

#include "openhost/testing.h"

namespace openhost {

namespace {

// A function's static, since other files register while static objects are being made.
QList<const DzClassFactory*>& Factories()
{
    static QList<const DzClassFactory*> factories;
    return factories;
}

/// The newest last.
QList<const ClassFactoryOverride*>& Overrides()
{
    static QList<const ClassFactoryOverride*> overrides;
    return overrides;
}

} // namespace

ClassFactoryOverride::ClassFactoryOverride(const QString& className, const DzClassFactory* factory)
    : _className(className), _factory(factory)
{
    Overrides().append(this);
}

ClassFactoryOverride::~ClassFactoryOverride()
{
    Overrides().removeOne(this);
}

void RegisterClassFactory(const DzClassFactory* factory)
{
    Factories().append(factory);
}

const DzClassFactory* FindBuiltInClassFactory(const QString& className)
{
    for (int i = Overrides().size() - 1; i >= 0; --i)
        if (Overrides().at(i)->className() == className)
            return Overrides().at(i)->factory();
    for (const DzClassFactory* factory : Factories()) {
        if (factory->className() == className)
            return factory;
    }
    return nullptr;
}

QList<const DzClassFactory*> BuiltInClassFactories()
{
    return Factories();
}

} // namespace openhost

DzClassFactory::DzClassFactory(const QMetaObject* metaObject, const DzGuid& guid)
    : _metaObject(metaObject), _guid(guid)
{
}

DzClassFactory::~DzClassFactory() = default;

void DzClassFactory::registerClass(QScriptEngine& engine) const
{
    engine.globalObject().setProperty(className(), engine.newQMetaObject(_metaObject));
}

QString DzClassFactory::className() const
{
    return QLatin1String(_metaObject->className());
}

QScriptValue DzClassFactory::refuseArguments(QScriptContext& context, const QString& className,
                                             const QString& arguments)
{
    const bool isNameless = context.argumentCount() == 1 && context.argument(0).isString() &&
                            context.argument(0).toString().isEmpty();
    const QString what =
        isNameless ? QStringLiteral("an empty text makes") : QStringLiteral("these arguments make");
    return context.throwError(QScriptContext::TypeError,
                              QStringLiteral("%1 no %2; it is new %2(%3)").arg(what, className, arguments));
}
