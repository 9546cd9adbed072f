// The host's main window made an application.
// SPDX-License-Identifier: MIT

#include "desktop_window.h"

#include "desktop_menus.h"
#include "desktop_options.h"
#include "desktop_settings.h"
#include "drawn_icons.h"
#include "dropped_files.h"
#include "folders_dialog.h"
#include "guided_conversion.h"
#include "jobs/job_result.h"
#include "openhost/script_bounds.h"
#include "preferences_dialog.h"
#include "program_folders.h"
#include "quoted.h"
#include "sample_library_work.h"

#include <dzaction.h>
#include <dzactionmgr.h>
#include <dzapp.h>
#include <dzcontentmgr.h>
#include <dzmainwindow.h>
#include <dznode.h>
#include <dzpane.h>
#include <dzplugin.h>
#include <dzpluginmgr.h>
#include <dzscene.h>
#include <dzundostack.h>
#include <dzviewportmgr.h>

#include <QApplication>
#include <QDir>
#include <QDockWidget>
#include <QDropEvent>
#include <QFileInfo>
#include <QMessageBox>
#include <QScreen>

#include <algorithm>
#include <utility>

namespace desktop {

namespace {

const QStringList openedKinds{QStringLiteral("duf"), QStringLiteral("dsf"), QStringLiteral("obj")};

QStringList ToQ(const std::vector<std::string>& texts)
{
    QStringList all;
    for (const std::string& text : texts)
        all.append(QString::fromStdString(text));
    return all;
}

QDockWidget* DockOf(DzMainWindow& window, const char* paneClass)
{
    DzPane* const pane = window.getPaneMgr()->findPane(QLatin1String(paneClass));
    return pane ? qobject_cast<QDockWidget*>(pane->parentWidget()) : nullptr;
}

/// The list with what was added to another one, and without what was taken out of that.
QStringList WithChanges(QStringList list, const QStringList& before, const QStringList& after)
{
    for (const QString& entry : before)
        if (!after.contains(entry))
            list.removeAll(entry);
    for (const QString& entry : after)
        if (!before.contains(entry) && !list.contains(entry))
            list.append(entry);
    return list;
}

/// Figures and props, not their bones.
void SelectAll()
{
    dzScene->selectAllNodes(false);
    for (int i = 0; i < dzScene->getNumNodes(); ++i)
        if (dzScene->getNode(i)->isRootNode())
            dzScene->getNode(i)->select(true);
}

} // namespace

QIcon ApplicationIcon()
{
    QIcon icon;
    const QString folder = QStringLiteral(":/icon/");
    for (const QString& picture : QDir(folder).entryList())
        icon.addFile(folder + picture);
    return icon;
}

QSize FirstWindowSize(const QSize& available, int lineHeight)
{
    // How large the frame is nobody knows before the window is seen: a title of two lines is room enough.
    const QSize frame(lineHeight, 2 * lineHeight + lineHeight / 2);
    return QSize(1280, 800).expandedTo(available * 3 / 4).boundedTo(available - frame);
}

QStringList UseContentFolders(const QStringList& folders)
{
    DzContentMgr& content = *dzApp->getContentMgr();
    content.removeAllContentDirectories();
    QStringList missing;
    for (const QString& folder : folders) {
        if (QFileInfo(folder).isDir())
            content.addContentDirectory(QFileInfo(folder).absoluteFilePath(), false);
        else
            missing.append(folder);
    }
    return missing;
}

DesktopWindow::DesktopWindow(DesktopAttendant& attendant)
    : _window(*dzApp->getInterface()), _log(new LogWindow(&_window)),
      _jobs(new JobsWindow(&_window, CommandLineProgram(), std::make_unique<JobStore>())),
      _files(_window, attendant), _places(_window), _view(_window), _tools(new ToolBar(_window)),
      _panes(tr("&Window")), _status(_window), _unsaved(_window, _status), _undo(_status)
{
    for (QDockWidget* const dock : _window.findChildren<QDockWidget*>(QString(), Qt::FindDirectChildrenOnly))
        _panes.addAction(dock->toggleViewAction());
    _panes.addSeparator();
    _panes.addAction(_tools->toggleViewAction());
    _panes.addAction(tr("&Log"), _log, SLOT(bringUp()));
    connect(_window.getActionMgr(), SIGNAL(actionListChanged()), SLOT(arrangeMenus()));
    connect(&_files, SIGNAL(stateChanged()), SLOT(updateTitle()));
    connect(&_files, SIGNAL(morphsSaved()), &_unsaved, SLOT(update()));
    connect(&_files, SIGNAL(fileUsed(QString)), &_recent, SLOT(note(QString)));
    connect(&_recent, SIGNAL(chosen(QString)), SLOT(openRecent(QString)));
    // Of a file that comes with the start, the view has its size only then.
    connect(&_room, SIGNAL(figurePlaced()), &_view, SLOT(frameAll()), Qt::QueuedConnection);
    addActions();
    addStartPage();
    connect(_jobs, SIGNAL(resultWanted(QString, QStringList)), SLOT(openResult(QString, QStringList)));
    arrangeDocks();
    updateTitle();
    _window.setAcceptDrops(true);
    QApplication::setWindowIcon(ApplicationIcon());
    _window.installEventFilter(this);
}

DesktopWindow::~DesktopWindow()
{
    delete _jobs;
    delete _start;
    delete _tools;
    delete _log;
}

void DesktopWindow::show()
{
    const bool isRestored = RestoreLayout(_window);
    if (!isRestored)
        _window.resize(
            FirstWindowSize(_window.screen()->availableSize(), _window.fontMetrics().lineSpacing()));
    _window.show();
    if (!isRestored)
        sizeDocks();
}

void DesktopWindow::start(const Options& options)
{
    QStringList troubles;
    const Preferences preferences = RememberedPreferences(&troubles);
    dzApp->setCurrentAuthor(preferences.author);
    ApplyPreferences(preferences);
    openhost::SetScriptRights({ToQ(options.scriptFolders), options.scriptProcesses});
    const bool isRemembered = options.contentFolders.empty();
    _contentFolders = isRemembered ? preferences.contentFolders : ToQ(options.contentFolders);
    for (const QString& folder : takeContentFolders())
        troubles.append(tr("There is no content folder %1.").arg(Quoted(folder)));
    const std::string plugins =
        options.pluginFolder.empty() ? app::PluginFolder().u8string() : options.pluginFolder;
    troubles += loadPlugins(QString::fromStdString(plugins));
    troubles += openFiles(ToQ(options.files));
    if (!troubles.isEmpty())
        QMessageBox::warning(&_window, tr("Missing at the Start"), troubles.join(QLatin1Char('\n')));
}

QStringList DesktopWindow::loadPlugins(const QString& folder)
{
    if (!QFileInfo(folder).isDir())
        return {tr("There is no plug-in folder %1.").arg(Quoted(folder))};
    DzPluginMgr& manager = *dzApp->getPluginMgr();
    const int before = manager.getNumPlugins();
    manager.loadPlugins(folder);
    QStringList troubles;
    for (int i = before; i < manager.getNumPlugins(); ++i) {
        const DzPlugin* const plugin = manager.getPlugin(i);
        const QString failure = manager.getFailure(plugin);
        if (!failure.isEmpty())
            troubles.append(
                tr("The plug-in %1 could not be loaded: %2.").arg(Quoted(plugin->getName()), failure));
    }
    return troubles;
}

QStringList DesktopWindow::openFiles(const QStringList& files)
{
    QStringList troubles;
    for (const QString& file : files) {
        if (QFileInfo(file).isDir())
            troubles.append(tr("%1 is a folder, not a file.").arg(Quoted(file)));
        else if (!QFileInfo(file).isFile())
            troubles.append(tr("There is no file %1.").arg(Quoted(file)));
        else
            _files.openFile(QFileInfo(file).absoluteFilePath());
    }
    return troubles;
}

DzAction& DesktopWindow::add(const ActionTexts& texts, std::function<void()> work)
{
    auto* const action = new MenuAction(texts, std::move(work));
    _window.getActionMgr()->addAction(action);
    return *action;
}

void DesktopWindow::addActions()
{
    add({QT_TRANSLATE_NOOP("desktop::MenuAction", "&New"),
         QT_TRANSLATE_NOOP("desktop::MenuAction", "Begins with an empty scene."), "&File", QKeySequence::New},
        [this] { _files.newScene(); });
    DzAction& open =
        add({QT_TRANSLATE_NOOP("desktop::MenuAction", "&Open..."),
             QT_TRANSLATE_NOOP("desktop::MenuAction", "Opens a scene, or adds a figure to the present one."),
             "&File", QKeySequence::Open},
            [this] { _files.open(); });
    DzAction& convert =
        add({QT_TRANSLATE_NOOP("desktop::MenuAction", "&Convert a Figure..."),
             QT_TRANSLATE_NOOP("desktop::MenuAction",
                               "Chooses a figure and the one that gets its shape, and loads both."),
             "&File", QKeySequence()},
            [this] { convertFigure(); });
    add({QT_TRANSLATE_NOOP("desktop::MenuAction", "Conversion &Jobs..."),
         QT_TRANSLATE_NOOP("desktop::MenuAction",
                           "Converts many figures, one after the other, beside other work."),
         "&File", QKeySequence()},
        [this] { _jobs->bringUp(); });
    add({QT_TRANSLATE_NOOP("desktop::MenuAction", "&Merge..."),
         QT_TRANSLATE_NOOP("desktop::MenuAction", "Adds what a file holds to the scene."), "&File",
         Qt::CTRL + Qt::SHIFT + Qt::Key_O, false, &_recent},
        [this] { _files.merge(); });
    DzAction& save = add({QT_TRANSLATE_NOOP("desktop::MenuAction", "&Save Scene"),
                          QT_TRANSLATE_NOOP("desktop::MenuAction", "Writes the scene to its file."), "&File",
                          QKeySequence::Save, true},
                         [this] { _files.save(); });
    add({QT_TRANSLATE_NOOP("desktop::MenuAction", "Save Scene &As..."),
         QT_TRANSLATE_NOOP("desktop::MenuAction", "Writes the scene to another file."), "&File",
         Qt::CTRL + Qt::SHIFT + Qt::Key_S},
        [this] { _files.saveAs(); });
    _unsaved.serve(add({QT_TRANSLATE_NOOP("desktop::MenuAction", "Save Mor&phs..."),
                        QT_TRANSLATE_NOOP("desktop::MenuAction", "Writes new morphs to files of their own."),
                        "&File", QKeySequence()},
                       [this] { _files.saveMorphs(); }));
    add({QT_TRANSLATE_NOOP("desktop::MenuAction", "Content &Folders..."),
         QT_TRANSLATE_NOOP("desktop::MenuAction", "Chooses where figures are looked for."), "&File",
         QKeySequence(), true},
        [this] { chooseContentFolders(); });
    add({QT_TRANSLATE_NOOP("desktop::MenuAction", "&Quit"),
         QT_TRANSLATE_NOOP("desktop::MenuAction", "Ends the program."), "&File", Qt::CTRL + Qt::Key_Q, true},
        [this] { _window.close(); });
    DzAction& undo = add({QT_TRANSLATE_NOOP("desktop::MenuAction", "&Undo"),
                          QT_TRANSLATE_NOOP("desktop::MenuAction", "Takes the last step back."), "&Edit",
                          QKeySequence::Undo},
                         [] { dzUndoStack->undo(); });
    DzAction& redo = add({QT_TRANSLATE_NOOP("desktop::MenuAction", "&Redo"),
                          QT_TRANSLATE_NOOP("desktop::MenuAction", "Does again what was taken back."),
                          "&Edit", Qt::CTRL + Qt::SHIFT + Qt::Key_Z},
                         [] { dzUndoStack->redo(); });
    _undo.serve(undo, redo);
    fillToolBar({{open, DrawnIcon::Open},
                 {save, DrawnIcon::Save},
                 {convert, DrawnIcon::Convert},
                 {undo, DrawnIcon::Undo},
                 {redo, DrawnIcon::Redo}});
    add({QT_TRANSLATE_NOOP("desktop::MenuAction", "Select &All"),
         QT_TRANSLATE_NOOP("desktop::MenuAction", "Selects every figure and prop."), "&Edit",
         QKeySequence::SelectAll, true},
        SelectAll);
    add({QT_TRANSLATE_NOOP("desktop::MenuAction", "Select &None"),
         QT_TRANSLATE_NOOP("desktop::MenuAction", "Selects nothing."), "&Edit",
         Qt::CTRL + Qt::SHIFT + Qt::Key_A},
        [] { dzScene->selectAllNodes(false); });
    addRigChoice();
    add({QT_TRANSLATE_NOOP("desktop::MenuAction", "&Preferences..."),
         QT_TRANSLATE_NOOP("desktop::MenuAction",
                           "Content folders, author, units, memory, threads and language."),
         "&Edit", QKeySequence(), true},
        [this] { choosePreferences(); });
    add({QT_TRANSLATE_NOOP("desktop::MenuAction", "Gantrel &Manual"),
         QT_TRANSLATE_NOOP("desktop::MenuAction", "Opens the manual."), "&Help", QKeySequence::HelpContents},
        [this] { openManual(); });
    add({QT_TRANSLATE_NOOP("desktop::MenuAction", "&About Gantrel"),
         QT_TRANSLATE_NOOP("desktop::MenuAction", "Tells what this is."), "&Help", QKeySequence()},
        [this] { tellAbout(); });
}

void DesktopWindow::fillToolBar(const std::vector<std::pair<DzAction&, DrawnIcon>>& entries)
{
    for (const auto& [entry, icon] : entries) {
        if (icon == DrawnIcon::Undo)
            _tools->addSeparator();
        _tools->addEntry(entry, icon);
    }
    _tools->addSeparator();
    _tools->addEntry(*_view.frameAllEntry(), DrawnIcon::FrameAll);
    _tools->addEntry(*_view.frameSelectionEntry(), DrawnIcon::FrameSelection);
    _tools->addMenu(_view.viewpoints(), DrawnIcon::Views);
    _tools->addMenu(_view.styles(), DrawnIcon::Styles);
}

void DesktopWindow::addRigChoice()
{
    const ActionTexts texts{
        QT_TRANSLATE_NOOP("desktop::MenuAction", "&Joints Follow New Morphs"),
        QT_TRANSLATE_NOOP("desktop::MenuAction",
                          "Lets a figure bend in the right places with the shape that it is given."),
        "&Edit", QKeySequence(), true};
    auto* const choice = new MenuAction(texts, [] {});
    choice->setCheckable(true);
    connect(choice, SIGNAL(toggled(bool)), SLOT(adjustRig(bool)));
    choice->setChecked(RememberedRigAdjusting());
    _window.getActionMgr()->addAction(choice);
}

void DesktopWindow::adjustRig(bool isWanted)
{
    _rig.setWanted(isWanted);
    RememberRigAdjusting(isWanted);
}

void DesktopWindow::arrangeMenus()
{
    const DzActionMgr& actions = *_window.getActionMgr();
    for (int i = 0; i < actions.getNumActions(); ++i) {
        _rig.watch(*actions.getAction(i));
        _shapers.watch(*actions.getAction(i));
        _room.watch(*actions.getAction(i));
    }
    ArrangeMenus(_window, _view, _panes);
}

void DesktopWindow::arrangeDocks()
{
    QDockWidget* const scene = DockOf(_window, "DzHierarchyPane");
    QDockWidget* const parameters = DockOf(_window, "DzParametersPane");
    if (!scene || !parameters)
        return;
    // One under the other, since both are needed at once. What was taken out of the tabs does not go back.
    const Qt::DockWidgetArea side = _window.dockWidgetArea(scene);
    for (QDockWidget* const dock : {scene, parameters}) {
        _window.removeDockWidget(dock);
        _window.addDockWidget(side, dock, Qt::Vertical);
        dock->show();
    }
}

void DesktopWindow::sizeDocks()
{
    const int width = std::min(45 * _window.fontMetrics().averageCharWidth(), _window.width() * 3 / 10);
    const QList<QDockWidget*> sides{DockOf(_window, "DzContentLibraryPane"),
                                    DockOf(_window, "DzParametersPane")};
    const QList<QDockWidget*> right{DockOf(_window, "DzHierarchyPane"), sides.last()};
    if (sides.contains(nullptr) || right.contains(nullptr))
        return;
    _window.resizeDocks(sides, {width, width}, Qt::Horizontal);
    _window.resizeDocks(right, {_window.height() / 3, _window.height() * 2 / 3}, Qt::Vertical);
}

void DesktopWindow::addStartPage()
{
    _start = new StartPage(*_window.getViewportMgr());
    _start->showRecent(_recent.files());
    connect(_start, SIGNAL(conversionWanted()), SLOT(convertFigure()));
    connect(_start, SIGNAL(openWanted()), SLOT(openFile()));
    connect(_start, SIGNAL(samplesWanted()), SLOT(makeSamples()));
    connect(_start, SIGNAL(manualWanted()), SLOT(openManual()));
    connect(_start, SIGNAL(fileChosen(QString)), SLOT(openRecent(QString)));
    connect(&_recent, SIGNAL(listChanged(QStringList)), _start, SLOT(showRecent(QStringList)));
}

void DesktopWindow::convertFigure()
{
    GuideConversion(_window);
}

void DesktopWindow::openFile()
{
    _files.open();
}

void DesktopWindow::makeSamples()
{
    const QString folder = MakeSampleLibrary(_window);
    if (folder.isEmpty())
        return;
    const Preferences before = preferences();
    Preferences now = before;
    if (!now.contentFolders.contains(folder))
        now.contentFolders.append(folder);
    setPreferences(before, now);
    QMessageBox::information(
        &_window, tr("Make the Sample Library"),
        tr("The sample library is in %1, which is a content folder now. Convert a Figure "
           "finds its figures.")
            .arg(Quoted(folder)));
}

void DesktopWindow::openResult(const QString& target, const QStringList& dials)
{
    if (_files.openFile(target))
        ShowResult(_window, dials);
}

void DesktopWindow::updateTitle()
{
    const QString name = QFileInfo(_files.filename()).fileName();
    _window.setWindowTitle(tr("%1[*] \u2014 Gantrel").arg(name.isEmpty() ? tr("Untitled") : name));
    _window.setWindowModified(_files.isChanged());
}

bool DesktopWindow::eventFilter(QObject* object, QEvent* event)
{
    if (object != &_window)
        return QObject::eventFilter(object, event);
    switch (event->type()) {
    case QEvent::Close:
        event->setAccepted(mayClose());
        return !event->isAccepted();
    case QEvent::DragEnter:
    case QEvent::DragMove:
        return TakeFiles(static_cast<QDropEvent&>(*event), openedKinds);
    case QEvent::Drop:
        return takeDrop(static_cast<QDropEvent&>(*event));
    default:
        return false;
    }
}

bool DesktopWindow::takeDrop(QDropEvent& event)
{
    if (!TakeFiles(event, openedKinds))
        return false;
    const DroppedFiles files = FilesIn(*event.mimeData(), openedKinds);
    _waiting += files.wanted;
    _leftOut += files.others;
    // Later: who dropped them waits, and a file may need an answer.
    QMetaObject::invokeMethod(this, "openWaiting", Qt::QueuedConnection);
    return true;
}

bool DesktopWindow::mayClose()
{
    // A dialog is not to lose what it stands for.
    if (QApplication::activeModalWidget() || !_jobs->mayQuit() || !_files.mayLoseScene())
        return false;
    _jobs->queue().end();
    _jobs->hide();
    RememberLayout(_window);
    return true;
}

void DesktopWindow::openRecent(const QString& file)
{
    if (QFileInfo(file).isFile()) {
        _files.openFile(file);
        return;
    }
    _recent.forget(file);
    QMessageBox::information(&_window, tr("Open Recent"),
                             tr("There is no file %1 any more.").arg(Quoted(file)));
}

void DesktopWindow::openWaiting()
{
    // A question about one file lets others be dropped meanwhile.
    if (_isOpening)
        return;
    _isOpening = true;
    QStringList troubles;
    while (!_waiting.isEmpty())
        troubles += openFiles({_waiting.takeFirst()});
    _isOpening = false;
    if (const QStringList leftOut = std::exchange(_leftOut, {}); !leftOut.isEmpty())
        troubles.append(tr("Only .duf, .dsf and .obj files can be opened, not %1.").arg(Enumerated(leftOut)));
    if (!troubles.isEmpty())
        QMessageBox::warning(&_window, tr("Open"), troubles.join(QLatin1Char('\n')));
}

QStringList DesktopWindow::takeContentFolders()
{
    const QStringList missing = UseContentFolders(_contentFolders);
    _jobs->queue().setContentFolders(_contentFolders);
    const bool isAny = dzApp->getContentMgr()->getNumContentDirectories() > 0;
    _status.tell(StatusLine::Folders,
                 isAny ? QString() : tr("Choose File > Content Folders to say where your figures are."));
    return missing;
}

void DesktopWindow::chooseContentFolders()
{
    const Preferences before = preferences();
    FoldersDialog dialog(&_window, _contentFolders);
    if (dialog.exec() != QDialog::Accepted)
        return;
    Preferences now = before;
    now.contentFolders = dialog.folders();
    setPreferences(before, now);
}

/// With the content folders that this run has.
Preferences DesktopWindow::preferences() const
{
    Preferences all = RememberedPreferences();
    all.contentFolders = _contentFolders;
    all.author = dzApp->getCurrentAuthor();
    return all;
}

void DesktopWindow::setPreferences(Preferences before, const Preferences& wanted)
{
    // The folders that only this run was started with are not kept for others.
    Preferences kept = wanted;
    const QStringList keptFolders = RememberedPreferences().contentFolders;
    if (before.contentFolders != keptFolders)
        kept.contentFolders = WithChanges(keptFolders, before.contentFolders, wanted.contentFolders);
    before.contentFolders = keptFolders;
    QStringList troubles = RememberPreferences(before, kept);
    if (!troubles.isEmpty())
        troubles.prepend(tr("Not everything could be kept for the next time.") + QLatin1Char('\n'));
    dzApp->setCurrentAuthor(wanted.author);
    ApplyPreferences(wanted);
    if (wanted.contentFolders != _contentFolders) {
        _contentFolders = wanted.contentFolders;
        for (const QString& folder : takeContentFolders())
            troubles.append(tr("There is no content folder %1.").arg(Quoted(folder)));
    }
    if (!troubles.isEmpty())
        QMessageBox::warning(&_window, tr("Preferences"), troubles.join(QLatin1Char('\n')));
}

void DesktopWindow::choosePreferences()
{
    const Preferences before = preferences();
    PreferencesDialog dialog(&_window, before);
    if (dialog.exec() == QDialog::Accepted)
        setPreferences(before, dialog.preferences());
}

/// The manual is the plug-in's.
void DesktopWindow::openManual()
{
    if (DzAction* const action = _window.getActionMgr()->findAction(QStringLiteral("GntOpenManualAction")))
        action->trigger();
    else
        QMessageBox::information(&_window, tr("Gantrel Manual"),
                                 tr("The manual comes with the plug-in, which is not loaded."));
}

void DesktopWindow::tellAbout()
{
    const QString text =
        tr("<p><b>Gantrel %1</b></p><p>Shapes of older figure generations as morphs on Genesis "
           "9, in a window of its own.</p>")
            .arg(QLatin1String(GANTREL_VERSION));
    QMessageBox box(QMessageBox::NoIcon, tr("About Gantrel"), text, QMessageBox::Ok, &_window);
    box.setTextFormat(Qt::RichText);
    box.setIconPixmap(ApplicationIcon().pixmap(64));
    box.exec();
}

} // namespace desktop
