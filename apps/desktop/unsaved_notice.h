// Telling of morphs that are not saved.
// SPDX-License-Identifier: MIT

#pragma once

#include "openhost/events.h"

#include <QObject>
#include <QTimer>

class QAction;
class QMainWindow;

namespace desktop {

class StatusLine;

/// Keeps the status line, and the entry that saves such morphs, as the scene is.
class UnsavedNotice : public QObject {
    Q_OBJECT

public:
    /// @param window  borrowed, as are the others
    UnsavedNotice(QMainWindow& window, StatusLine& status);

    /// @param entry  enabled while there is something to save
    void serve(QAction& entry);

public slots:
    void update();

protected:
    /// The window's turning to and from other windows, in which morphs are saved.
    bool eventFilter(QObject* object, QEvent* event) override;

private slots:
    void handleEdit(openhost::SceneEdit edit);

private:
    StatusLine& _status;
    QAction* _entry = nullptr;
    QTimer _afterWork;
    QTimer _soon; ///< since what loads a figure tells of each of its nodes
};

} // namespace desktop
