// The legend of colours that stand for distances.
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

namespace desktop {

/// The colours from none to the end of the scale, with millimetres below, and that of what lies beyond.
class ColorBar : public QWidget {
    Q_OBJECT

public:
    explicit ColorBar(QWidget* parent);

    void setTop(double millimetres);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    double _top = 1.0;
};

} // namespace desktop
