// What the window's lowest line tells for as long as it holds.
// SPDX-License-Identifier: MIT

#pragma once

#include <QMap>
#include <QString>

class QMainWindow;

namespace desktop {

/// Not the toolkit's messages, which vanish when the pointer is on a menu. Without anything to tell there is
/// no line.
class StatusLine {
public:
    enum Subject { Folders, Morphs, Undo };

    /// @param window  borrowed
    explicit StatusLine(QMainWindow& window) : _window(window) {}

    /// In place of what was told of the subject before; nothing where the text is empty.
    void tell(Subject subject, const QString& text);

private:
    QMainWindow& _window;
    QMap<Subject, QString> _texts;
};

} // namespace desktop
