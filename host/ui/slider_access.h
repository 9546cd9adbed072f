// The numbers of any slider, for assistive technology.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzslider.h"
#include "slider_text.h"

class DzSliderAccess {
public:
    static double number(const DzSlider& slider) { return slider.number(); }
    static double minimum(const DzSlider& slider) { return slider.minimum(); }
    static double maximum(const DzSlider& slider) { return slider.maximum(); }
    static double step(const DzSlider& slider) { return slider.step(); }
    /// What the number counts; nothing in particular at first.
    static void setQuantity(DzSlider& slider, openhost::Quantity quantity);
    static void setNumber(DzSlider& slider, double number) { slider.setNumber(number); }
};

namespace openhost {

/// Makes sliders known to assistive technology; calls after the first change nothing.
void MakeSlidersAccessible();

} // namespace openhost
