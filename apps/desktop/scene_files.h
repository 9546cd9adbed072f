// Opening files and saving the scene, with the questions that belong to it.
// SPDX-License-Identifier: MIT

#pragma once

#include "scene_changes.h"

#include <QDateTime>
#include <QObject>
#include <QString>
#include <QStringList>

class QWidget;

namespace desktop {

class DesktopAttendant;

/// The scene and the file that it is saved in. Every failure is told in a box.
class SceneFiles : public QObject {
    Q_OBJECT

public:
    /// @param window     borrowed; boxes and dialogs stand over it
    /// @param attendant  borrowed; brings the host's question whether the scene may go
    SceneFiles(QWidget& window, DesktopAttendant& attendant);
    ~SceneFiles() override;

    bool isChanged() const { return _changes.isChanged(); }
    /// Empty for a scene that was neither saved nor opened as one: figures are never written over.
    QString filename() const { return _file.name; }

    // False when the user changed their mind, or when it failed.
    bool newScene();
    bool open();
    bool merge();
    /// To the scene's own file; asks for one where there is none. Asks once, too, before that loses what
    /// could not be read from the file, or what somebody else has written to it since.
    bool save();
    bool saveAs();
    /// Morphs, to files of their own, as the user chooses.
    bool saveMorphs();
    /// What is no scene is added; a scene replaces the present one, after a question if that was changed, as
    /// it does when it is opened elsewhere in the program.
    bool openFile(const QString& file);
    /// As mayLoseScene(); the file is the scene's own once it is loaded.
    bool mayReplaceScene(const QString& file);
    /// Asks what is to become of changes and of morphs that are not saved. False when the user would rather
    /// go on.
    bool mayLoseScene();

signals:
    void stateChanged();                ///< of the file or of the changes
    void fileUsed(const QString& file); ///< opened or saved
    void morphsSaved();

private slots:
    void handleSceneCleared();
    void handleSceneLoaded();
    void handleLeftOut(const QString& file, const QString& what);

private:
    /// A scene's file as it was when it was read or written.
    struct File {
        QString name;
        QDateTime changed;
        QStringList leftOut; ///< what of it is not in the scene
    };

    bool isEmpty() const;
    bool isSceneLost() const; ///< when it goes now
    bool saveTo(const QString& file);
    bool write(const QString& file);
    QString reasonAgainstOverwriting() const;
    QString askForFile(const QString& title);
    void setFile(const File& file);

    QWidget& _window;
    DesktopAttendant& _attendant;
    SceneChanges _changes;
    File _file;
    QString _folder; ///< where the user was last
    File _replacing; ///< the one that is to take the scene's place
    bool _isReplaced = false;
};

} // namespace desktop
