// Opening files and saving the scene, with the questions that belong to it.
// SPDX-License-Identifier: MIT

#include "scene_files.h"

#include "desktop_attendant.h"
#include "quoted.h"
#include "save_morphs_dialog.h"
#include "unsaved_morphs.h"

#include <dzapp.h>
#include <dzcontentmgr.h>
#include <dzscene.h>
#include <dzundostack.h>

#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>

#include <utility>

namespace desktop {

namespace {

const QLatin1String extension(".duf");

/// As the host names the file that it writes.
QString WithExtension(const QString& file)
{
    return file.endsWith(extension, Qt::CaseInsensitive) ? file : file + extension;
}

QDateTime ChangeOf(const QString& file)
{
    return QFileInfo(file).lastModified();
}

enum class Overwriting { Refused, Wanted, Elsewhere };

Overwriting AskAboutOverwriting(QWidget& window, const QString& reason)
{
    QMessageBox question(QMessageBox::Warning, SceneFiles::tr("Save Scene"), reason, QMessageBox::Cancel,
                         &window);
    question.setTextFormat(Qt::PlainText);
    const QAbstractButton* const overwrite =
        question.addButton(SceneFiles::tr("&Overwrite"), QMessageBox::DestructiveRole);
    QPushButton* const elsewhere = question.addButton(SceneFiles::tr("Save &As..."), QMessageBox::AcceptRole);
    question.setDefaultButton(elsewhere);
    question.setEscapeButton(QMessageBox::Cancel);
    question.exec();
    if (question.clickedButton() == elsewhere)
        return Overwriting::Elsewhere;
    return question.clickedButton() == overwrite ? Overwriting::Wanted : Overwriting::Refused;
}

enum class Losing { Refused, Wanted, SaveScene, SaveMorphs };

/// @param morphs  labels of those that go; none where only the scene does
Losing AskBeforeLosing(QWidget& window, bool isSceneLost, const QStringList& morphs)
{
    QMessageBox question(QMessageBox::Question,
                         isSceneLost ? SceneFiles::tr("Unsaved Scene") : SceneFiles::tr("Unsaved Morphs"),
                         QString(), QMessageBox::Discard | QMessageBox::Cancel, &window);
    question.setTextFormat(Qt::PlainText);
    if (isSceneLost)
        question.setText(SceneFiles::tr("The scene has been changed. Would you like to save it?"));
    else
        question.setText(SceneFiles::tr("New morphs are not saved. Would you like to save them?"));
    if (!morphs.isEmpty())
        question.setInformativeText(
            SceneFiles::tr("Morphs in no file of their own: %1.").arg(Enumerated(morphs)));
    const QAbstractButton* const scene = isSceneLost ? question.addButton(QMessageBox::Save) : nullptr;
    QPushButton* const saveMorphs =
        morphs.isEmpty() ? nullptr
                         : question.addButton(SceneFiles::tr("Save &Morphs..."), QMessageBox::AcceptRole);
    question.setDefaultButton(saveMorphs ? saveMorphs
                                         : qobject_cast<QPushButton*>(question.button(QMessageBox::Save)));
    question.setEscapeButton(QMessageBox::Cancel);
    const int answer = question.exec();
    const QAbstractButton* const clicked = question.clickedButton();
    if (clicked && clicked == scene)
        return Losing::SaveScene;
    if (clicked && clicked == saveMorphs)
        return Losing::SaveMorphs;
    return answer == QMessageBox::Discard ? Losing::Wanted : Losing::Refused;
}

} // namespace

SceneFiles::SceneFiles(QWidget& window, DesktopAttendant& attendant) : _window(window), _attendant(attendant)
{
    _attendant.serve(this);
    connect(&_changes, SIGNAL(toggled()), SIGNAL(stateChanged()));
    connect(&openhost::Events(), SIGNAL(contentLeftOut(QString, QString)),
            SLOT(handleLeftOut(QString, QString)));
    connect(dzScene, SIGNAL(sceneCleared()), SLOT(handleSceneCleared()));
    connect(dzScene, SIGNAL(sceneLoaded()), SLOT(handleSceneLoaded()));
}

SceneFiles::~SceneFiles()
{
    _attendant.serve(nullptr);
}

bool SceneFiles::newScene()
{
    if (!mayLoseScene())
        return false;
    _replacing = File();
    dzScene->clear();
    dzUndoStack->clear();
    setFile(File());
    return true;
}

bool SceneFiles::open()
{
    const QString file = askForFile(tr("Open"));
    return !file.isEmpty() && openFile(file);
}

bool SceneFiles::merge()
{
    const QString file = askForFile(tr("Merge"));
    if (file.isEmpty() || !dzApp->getContentMgr()->openFile(file, true))
        return false;
    emit fileUsed(file);
    return true;
}

bool SceneFiles::openFile(const QString& file)
{
    DzContentMgr& content = *dzApp->getContentMgr();
    if (!content.openFile(file, content.shouldMerge(file)))
        return false;
    emit fileUsed(file);
    return true;
}

bool SceneFiles::mayReplaceScene(const QString& file)
{
    if (!mayLoseScene())
        return false;
    _replacing = {file, ChangeOf(file), {}};
    _isReplaced = false;
    return true;
}

void SceneFiles::handleSceneCleared()
{
    _isReplaced = !_replacing.name.isEmpty();
}

void SceneFiles::handleSceneLoaded()
{
    // Also after a load that failed before the old scene went.
    const File file = std::exchange(_replacing, File());
    if (!std::exchange(_isReplaced, false))
        return;
    dzUndoStack->clear();
    setFile(file);
}

void SceneFiles::handleLeftOut(const QString&, const QString& what)
{
    _replacing.leftOut.append(what);
}

QString SceneFiles::askForFile(const QString& title)
{
    const QString filter = tr("Scenes and figures (*.duf *.dsf);;Meshes (*.obj);;All files (*)");
    const QString file = QFileDialog::getOpenFileName(&_window, title, _folder, filter);
    if (!file.isEmpty())
        _folder = QFileInfo(file).absolutePath();
    return file;
}

bool SceneFiles::isEmpty() const
{
    return dzScene->getNumNodes() == 0;
}

bool SceneFiles::save()
{
    return _file.name.isEmpty() ? saveAs() : saveTo(_file.name);
}

bool SceneFiles::saveAs()
{
    if (isEmpty())
        return write(QString());
    QFileDialog dialog(&_window, tr("Save Scene As"), _file.name.isEmpty() ? _folder : _file.name,
                       tr("Scenes (*.duf)"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(QStringLiteral("duf"));
    if (dialog.exec() != QDialog::Accepted)
        return false;
    const QString chosen = dialog.selectedFiles().value(0);
    const QString file = WithExtension(chosen);
    // The dialog has asked about the name as it was typed.
    if (file != chosen && QFileInfo::exists(file) &&
        QMessageBox::question(
            &_window, tr("Save Scene As"),
            tr("The file %1 is there already. Would you like to replace it?").arg(Quoted(file))) !=
            QMessageBox::Yes)
        return false;
    return saveTo(file);
}

bool SceneFiles::saveTo(const QString& file)
{
    const QString reason = file == _file.name ? reasonAgainstOverwriting() : QString();
    const Overwriting overwriting =
        reason.isEmpty() ? Overwriting::Wanted : AskAboutOverwriting(_window, reason);
    if (overwriting == Overwriting::Elsewhere)
        return saveAs();
    return overwriting == Overwriting::Wanted && write(file);
}

QString SceneFiles::reasonAgainstOverwriting() const
{
    if (!QFileInfo::exists(_file.name))
        return QString();
    if (ChangeOf(_file.name) != _file.changed)
        return tr("The file %1 has been changed by another program. Saving would lose these changes.")
            .arg(Quoted(_file.name));
    if (_file.leftOut.isEmpty())
        return QString();
    return tr("Not everything in %1 could be read, and saving would lose the rest:\n\n%2")
        .arg(Quoted(_file.name), _file.leftOut.join(QLatin1Char('\n')));
}

bool SceneFiles::write(const QString& file)
{
    if (isEmpty()) {
        QMessageBox::information(&_window, tr("Save Scene"),
                                 tr("The scene is empty: there is nothing to save."));
        return false;
    }
    const DzError error = dzScene->saveScene(file);
    if (error == DZ_NO_ERROR) {
        _folder = QFileInfo(file).absolutePath();
        setFile({file, ChangeOf(file), {}});
        return true;
    }
    QMessageBox::warning(
        &_window, tr("Save Scene"),
        tr("The scene could not be saved as %1: %2").arg(Quoted(file), getErrorMessage(error)));
    return false;
}

bool SceneFiles::saveMorphs()
{
    if (UnsavedMorphs().empty()) {
        QMessageBox::information(&_window, tr("Save Morphs"), tr("Every morph is in a file of its own."));
        return false;
    }
    SaveMorphsDialog dialog(&_window);
    if (dialog.exec() != QDialog::Accepted)
        return false;
    emit morphsSaved();
    QMessageBox::information(
        &_window, tr("Save Morphs"),
        tr("Saved to %1: %2.").arg(Quoted(dialog.contentFolder()), Enumerated(dialog.saved())));
    return true;
}

bool SceneFiles::isSceneLost() const
{
    const bool wasNeverThere = isEmpty() && _file.name.isEmpty();
    return isChanged() && !wasNeverThere;
}

bool SceneFiles::mayLoseScene()
{
    // Each answer saves one of the two, and says nothing of the other.
    for (;;) {
        const QStringList morphs = MorphsAtRisk(!isChanged());
        if (!isSceneLost() && morphs.isEmpty())
            return true;
        const Losing answer = AskBeforeLosing(_window, isSceneLost(), morphs);
        const bool isSaved =
            (answer == Losing::SaveScene && save()) || (answer == Losing::SaveMorphs && saveMorphs());
        if (!isSaved)
            return answer == Losing::Wanted;
    }
}

void SceneFiles::setFile(const File& file)
{
    _file = file;
    _changes.setChanged(false);
    emit stateChanged();
    if (!file.name.isEmpty())
        emit fileUsed(file.name);
}

} // namespace desktop
