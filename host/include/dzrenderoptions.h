// What a render is to look like.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzbase.h"

#include <QSize>

class DzRenderOptions : public DzBase {
    Q_OBJECT
    Q_PROPERTY(QSize imageSize READ getImageSize WRITE setImageSize)
public:
    DzRenderOptions();
    ~DzRenderOptions();

    /// Pixels; 1300 x 1000 until somebody sets another size.
    Q_INVOKABLE QSize getImageSize() const { return _imageSize; }
    /// Each side is kept within 1 and 16384.
    Q_INVOKABLE void setImageSize(const QSize& size);
    /// Width through height.
    Q_INVOKABLE double getAspect() const;

signals:
    void imageSizeChanged();

private:
    QSize _imageSize;
};
