// The entries that take back and do again.
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

class QAction;

namespace desktop {

class StatusLine;

/// Keeps them as the steps are: named after the step, or grey without one.
class UndoMenu : public QObject {
    Q_OBJECT

public:
    /// From now on what is done to the scene can be taken back.
    /// @param status  borrowed; tells when steps were forgotten
    explicit UndoMenu(StatusLine& status);

    /// Both are borrowed.
    void serve(QAction& undo, QAction& redo);

private slots:
    void update();
    void tellRestart(const QString& what);
    void forgetRestart();

private:
    StatusLine& _status;
    QAction* _undo = nullptr;
    QAction* _redo = nullptr;
};

} // namespace desktop
