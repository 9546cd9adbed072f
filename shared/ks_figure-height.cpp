// Making one figure as tall as another.
// SPDX-License-Identifier: MIT

#include "ks_figure-height.h"

#include "ks_wait-cursor.h"

#include <dzbox3.h>
#include <dzfigure.h>
#include <dzfloatproperty.h>

namespace kst {
namespace daz {

namespace {

const float dialStep = 0.005f;
const int maxSteps = 2002;

float Top(const DzFigure& figure)
{
    return figure.getWSBoundingBox().getMax().m_y;
}

} // namespace

float AdjustFigureHeight(DzFigure& figure, DzFloatProperty& heightProperty, const DzFigure& reference)
{
    const WaitCursor waitCursor;
    // The dial stays in single precision from here on; widening it can move the step at which the loop stops.
    float value = static_cast<float>(heightProperty.getDoubleValue());
    const float before = value;
    const float referenceTop = Top(reference);
    const bool isGrowing = referenceTop > Top(figure);
    for (int steps = 0; steps < maxSteps; ++steps) {
        const float top = Top(figure);
        if (isGrowing ? top > referenceTop : top < referenceTop)
            return before;
        value += isGrowing ? dialStep : -dialStep;
        heightProperty.setValue(value);
    }
    return -1.0f;
}

} // namespace daz
} // namespace kst
