// The menu of what the viewport shows and how.
// SPDX-License-Identifier: MIT

#include "view_menu.h"

#include <dzbox3.h>
#include <dzcamera.h>
#include <dzdrawstyle.h>
#include <dzmainwindow.h>
#include <dznode.h>
#include <dzscene.h>
#include <dzskeleton.h>
#include <dzviewport.h>

#include <QActionGroup>

#include <algorithm>

namespace desktop {

namespace {

/// With the first letter underlined that no entry before has; it is added to those.
QString WithMnemonic(const QString& text, QString& taken)
{
    for (int i = 0; i < text.size(); ++i) {
        const QChar letter = text[i].toLower();
        if (!letter.isLetter() || taken.contains(letter))
            continue;
        taken.append(letter);
        return text.left(i) + QLatin1Char('&') + text.mid(i);
    }
    return text;
}

/// Of the node's shape; a bone has that of its figure.
DzBox3 BoxOf(const DzNode& node)
{
    const DzBox3 box = node.getWSBoundingBox();
    const DzSkeleton* const figure = node.getSkeleton();
    return box.isValid() || !figure ? box : figure->getWSBoundingBox();
}

} // namespace

ViewMenu::ViewMenu(DzMainWindow& window)
    : QMenu(tr("&View")), _window(window), _styles(new QActionGroup(this)), _frameAll(nullptr),
      _frameSelection(nullptr)
{
    addStyles();
    addSeparator();
    _frameAll = addAction(tr("Frame &All"), this, SLOT(frameAll()), Qt::CTRL + Qt::SHIFT + Qt::Key_F);
    _frameSelection = addAction(tr("&Frame Selection"), this, SLOT(frameSelection()), Qt::CTRL + Qt::Key_F);
    connect(_styles, SIGNAL(triggered(QAction*)), SLOT(setStyle(QAction*)));
    connect(_window.getViewportMgr(), SIGNAL(activeViewportChanged(DzViewport*)), SLOT(watchViewport()));
    connect(dzScene, SIGNAL(nodeListChanged()), SLOT(updateFrames()));
    connect(dzScene, SIGNAL(nodeSelectionListChanged()), SLOT(updateFrames()));
    watchViewport();
    updateFrames();
}

void ViewMenu::addStyles()
{
    const DzViewportMgr& manager = *_window.getViewportMgr();
    QString taken = QStringLiteral("af"); // by the entries below
    for (int i = 0; i < manager.getNumUserDrawStyles(); ++i) {
        const QString style = manager.getUserDrawStyle(i)->getDescription();
        QAction* const entry = addAction(WithMnemonic(style, taken));
        entry->setData(style);
        entry->setCheckable(true);
        if (i < 9)
            entry->setShortcut(Qt::CTRL + Qt::Key_1 + i);
        _styles->addAction(entry);
    }
}

Dz3DViewport* ViewMenu::view() const
{
    const DzViewport* const viewport = _window.getViewportMgr()->getActiveViewport();
    return viewport ? viewport->get3DViewport() : nullptr;
}

void ViewMenu::watchViewport()
{
    if (view())
        connect(view(), SIGNAL(drawStyleChanged()), SLOT(showStyle()), Qt::UniqueConnection);
    showStyle();
}

void ViewMenu::setStyle(QAction* entry)
{
    if (view())
        view()->setUserDrawStyle(entry->data().toString());
}

void ViewMenu::showStyle()
{
    const DzDrawStyle* const style = view() ? view()->getDrawStyle() : nullptr;
    for (QAction* const entry : _styles->actions())
        entry->setChecked(style && entry->data().toString() == style->getDescription());
}

void ViewMenu::updateFrames()
{
    _frameAll->setEnabled(dzScene->getNumNodes() > 0);
    _frameSelection->setEnabled(dzScene->getNumSelectedNodes() > 0);
}

void ViewMenu::frame(const DzBox3& box)
{
    if (view() && view()->getCamera())
        view()->getCamera()->frame(box, float(view()->width()) / float(std::max(1, view()->height())));
}

void ViewMenu::frameAll()
{
    frame(dzScene->getBoundingBox());
}

void ViewMenu::frameSelection()
{
    DzBox3 all;
    for (int i = 0; i < dzScene->getNumSelectedNodes(); ++i)
        all.include(BoxOf(*dzScene->getSelectedNode(i)));
    frame(all);
}

} // namespace desktop
