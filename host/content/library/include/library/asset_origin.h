// Where properties and links of the scene come from.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzuri.h"
#include "openhost/asset_uri.h"

#include <string>

class DzController;
class DzNumericProperty;
class QObject;

namespace openhost {

/// True for a path that other files may refer to: a data file. What users save may be moved by them.
bool IsDataFile(const std::string& decodedPath);

/// The address of an asset; empty when its file is no data file.
DzUri AssetUri(const std::string& decodedPath, const std::string& id);

/// Notes which asset of a data file defines a dial or an object; nothing for an empty address.
void SetAssetUri(QObject& made, const DzUri& uri);

/// Notes that value, label, limits and display are now as the asset has them.
void SetAsDefined(DzNumericProperty& property);
/// Whether any of them but the value has been changed since; false for a property that was never noted.
bool HasChanged(const DzNumericProperty& property);
/// Whether the raw value has to be told: it is not the default, or the asset has another one present.
bool HasOwnValue(const DzNumericProperty& property);

/// Notes that a data file brings the link along.
void SetFromDataFile(DzController& link);
bool IsFromDataFile(const DzController& link);

} // namespace openhost
