// What kind of channel a property is in files.
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

class DzNumericProperty;

namespace openhost {

/// That of the property's class, unless its own file has another.
std::string ChannelTypeOf(const DzNumericProperty& property);
/// Its own file's, for a type that the host has no class for.
void SetChannelType(DzNumericProperty& property, const std::string& type);

} // namespace openhost
