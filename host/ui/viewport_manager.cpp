// Viewports, tools, draw styles and the perspective view.
// SPDX-License-Identifier: MIT

#include "dz3dviewport.h"
#include "dzbasiccamera.h"
#include "dzdrawstyle.h"
#include "dzfloatproperty.h"
#include "dzviewport.h"
#include "dzviewportmgr.h"
#include "viewport_picture.h"
#include "viewport_tools.h"

#include <QPointer>
#include <QVBoxLayout>

#include <algorithm>
#include <vector>

namespace {

template <class T>
T* At(const std::vector<std::unique_ptr<T>>& list, int index)
{
    return index >= 0 && index < int(list.size()) ? list[std::size_t(index)].get() : nullptr;
}

/// Stands before a figure's middle and looks at it.
void Arrange(DzCamera& camera)
{
    const QString name = QLatin1String(QT_TRANSLATE_NOOP("openhost::Views", "Perspective View"));
    camera.setName(name);
    camera.setLabel(name);
    camera.getYPosControl()->setDoubleValue(110.0);
    camera.getZPosControl()->setDoubleValue(400.0);
    camera.aimAt(DzVec3(0.0f, 90.0f, 0.0f));
}

} // namespace

struct DzViewportMgr::Impl {
    // Guarded, since whoever gets hold of them may delete them.
    QPointer<DzBasicCamera> perspectiveView{new DzBasicCamera};
    QPointer<DzViewport> viewport; ///< the widget's child
    QPointer<DzViewport> activeViewport;
    std::vector<std::unique_ptr<DzViewTool>> tools;
    std::vector<std::unique_ptr<DzUserDrawStyle>> styles;
    DzViewTool* activeTool = nullptr;
};

DzDrawStyle::DzDrawStyle(const QString& description) : _description(description)
{
    setName(description);
}
DzDrawStyle::~DzDrawStyle() = default;
DzUserDrawStyle::DzUserDrawStyle(const QString& description) : DzDrawStyle(description) {}
DzUserDrawStyle::~DzUserDrawStyle() = default;

DzViewportMgr::DzViewportMgr(QWidget* parent) : QWidget(parent), _impl(new Impl)
{
    Arrange(*_impl->perspectiveView);
    _impl->tools.push_back(std::make_unique<DzUniversalTool>());
    _impl->tools.push_back(std::make_unique<DzPickTool>());
    _impl->tools.push_back(std::make_unique<DzPolygonGroupEditorTool>());
    for (const openhost::DrawMethod& method : openhost::drawMethods)
        _impl->styles.push_back(std::make_unique<DzUserDrawStyle>(QLatin1String(method.description)));
    auto* const viewport = new DzViewport(this);
    viewport->get3DViewport()->setCamera(_impl->perspectiveView);
    viewport->get3DViewport()->setDrawStyle(_impl->styles.front().get());
    _impl->viewport = viewport;
    _impl->activeViewport = viewport;
    setActiveTool(_impl->tools.front().get());
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(viewport);
}

DzViewportMgr::~DzViewportMgr()
{
    delete _impl->viewport; // it looks through the camera
    delete _impl->perspectiveView;
}

DzViewTool* DzViewportMgr::findTool(const QString& className) const
{
    for (const auto& tool : _impl->tools)
        if (className == QLatin1String(tool->metaObject()->className()))
            return tool.get();
    return nullptr;
}

int DzViewportMgr::getNumTools() const
{
    return int(_impl->tools.size());
}
DzViewTool* DzViewportMgr::getTool(int index) const
{
    return At(_impl->tools, index);
}
DzViewTool* DzViewportMgr::getActiveTool() const
{
    return _impl->activeTool;
}

void DzViewportMgr::setActiveTool(DzViewTool* tool)
{
    const auto isOurs = [tool](const std::unique_ptr<DzViewTool>& own) { return own.get() == tool; };
    if (tool == _impl->activeTool || std::none_of(_impl->tools.begin(), _impl->tools.end(), isOurs))
        return;
    if (_impl->activeTool)
        _impl->activeTool->setActive(false);
    _impl->activeTool = tool;
    tool->setActive(true);
    emit activeToolChanged(tool);
}

int DzViewportMgr::getNumViewports() const
{
    return _impl->viewport ? 1 : 0;
}
DzViewport* DzViewportMgr::getViewport(int index) const
{
    return index == 0 ? _impl->viewport : nullptr;
}
DzViewport* DzViewportMgr::getActiveViewport() const
{
    return _impl->activeViewport;
}

void DzViewportMgr::setActiveViewport(DzViewport* viewport)
{
    if (!viewport || viewport != _impl->viewport || viewport == _impl->activeViewport)
        return;
    _impl->activeViewport = viewport;
    emit activeViewportChanged(viewport);
}

DzUserDrawStyle* DzViewportMgr::findUserDrawStyle(const QString& description) const
{
    for (const auto& style : _impl->styles)
        if (description.compare(style->getDescription(), Qt::CaseInsensitive) == 0)
            return style.get();
    return nullptr;
}

int DzViewportMgr::getNumUserDrawStyles() const
{
    return int(_impl->styles.size());
}
DzUserDrawStyle* DzViewportMgr::getUserDrawStyle(int index) const
{
    return At(_impl->styles, index);
}
DzCamera* DzViewportMgr::getPerspectiveView() const
{
    return _impl->perspectiveView;
}
