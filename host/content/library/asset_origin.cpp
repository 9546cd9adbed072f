// Where properties and links of the scene come from.
// SPDX-License-Identifier: MIT

#include "library/asset_origin.h"

#include "dson/uri.h"
#include "dzcontroller.h"
#include "dznumericproperty.h"
#include "library/content_paths.h"

#include <cstring>

#include <QByteArray>
#include <QVariant>

namespace openhost {

namespace {

const char* const uriKey = "openhost.assetUri";
const char* const linkKey = "openhost.fromDataFile";
const char* const definedKey = "openhost.asDefined"; // the value, then the settings

QByteArray Bytes(double value)
{
    return QByteArray(reinterpret_cast<const char*>(&value), int(sizeof value));
}

/// As bytes, since a figure may have a hundred thousand dials.
QByteArray Settings(const DzNumericProperty& property)
{
    QByteArray settings;
    for (const QString& text : {property.getLabel(), QString(QLatin1Char('\n')), property.getPath()})
        settings.append(reinterpret_cast<const char*>(text.constData()), text.size() * int(sizeof(QChar)));
    for (const double limit : {property.getDoubleMin(), property.getDoubleMax()})
        settings.append(Bytes(limit));
    for (const bool flag : {property.isClamped(), property.isHidden(), property.isLocked()})
        settings.append(flag ? '1' : '0');
    return settings;
}

} // namespace

bool IsDataFile(const std::string& decodedPath)
{
    const std::string extension = ".dsf";
    return decodedPath.size() > extension.size() &&
           FoldCase(decodedPath.substr(decodedPath.size() - extension.size())) == extension;
}

DzUri AssetUri(const std::string& decodedPath, const std::string& id)
{
    return IsDataFile(decodedPath) ? DzUri(QString::fromStdString(dson::MakeUri(decodedPath, id))) : DzUri();
}

void SetAssetUri(QObject& made, const DzUri& uri)
{
    if (!uri.isEmpty())
        made.setProperty(uriKey, uri.toString());
}

DzUri AssetUriOf(const QObject& made)
{
    return DzUri(made.property(uriKey).toString());
}

void SetAsDefined(DzNumericProperty& property)
{
    property.setProperty(definedKey, Bytes(property.getDoubleRawValue()) + Settings(property));
}

bool HasChanged(const DzNumericProperty& property)
{
    const QVariant defined = property.property(definedKey);
    return defined.isValid() && defined.toByteArray().mid(int(sizeof(double))) != Settings(property);
}

bool HasOwnValue(const DzNumericProperty& property)
{
    if (property.getDoubleRawValue() != property.getDoubleDefaultValue())
        return true;
    const QByteArray defined = property.property(definedKey).toByteArray();
    double value = property.getDoubleRawValue();
    // Scripts may have written something else.
    if (defined.size() >= int(sizeof value))
        std::memcpy(&value, defined.constData(), sizeof value);
    return value != property.getDoubleRawValue();
}

void SetFromDataFile(DzController& link)
{
    link.setProperty(linkKey, true);
}

bool IsFromDataFile(const DzController& link)
{
    return link.property(linkKey).toBool();
}

} // namespace openhost
