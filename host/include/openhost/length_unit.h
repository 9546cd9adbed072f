// The unit that lengths are shown and typed in.
// SPDX-License-Identifier: MIT

#pragma once

namespace openhost {

enum class LengthUnit { Centimetre, Metre, Inch };

/// Centimetres, unless somebody chose another one. Values stay in centimetres everywhere.
LengthUnit ShownLengthUnit();
/// All sliders of lengths follow.
void ShowLengthsIn(LengthUnit unit);

} // namespace openhost
