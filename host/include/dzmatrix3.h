// 3x3 and affine matrices.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzvec3.h"

/// A linear map; columns multiply vectors from the right.
class DzMatrix3 {
public:
    DzMatrix3(); ///< identity

    double& at(int row, int column) { return _m[row][column]; }
    double at(int row, int column) const { return _m[row][column]; }
    DzVec3 multVec(const DzVec3& v) const;

private:
    double _m[3][3];
};
