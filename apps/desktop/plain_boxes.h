// Message boxes that show names as they are.
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

namespace desktop {

/// While it lives, no message box judges by its text whether that is markup, which names of files and figures
/// may look like. A box with markup says so with setTextFormat().
class PlainBoxes : public QObject {
    Q_OBJECT

public:
    PlainBoxes();

protected:
    bool eventFilter(QObject* object, QEvent* event) override;
};

} // namespace desktop
