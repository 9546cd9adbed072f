// Drawing the scene into a viewport.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/picture_camera.h"
#include "geometry/picture_stage.h"
#include "openhost/scene_picture.h"

#include <QImage>
#include <QString>

#include <optional>

class QPainter;

namespace openhost {

/// How a draw style draws; by description.
struct DrawMethod {
    const char* description;
    bool isShaded, drawsEdges, drawsBoxes, hidesLines;
};
/// The styles of the open host, the one to begin with first.
extern const std::vector<DrawMethod> drawMethods;
/// Smooth shading for an unknown description.
const DrawMethod& FindDrawMethod(const QString& description);

/// Keeps what takes long to make until the scene has changed.
class ViewportPicture {
public:
    /// Something has moved, come or gone.
    void sceneChanged();
    /// Draws the visible scene and boxes around what is selected.
    QImage draw(const geometry::PictureCamera& camera, const DrawMethod& method, const QSize& size);
    /// Null where only the background is. A pixel is named by its column and row.
    DzNode* nodeAt(const geometry::PictureCamera& camera, const QPoint& pixel, const QSize& size);

private:
    const ScenePicture& scene();
    const geometry::PictureStage& stage();

    std::optional<ScenePicture> _scene;
    std::optional<geometry::PictureStage> _stage;
};

} // namespace openhost
