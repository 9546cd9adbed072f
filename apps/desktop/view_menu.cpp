// The menu of what the viewport shows and how.
// SPDX-License-Identifier: MIT

#include "view_menu.h"

#include "comparison_view.h"
#include "desktop_settings.h"
#include "look_menu.h"
#include "mouse_help.h"
#include "viewpoints.h"

#include <dzbox3.h>
#include <dzdrawstyle.h>
#include <dzmainwindow.h>
#include <dznode.h>
#include <dzscene.h>
#include <dzskeleton.h>
#include <dzviewport.h>
#include <openhost/viewport_extras.h>

#include <QActionGroup>
#include <QCoreApplication>

namespace desktop {

namespace {

/// The letters that entries have underlined, in lower case.
QString UnderlinedLetters(const QMenu& menu)
{
    QString letters;
    for (const QAction* const entry : menu.actions()) {
        const int mark = entry->text().indexOf(QLatin1Char('&'));
        letters += entry->text().mid(mark + 1, mark < 0 ? 0 : 1).toLower();
    }
    return letters;
}

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
    : QMenu(tr("&View")), _window(window), _styles(new QActionGroup(this)), _styleMenu(tr("Draw Style")),
      _frameAll(nullptr), _frameSelection(nullptr)
{
    addStyles();
    addSeparator();
    _frameAll = addAction(tr("Frame &All"), this, SLOT(frameAll()), Qt::CTRL + Qt::SHIFT + Qt::Key_F);
    _frameSelection = addAction(tr("&Frame Selection"), this, SLOT(frameSelection()), Qt::CTRL + Qt::Key_F);
    addExtras();
    underlineStyles();
    connect(_styles, SIGNAL(triggered(QAction*)), SLOT(setStyle(QAction*)));
    connect(_window.getViewportMgr(), SIGNAL(activeViewportChanged(DzViewport*)), SLOT(watchViewport()));
    connect(dzScene, SIGNAL(nodeListChanged()), SLOT(updateFrames()));
    connect(dzScene, SIGNAL(nodeSelectionListChanged()), SLOT(updateFrames()));
    watchViewport();
    updateFrames();
}

ViewMenu::~ViewMenu()
{
    delete _viewButtons;
    delete _mouseHelp; // they know the entries
}

QMenu& ViewMenu::viewpoints() const
{
    return *_viewpoints;
}

void ViewMenu::addExtras()
{
    _viewpoints = std::make_unique<ViewpointsMenu>(*view());
    addMenu(_viewpoints.get());
    addSeparator();
    _comparison = std::make_unique<ComparisonView>(*view());
    addAction(_comparison->differenceEntry());
    addAction(_comparison->sideBySideEntry());
    connect(_comparison.get(), SIGNAL(placesChanged()), SLOT(frameAll()));
    addSeparator();
    _ground = addAction(tr("&Ground Grid"));
    _buttons = addAction(tr("View B&uttons"));
    _viewButtons = MakeViewButtons(*view(), *_viewpoints);
    const ViewChoices choices = RememberedViewChoices();
    for (QAction* const entry : {_ground, _buttons}) {
        entry->setCheckable(true);
        entry->setChecked(entry == _ground ? choices.showsGround : choices.showsButtons);
        connect(entry, SIGNAL(triggered()), SLOT(showExtras()));
    }
    _look = std::make_unique<LookMenu>();
    addMenu(_look.get());
    addSeparator();
    QAction* const help = addAction(tr("&Mouse and Keys"));
    help->setShortcut(Qt::SHIFT + Qt::Key_F1);
    _mouseHelp = MakeMouseHelp(*view(), *help, *this);
    if (!choices.drawStyle.isEmpty())
        view()->setUserDrawStyle(choices.drawStyle);
    showExtras();
}

void ViewMenu::showExtras()
{
    if (!view())
        return;
    openhost::ShowGround(*view(), _ground->isChecked());
    _viewButtons->setVisible(_buttons->isChecked());
    remember();
}

void ViewMenu::remember() const
{
    const DzDrawStyle* const style = view()->getDrawStyle();
    RememberViewChoices(
        {_ground->isChecked(), _buttons->isChecked(), style ? style->getDescription() : QString()});
}

void ViewMenu::addStyles()
{
    const DzViewportMgr& manager = *_window.getViewportMgr();
    for (int i = 0; i < manager.getNumUserDrawStyles(); ++i) {
        const QString style = manager.getUserDrawStyle(i)->getDescription();
        // The description tells styles apart in any language.
        QAction* const entry =
            addAction(QCoreApplication::translate("openhost::DrawStyles", style.toUtf8().constData()));
        entry->setData(style);
        entry->setCheckable(true);
        if (i < 9)
            entry->setShortcut(Qt::CTRL + Qt::Key_1 + i);
        _styles->addAction(entry);
    }
    _styleMenu.addActions(_styles->actions());
}

/// Last, since the other entries have letters of their own.
void ViewMenu::underlineStyles()
{
    QString taken = UnderlinedLetters(*this);
    for (QAction* const entry : _styles->actions())
        entry->setText(WithMnemonic(entry->text(), taken));
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
    if (!view())
        return;
    view()->setUserDrawStyle(entry->data().toString());
    remember();
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
