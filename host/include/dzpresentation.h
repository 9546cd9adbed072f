// How an asset is shown in libraries.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzbase.h"

class DzPresentation : public DzBase {
    Q_OBJECT
public:
    DzPresentation();
    ~DzPresentation();

    QString getType() const { return _type; }
    void setType(const QString& type) { _type = type; }
    QString getLabel() const { return _label; }
    void setLabel(const QString& label) { _label = label; }
    QString getDescription() const { return _description; }
    void setDescription(const QString& description) { _description = description; }

private:
    QString _type, _label, _description;
};
