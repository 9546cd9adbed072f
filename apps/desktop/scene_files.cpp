// Opening files and saving the scene, with the questions that belong to it.
// SPDX-License-Identifier: MIT

#include "apps/desktop/scene_files.h"

#include <dzapp.h>
#include <dzcontentmgr.h>
#include <dzscene.h>

#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>

#include <utility>

namespace desktop {

SceneFiles::SceneFiles(QWidget& window)
    : _window(window),
      _changes([this] { emit stateChanged(); }, [this](const QString& file) { return mayReplaceScene(file); })
{
    connect(dzScene, SIGNAL(sceneCleared()), SLOT(handleSceneCleared()));
    connect(dzScene, SIGNAL(sceneLoaded()), SLOT(handleSceneLoaded()));
}

bool SceneFiles::open()
{
    const QString file = askForFile(tr("Open"));
    return !file.isEmpty() && openFile(file);
}

bool SceneFiles::merge()
{
    const QString file = askForFile(tr("Merge"));
    return !file.isEmpty() && dzApp->getContentMgr()->openFile(file, true);
}

bool SceneFiles::openFile(const QString& file)
{
    DzContentMgr& content = *dzApp->getContentMgr();
    return content.openFile(file, content.shouldMerge(file));
}

bool SceneFiles::mayReplaceScene(const QString& file)
{
    if (!mayLoseScene())
        return false;
    _replacing = file;
    _isReplaced = false;
    return true;
}

void SceneFiles::handleSceneCleared()
{
    _isReplaced = !_replacing.isEmpty();
}

void SceneFiles::handleSceneLoaded()
{
    // Also after a load that failed before the old scene went.
    const QString file = std::exchange(_replacing, QString());
    if (std::exchange(_isReplaced, false))
        setFile(file);
}

QString SceneFiles::askForFile(const QString& title)
{
    const QString filter = tr("Scenes and figures (*.duf *.dsf);;Meshes (*.obj);;All files (*)");
    const QString file = QFileDialog::getOpenFileName(&_window, title, _folder, filter);
    if (!file.isEmpty())
        _folder = QFileInfo(file).absolutePath();
    return file;
}

bool SceneFiles::saveAs()
{
    QFileDialog dialog(&_window, tr("Save Scene As"), _filename.isEmpty() ? _folder : _filename,
                       tr("Scenes (*.duf)"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(QStringLiteral("duf"));
    return dialog.exec() == QDialog::Accepted && save(dialog.selectedFiles().value(0));
}

bool SceneFiles::save(const QString& file)
{
    const DzError error = dzScene->saveScene(file);
    if (error == DZ_NO_ERROR) {
        _folder = QFileInfo(file).absolutePath();
        setFile(file);
        return true;
    }
    QMessageBox::warning(&_window, tr("Save Scene As"),
                         tr("The scene could not be saved as \u201C%1\u201D: %2")
                             .arg(QDir::toNativeSeparators(file), getErrorMessage(error)));
    return false;
}

bool SceneFiles::mayLoseScene()
{
    if (!isChanged())
        return true;
    QMessageBox question(QMessageBox::Question, tr("Unsaved Scene"),
                         tr("The scene has been changed. Would you like to save it?"),
                         QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, &_window);
    question.setDefaultButton(QMessageBox::Save);
    question.setEscapeButton(QMessageBox::Cancel);
    const int answer = question.exec();
    return answer == QMessageBox::Discard || (answer == QMessageBox::Save && saveAs());
}

void SceneFiles::setFile(const QString& file)
{
    _filename = file;
    _changes.setChanged(false);
    emit stateChanged();
}

} // namespace desktop
