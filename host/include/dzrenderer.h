// Renderers.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzbase.h"

class DzCamera;
class DzRenderOptions;

/// Draws the scene into a picture file.
class DzRenderer : public DzBase {
    Q_OBJECT
public:
    explicit DzRenderer(const QString& name);
    ~DzRenderer();

    /// Writes a PNG or JPEG file, as its name ends, beside its place first.
    /// @return false, with the reason in the log, when it cannot be written
    virtual bool render(const DzCamera& camera, const DzRenderOptions& options, const QString& filename) = 0;
};
