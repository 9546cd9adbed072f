// What stands in a corner of the view.
// SPDX-License-Identifier: MIT

#pragma once

#include <QFrame>

namespace desktop {

/// As large as what it holds, as far as there is room; stays in its corner.
class Overlay : public QFrame {
    Q_OBJECT

public:
    /// @param view    owns it
    /// @param corner  of the view, or its middle
    Overlay(QWidget& view, Qt::Alignment corner);

    /// Where there is room; a side of 0 is what its contents wish.
    void setPreferredSize(const QSize& size);

signals:
    /// By the key Esc, while the focus is in it; where nobody listens, the key goes on to the view.
    void dismissed();

public slots:
    /// Again, after its contents have changed.
    void takeCorner();

protected:
    bool eventFilter(QObject* object, QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    Qt::Alignment _corner;
    QSize _preferred{0, 0};
};

} // namespace desktop
