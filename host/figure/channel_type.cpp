// What kind of channel a property is in files.
// SPDX-License-Identifier: MIT

#include "figure/channel_type.h"

#include "dzboolproperty.h"
#include "dzenumproperty.h"
#include "dzintproperty.h"

#include <QString>
#include <QVariant>

namespace openhost {

namespace {

const char* const ownType = "channelType";

} // namespace

std::string ChannelTypeOf(const DzNumericProperty& property)
{
    const QString own = property.property(ownType).toString();
    if (!own.isEmpty())
        return own.toStdString();
    if (qobject_cast<const DzBoolProperty*>(&property))
        return "bool";
    if (qobject_cast<const DzEnumProperty*>(&property))
        return "enum";
    return qobject_cast<const DzIntProperty*>(&property) ? "int" : "float";
}

void SetChannelType(DzNumericProperty& property, const std::string& type)
{
    property.setProperty(ownType, QString::fromStdString(type));
}

} // namespace openhost
