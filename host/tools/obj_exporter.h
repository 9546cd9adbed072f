// The host's OBJ exporter.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzexporter.h"

/// Writes world-space geometry at the present resolution, vertices in the mesh's own order unless an option
/// asks for cleaning up.
class DzObjExporter : public DzExporter {
    Q_OBJECT

public:
    DzObjExporter();

    QString getDescription() const override;
    void getDefaultOptions(DzFileIOSettings* options) const override;
    bool getOptions(DzFileIOSettings* options, bool useInterface, const QString& filename) override;

protected:
    DzError write(const QString& filename, const DzFileIOSettings* options) override;
};
