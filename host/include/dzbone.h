// Bones of a skeleton.
// SPDX-License-Identifier: MIT

#pragma once

#include "dznode.h"

class DzBone : public DzNode {
    Q_OBJECT
public:
    DzBone();
    ~DzBone();

protected:
    void propertyValueChanged(DzProperty* property) override;
};
