// Rendering the scene into picture files.
// SPDX-License-Identifier: MIT

#include "app/guard.h"
#include "base/errors.h"
#include "dz3dviewport.h"
#include "dzapp.h"
#include "dzcamera.h"
#include "dzmainwindow.h"
#include "dzrenderer.h"
#include "dzrendermgr.h"
#include "dzrenderoptions.h"
#include "dzscene.h"
#include "dzviewport.h"
#include "dzviewportmgr.h"
#include "openhost/picture_file.h"
#include "openhost/scene_picture.h"
#include "scene/camera_optics.h"

#include <QPointer>

#include <algorithm>
#include <filesystem>

namespace {

/// Soft light from three lamps that stand around the camera.
class StudioRenderer : public DzRenderer {
public:
    StudioRenderer() : DzRenderer(QStringLiteral("Studio")) {}

    bool render(const DzCamera& camera, const DzRenderOptions& options, const QString& filename) override
    {
        geometry::PictureOptions picture;
        picture.width = options.getImageSize().width();
        picture.height = options.getImageSize().height();
        picture.camera = openhost::OpticsOf(camera, static_cast<float>(options.getAspect()));
        return openhost::GuardHostCall({filename.toStdString()}, [&] {
            const std::filesystem::path file = std::filesystem::u8path(filename.toStdString());
            openhost::CheckPictureName(file);
            openhost::WritePicture(file, geometry::Render(openhost::VisibleItems(*dzScene).items, picture));
            return true;
        });
    }
};

} // namespace

DzRenderOptions::DzRenderOptions() : _imageSize(1300, 1000) {}
DzRenderOptions::~DzRenderOptions() = default;

void DzRenderOptions::setImageSize(const QSize& size)
{
    constexpr int largest = 16384;
    const QSize kept(std::clamp(size.width(), 1, largest), std::clamp(size.height(), 1, largest));
    if (kept == _imageSize)
        return;
    _imageSize = kept;
    emit imageSizeChanged();
}

double DzRenderOptions::getAspect() const
{
    return double(_imageSize.width()) / double(_imageSize.height());
}

DzRenderer::DzRenderer(const QString& name)
{
    setName(name);
}
DzRenderer::~DzRenderer() = default;

struct DzRenderMgr::Impl {
    QPointer<DzRenderOptions> options{
        new DzRenderOptions}; ///< guarded: whoever asks for them may delete them
    StudioRenderer renderer;
};

DzRenderMgr::DzRenderMgr() : _impl(new Impl) {}
DzRenderMgr::~DzRenderMgr()
{
    delete _impl->options;
}

DzRenderOptions* DzRenderMgr::getRenderOptions() const
{
    return _impl->options;
}
DzRenderer* DzRenderMgr::getActiveRenderer() const
{
    return &_impl->renderer;
}

bool DzRenderMgr::doRender(const QString& filename)
{
    const DzMainWindow* const window = dzApp->getInterface();
    const DzViewport* const viewport = window ? window->getViewportMgr()->getActiveViewport() : nullptr;
    const DzCamera* const camera = viewport ? viewport->get3DViewport()->getCamera() : nullptr;
    if (!camera || !_impl->options) {
        dzApp->error(QStringLiteral("there is no camera to render through"));
        return false;
    }
    return _impl->renderer.render(*camera, *_impl->options, filename);
}
