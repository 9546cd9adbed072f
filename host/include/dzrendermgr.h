// Rendering.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzbase.h"

#include <memory>

class DzRenderOptions;
class DzRenderer;

class DzRenderMgr : public DzBase {
    Q_OBJECT
public:
    DzRenderMgr();
    ~DzRenderMgr();

    /// The manager's.
    Q_INVOKABLE DzRenderOptions* getRenderOptions() const;
    Q_INVOKABLE DzRenderer* getActiveRenderer() const;
    /// Draws the scene through the active viewport's camera into a PNG or JPEG file, as
    /// its name ends.
    /// @return false, with the reason in the log, without a camera when the name is another one, or when
    /// the file cannot be written
    Q_INVOKABLE bool doRender(const QString& filename);

private:
    struct Impl;
    std::unique_ptr<Impl> _impl;
};
