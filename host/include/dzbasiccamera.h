// The camera that a user adds to the scene.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzcamera.h"

class DzBasicCamera : public DzCamera {
    Q_OBJECT
public:
    DzBasicCamera();
    ~DzBasicCamera();
};
