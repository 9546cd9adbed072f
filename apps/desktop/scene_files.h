// Opening files and saving the scene, with the questions that belong to it.
// SPDX-License-Identifier: MIT

#pragma once

#include "apps/desktop/scene_changes.h"

#include <QObject>
#include <QString>

class QWidget;

namespace desktop {

/// The scene and the file that it is saved in. Every failure is told in a box.
class SceneFiles : public QObject {
    Q_OBJECT

public:
    /// @param window  borrowed; boxes and dialogs stand over it
    explicit SceneFiles(QWidget& window);

    bool isChanged() const { return _changes.isChanged(); }
    QString filename() const { return _filename; } ///< empty for a scene that was never saved

    // False when the user changed their mind, or when it failed.
    bool open();
    bool merge();
    bool saveAs();
    /// What is no scene is added; a scene replaces the present one, after a question if that was changed, as
    /// it does when it is opened elsewhere in the program.
    bool openFile(const QString& file);
    /// Asks what is to become of changes that are not saved. False when the user would rather go on.
    bool mayLoseScene();

signals:
    void stateChanged(); ///< of the file or of the changes

private slots:
    void handleSceneCleared();
    void handleSceneLoaded();

private:
    bool mayReplaceScene(const QString& file);
    bool save(const QString& file);
    QString askForFile(const QString& title);
    void setFile(const QString& file);

    QWidget& _window;
    SceneChanges _changes;
    QString _filename;
    QString _folder;    ///< where the user was last
    QString _replacing; ///< the file that is to take the scene's place
    bool _isReplaced = false;
};

} // namespace desktop
