// Links of one figure's dials for the dials of another.
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>
#include <memory>

class DzNumericController;
class DzNumericProperty;

namespace openhost {

/// Which property stands for one that a link reads; null where none does.
using Counterpart = std::function<DzNumericProperty*(const DzNumericProperty& input)>;

/// A link that does the same with the counterparts of all that the link reads; null where one of them has no
/// counterpart, and for a link of a kind that nobody knows.
std::unique_ptr<DzNumericController> CopyLink(const DzNumericController& link,
                                              const Counterpart& counterpart);

} // namespace openhost
