// Classes that scripts make of arguments.
// SPDX-License-Identifier: MIT

#include "script_constructors.h"

#include "dzbone.h"
#include "dzboolproperty.h"
#include "dzenumproperty.h"
#include "dzerclink.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzintproperty.h"
#include "dzsettings.h"
#include "dzstringproperty.h"
#include "file_classes.h"
#include "openhost/class_registry.h"

#include <optional>

namespace openhost {

namespace {

template <class T>
class MadeOf : public DzClassFactory, public TakesArguments {
public:
    using Make = T* (*)(const QVariantList& arguments);

    MadeOf(const char* arguments, Make make)
        : DzClassFactory(&T::staticMetaObject, DzGuid()), _arguments(arguments), _make(make)
    {
        RegisterClassFactory(this);
    }
    QObject* createInstance() const override { return _make(QVariantList()); }
    QObject* createInstance(const QVariantList& arguments) const override { return _make(arguments); }
    const char* arguments() const override { return _arguments; }

private:
    const char* _arguments;
    Make _make;
};

const char* const propertyArguments = "name, canAnimate = true, isUserProperty = true, defaultValue";

/// @param Value  of the default
template <class Property, class Value>
Property* MakeProperty(const QVariantList& arguments)
{
    const QString name = arguments.value(0).toString();
    if (name.isEmpty() || arguments.size() > 4)
        return nullptr;
    const bool canAnimate = arguments.value(1, true).toBool(), isUsers = arguments.value(2, true).toBool();
    return new Property(name, canAnimate, isUsers, arguments.value(3).value<Value>());
}

std::optional<DzERCLink::ERCType> ToLinkType(const QVariant& value)
{
    const int number = value.toInt();
    if (number < DzERCLink::ERCDeltaAdd || number > DzERCLink::ERCKeyed)
        return std::nullopt;
    return static_cast<DzERCLink::ERCType>(number);
}

DzERCLink* MakeLink(const QVariantList& given)
{
    // Without a type the property comes first.
    const bool hasType = !given.value(0).value<QObject*>();
    const auto type = hasType ? ToLinkType(given.value(0)) : std::make_optional(DzERCLink::ERCDeltaAdd);
    const QVariantList rest = given.mid(hasType ? 1 : 0);
    auto* const controller = qobject_cast<DzNumericProperty*>(rest.value(0).value<QObject*>());
    if (!type || !controller || rest.size() > 3)
        return nullptr;
    return new DzERCLink(*type, controller, rest.value(1, 1.0).toDouble(), rest.value(2, 0.0).toDouble());
}

template <class T>
T* MakeNamed(const QVariantList& arguments)
{
    const QString name = arguments.value(0).toString();
    return name.isEmpty() || arguments.size() > 1 ? nullptr : new T(name);
}

const MadeOf<DzERCLink> link("type = DzERCLink.ERCDeltaAdd, property, scalar = 1, addend = 0", MakeLink);
const MadeOf<DzFloatProperty> floatProperty(propertyArguments, MakeProperty<DzFloatProperty, float>);
const MadeOf<DzIntProperty> intProperty(propertyArguments, MakeProperty<DzIntProperty, int>);
const MadeOf<DzBoolProperty> boolProperty(propertyArguments, MakeProperty<DzBoolProperty, bool>);
const MadeOf<DzEnumProperty> enumProperty(propertyArguments, MakeProperty<DzEnumProperty, int>);
const MadeOf<DzStringProperty> stringProperty(propertyArguments, MakeProperty<DzStringProperty, QString>);
const MadeOf<DzFile> file("name", MakeNamed<DzFile>);
const MadeOf<DzFileInfo> fileInfo("name", MakeNamed<DzFileInfo>);
const MadeOf<DzDir> dir("name", MakeNamed<DzDir>);
const BuiltInClass<DzBone> bone;
const BuiltInClass<DzFigure> figure;
const BuiltInClass<DzSettings> settings;

} // namespace

} // namespace openhost
