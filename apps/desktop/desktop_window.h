// The host's main window made an application.
// SPDX-License-Identifier: MIT

#pragma once

#include "dialog_places.h"
#include "jobs/jobs_window.h"
#include "log_window.h"
#include "plain_boxes.h"
#include "recent_files.h"
#include "rig_follower.h"
#include "scene_files.h"
#include "shaper_watch.h"
#include "standing_room.h"
#include "start_page.h"
#include "status_line.h"
#include "tool_bar.h"
#include "undo_menu.h"
#include "unsaved_notice.h"
#include "view_menu.h"

#include <QIcon>
#include <QMenu>
#include <QObject>
#include <QPointer>
#include <QStringList>

#include <utility>
#include <vector>

class DzAction;
class DzMainWindow;
class QDropEvent;

namespace desktop {

struct Options;
struct ActionTexts;
struct Preferences;

/// Menus, docks and questions around the window of the running host, which has to outlive it. One at a time.
class DesktopWindow : public QObject {
    Q_OBJECT

public:
    /// @param attendant  the running host's; borrowed
    explicit DesktopWindow(DesktopAttendant& attendant);
    ~DesktopWindow() override;

    /// As it was left the last time.
    void show();
    /// Takes the content folders, loads the plug-ins and opens the files. What is missing is told in one box.
    void start(const Options& options);

    SceneFiles& files() { return _files; }
    JobsWindow& jobs() { return *_jobs; }

protected:
    /// The window's closing, and files that are dropped on it.
    bool eventFilter(QObject* object, QEvent* event) override;

private slots:
    void arrangeMenus();
    void updateTitle();
    void openRecent(const QString& file);
    void openWaiting();
    void adjustRig(bool isWanted);
    void convertFigure();
    void openFile();
    void makeSamples();
    void openManual();
    void openResult(const QString& target, const QStringList& dials);

private:
    bool mayClose();
    bool takeDrop(QDropEvent& event); ///< as an event filter
    void addActions();
    void addStartPage();
    DzAction& add(const ActionTexts& texts, std::function<void()> work);
    void addRigChoice();
    void fillToolBar(const std::vector<std::pair<DzAction&, DrawnIcon>>& entries);
    void arrangeDocks();
    void sizeDocks();
    QStringList loadPlugins(const QString& folder);
    QStringList openFiles(const QStringList& files);
    /// @return those that are missing
    QStringList takeContentFolders();
    void chooseContentFolders();
    void choosePreferences();
    Preferences preferences() const;
    /// @param before  what was shown when it was changed
    void setPreferences(Preferences before, const Preferences& wanted);
    void tellAbout();

    DzMainWindow& _window;
    PlainBoxes _boxes; ///< from the first question on
    /// Goes with the window if that goes first. Before all that read settings, which may be damaged.
    QPointer<LogWindow> _log;
    QPointer<JobsWindow> _jobs; ///< likewise
    QPointer<StartPage> _start; ///< the viewport manager's
    SceneFiles _files;
    RecentFilesMenu _recent;
    RigFollower _rig;
    ShaperWatch _shapers;
    StandingRoom _room;
    DialogPlaces _places;
    ViewMenu _view;
    QPointer<ToolBar> _tools; ///< the window's
    QMenu _panes;
    StatusLine _status;
    UnsavedNotice _unsaved;
    UndoMenu _undo;
    QStringList _waiting; ///< files that were dropped
    QStringList _leftOut; ///< likewise, of other kinds
    bool _isOpening = false;
    QStringList _contentFolders; ///< those that are not there too
};

/// Of the window where none is remembered: large, and with its frame on the screen.
/// @param available   the screen without bars, in pixels
/// @param lineHeight  of the window's text, in pixels
QSize FirstWindowSize(const QSize& available, int lineHeight);
/// What windows, task bars and menus show.
QIcon ApplicationIcon();
/// Makes them the host's only ones, as far as they are there.
/// @return those that are not
QStringList UseContentFolders(const QStringList& folders);

} // namespace desktop
