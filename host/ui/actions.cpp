// Actions, and the main window without its views.
// SPDX-License-Identifier: MIT

#include "dzaction.h"
#include "dzactionmgr.h"
#include "dzdeleteaction.h"
#include "dzmainwindow.h"
#include "dzpanemgr.h"
#include "dzplugin.h"
#include "dzscene.h"
#include "dzviewportmgr.h"
#include "main_panes.h"
#include "menus.h"
#include "scene/undo_recording.h"

#include <memory>

namespace {

/// Of a menu's entry: without its underlined letter and the dots before a question.
QString WithoutMarks(QString text)
{
    text.remove(QLatin1Char('&'));
    return text.endsWith(QLatin1String("...")) ? text.chopped(3) : text;
}

} // namespace

DzAction::DzAction(const QString& text, const QString& description, bool isToggle)
    : QAction(nullptr), _description(description)
{
    setText(text);
    setToolTip(description);
    setCheckable(isToggle);
    connect(this, SIGNAL(triggered()), SLOT(handleTriggered()));
}

DzAction::~DzAction() = default;

QString DzAction::getActionGroup() const
{
    return QString();
}
QString DzAction::getDefaultMenuPath() const
{
    return QString();
}
QKeySequence DzAction::getDefaultAccel() const
{
    return QKeySequence();
}
void DzAction::executeAction() {}

void DzAction::handleTriggered()
{
    const openhost::UserStep step(WithoutMarks(text()));
    emit preExecute();
    executeAction();
}

DzActionMgr::DzActionMgr(QWidget* parent) : QWidget(parent)
{
    hide();
}
DzActionMgr::~DzActionMgr()
{
    qDeleteAll(_actions);
}

DzAction* DzActionMgr::findAction(const QString& className) const
{
    for (DzAction* action : _actions) {
        if (className == QLatin1String(action->metaObject()->className()))
            return action;
    }
    return nullptr;
}

int DzActionMgr::getNumActions() const
{
    return _actions.size();
}

DzAction* DzActionMgr::getAction(int index) const
{
    return index >= 0 && index < _actions.size() ? _actions.at(index) : nullptr;
}

void DzActionMgr::addAction(DzAction* action)
{
    if (!action || _actions.contains(action))
        return;
    action->setShortcut(action->getDefaultAccel());
    _actions.append(action);
    emit actionListChanged();
}

void DzActionMgr::addActions(const DzPlugin& plugin)
{
    for (int i = 0; i < plugin.getNumClassFactories(); ++i) {
        std::unique_ptr<QObject> object(plugin.getClassFactory(i)->createInstance());
        if (auto* const action = qobject_cast<DzAction*>(object.get())) {
            object.release();
            addAction(action);
        }
    }
}

void DzActionMgr::removeActions(const DzPlugin& plugin)
{
    const auto isOfPlugin = [&plugin](const DzAction& action) {
        for (int i = 0; i < plugin.getNumClassFactories(); ++i)
            if (plugin.getClassFactory(i)->matches(action.metaObject()))
                return true;
        return false;
    };
    for (DzAction* const action : QList<DzAction*>(_actions)) {
        if (!isOfPlugin(*action))
            continue;
        _actions.removeOne(action);
        delete action;
    }
    emit actionListChanged();
}

DzDeleteAction::DzDeleteAction()
    : DzAction(tr("&Delete Selected Items"), tr("Deletes the selected items from the scene."))
{
    connect(dzScene, SIGNAL(nodeSelectionListChanged()), SLOT(updateEnabled()));
    updateEnabled();
}

DzDeleteAction::~DzDeleteAction() = default;

QString DzDeleteAction::getActionGroup() const
{
    return QStringLiteral("Edit");
}
QString DzDeleteAction::getDefaultMenuPath() const
{
    return QStringLiteral("&Edit");
}
QKeySequence DzDeleteAction::getDefaultAccel() const
{
    return QKeySequence(Qt::Key_Delete);
}
void DzDeleteAction::executeAction()
{
    dzScene->removeSelected();
}
void DzDeleteAction::updateEnabled()
{
    setEnabled(dzScene->getNumSelectedNodes() > 0);
}

DzMainWindow::DzMainWindow()
    : _actionMgr(new DzActionMgr(this)), _paneMgr(new DzPaneMgr(this)), _viewportMgr(new DzViewportMgr(this))
{
    setCentralWidget(_viewportMgr);
    openhost::AddPanes(*this);
    connect(_actionMgr, SIGNAL(actionListChanged()), SLOT(handleActionListChanged()));
}

DzMainWindow::~DzMainWindow() = default;

void DzMainWindow::handleActionListChanged()
{
    openhost::FillMenus(*this, *_actionMgr);
}
