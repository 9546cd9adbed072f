// Dials that stand for none that is there.
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

class DzProperty;

namespace openhost {

/// Why turning the dial would turn nothing, as the end of a sentence that begins with its name: it is an
/// alias of what its figure did not have when it was loaded. Empty for every other dial.
std::string WhyIdle(const DzProperty& dial);

} // namespace openhost
