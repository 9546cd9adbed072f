// Shared geometry.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzrefcounteditem.h"

class DzGeometry : public DzRefCountedItem {
    Q_OBJECT
public:
    DzGeometry();
    ~DzGeometry();

    QString getName() const { return _name; }
    void setName(const QString& name) { _name = name; }
    /// A deep copy with a count of 0.
    virtual DzGeometry* makeCopy(bool copyTopology = true, bool copyGroups = true) const = 0;

private:
    QString _name;
};

typedef DzTRefPtr<DzGeometry> DzGeometryPtr;
