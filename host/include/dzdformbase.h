// The centre of a D-Former.
// SPDX-License-Identifier: MIT

#pragma once

#include "dznode.h"

class DzDFormBase : public DzNode {
    Q_OBJECT
public:
    DzDFormBase();
    ~DzDFormBase();
};
