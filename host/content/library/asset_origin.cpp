// Where properties and links of the scene come from.
// SPDX-License-Identifier: MIT

#include "library/asset_origin.h"

#include "dson/uri.h"
#include "dzcontroller.h"
#include "dznumericproperty.h"
#include "library/content_paths.h"

#include <QStringList>
#include <QVariant>

namespace openhost {

namespace {

const char* const uriKey = "openhost.assetUri";
const char* const linkKey = "openhost.fromDataFile";
const char* const settingsKey = "openhost.asDefined";

QString Settings(const DzNumericProperty& property)
{
    const QStringList parts{property.getLabel(),
                            property.getPath(),
                            QString::number(property.getDoubleMin(), 'g', 17),
                            QString::number(property.getDoubleMax(), 'g', 17),
                            QString::number(int(property.isClamped())),
                            QString::number(int(property.isHidden())),
                            QString::number(int(property.isLocked()))};
    return parts.join(QLatin1Char('\n'));
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
    property.setProperty(settingsKey, Settings(property));
}

bool HasChanged(const DzNumericProperty& property)
{
    const QVariant settings = property.property(settingsKey);
    return settings.isValid() && settings.toString() != Settings(property);
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
