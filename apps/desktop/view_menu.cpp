// The menu of what the viewport shows and how.
// SPDX-License-Identifier: MIT

#include "view_menu.h"

#include "comparison_view.h"

#include <dzbox3.h>
#include <dzdrawstyle.h>
#include <dzmainwindow.h>
#include <dznode.h>
#include <dzscene.h>
#include <dzskeleton.h>
#include <dzviewport.h>
#include <openhost/viewport_extras.h>

#include <QActionGroup>

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

/// A bone has the shape of its figure.
const DzNode& NodeWithShape(const DzNode& node)
{
    const DzSkeleton* const figure = node.getSkeleton();
    return node.getWSBoundingBox().isValid() || !figure ? node : *figure;
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
    addSeparator();
    _comparison = std::make_unique<ComparisonView>(*view());
    addAction(_comparison->differenceEntry());
    addAction(_comparison->sideBySideEntry());
    connect(_comparison.get(), SIGNAL(placesChanged()), SLOT(frameAll()));
    connect(_styles, SIGNAL(triggered(QAction*)), SLOT(setStyle(QAction*)));
    connect(_window.getViewportMgr(), SIGNAL(activeViewportChanged(DzViewport*)), SLOT(watchViewport()));
    connect(dzScene, SIGNAL(nodeListChanged()), SLOT(updateFrames()));
    connect(dzScene, SIGNAL(nodeSelectionListChanged()), SLOT(updateFrames()));
    watchViewport();
    updateFrames();
}

ViewMenu::~ViewMenu() = default;

void ViewMenu::addStyles()
{
    const DzViewportMgr& manager = *_window.getViewportMgr();
    QString taken = QStringLiteral("afdb"); // by the entries below
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

void ViewMenu::frameAll()
{
    if (view())
        openhost::FrameInView(*view(), openhost::BoxInView(*view()));
}

void ViewMenu::frameSelection()
{
    DzBox3 all;
    for (int i = 0; view() && i < dzScene->getNumSelectedNodes(); ++i)
        all.include(openhost::BoxInView(*view(), NodeWithShape(*dzScene->getSelectedNode(i))));
    if (view())
        openhost::FrameInView(*view(), all);
}

} // namespace desktop
