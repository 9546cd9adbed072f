// The unit that lengths are shown and typed in.
// SPDX-License-Identifier: MIT

#include "openhost/length_unit.h"

#include "dzslider.h"

#include <QApplication>

namespace openhost {

namespace {

LengthUnit g_unit = LengthUnit::Centimetre;

} // namespace

LengthUnit ShownLengthUnit()
{
    return g_unit;
}

void ShowLengthsIn(LengthUnit unit)
{
    g_unit = unit;
    for (QWidget* const widget : QApplication::allWidgets())
        if (qobject_cast<DzSlider*>(widget)) {
            widget->updateGeometry();
            widget->update();
        }
}

} // namespace openhost
