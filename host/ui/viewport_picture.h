// Drawing the scene into a viewport.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzskeleton.h"
#include "geometry/picture_camera.h"
#include "geometry/picture_stage.h"
#include "geometry/preview.h"
#include "openhost/scene_picture.h"
#include "openhost/viewport_extras.h"

#include <QColor>
#include <QImage>
#include <QPointer>
#include <QStringList>

#include <optional>

class QPainter;

namespace openhost {

class Projector;

/// How a draw style draws; by description.
struct DrawMethod {
    const char* description;
    bool isShaded, drawsEdges, drawsBoxes, hidesLines;
};
/// The styles of the open host, the one to begin with first.
extern const std::vector<DrawMethod> drawMethods;
/// Smooth shading for an unknown description.
const DrawMethod& FindDrawMethod(const QString& description);

/// Of the present look.
struct ViewColors {
    QColor background, lines, ground, selection, text;
};
const ViewColors& CurrentViewColors();

/// Keeps what takes long to make until the scene has changed. Draws the whole scene, or two figures in a half
/// each: then places and boxes are as if the right one stood where the left one does.
class ViewportPicture {
public:
    ViewportPicture();

    /// Something has moved, come or gone.
    void sceneChanged();
    void setColors(NodeColors colors);
    void showSideBySide(DzSkeleton* left, DzSkeleton* right);
    void showGround(bool isShown) { _showsGround = isShown; }

    /// Of the figures that are side by side; empty otherwise.
    QStringList captions() const;
    bool isDivided() const;
    /// Width through height of each part of the picture.
    float aspect(const QSize& size) const;
    /// Draws the visible scene and boxes around what is selected.
    QImage draw(const geometry::PictureCamera& camera, const DrawMethod& method, const QSize& size);

    struct Place {
        DzNode* node = nullptr; ///< null where only the background is
        geometry::Vec3f position;
        bool isValid() const { return node; }
    };
    /// What is seen at a pixel, which is named by its column and row.
    Place placeAt(const geometry::PictureCamera& camera, const QPoint& pixel, const QSize& size);

    /// World space, cm.
    DzBox3 box() const;
    DzBox3 boxOf(const DzNode& node) const;

private:
    /// What is drawn beside another one.
    struct Part {
        QPointer<DzSkeleton> figure; ///< null for the whole scene
        std::optional<ScenePicture> scene;
        std::optional<geometry::PictureStage> stage;
    };
    QSize partSize(const QSize& size) const;
    const Part* partOf(const DzNode& node) const;
    geometry::Vec3f offsetOf(const Part& part) const;
    ScenePicture& sceneOf(Part& part) const;
    const geometry::PictureStage& stageOf(Part& part) const;
    void color(ScenePicture& scene) const;
    geometry::PreviewOptions optionsFor(const DrawMethod& method, const QSize& size) const;
    QImage drawPart(Part& part, const geometry::PictureCamera& camera, const DrawMethod& method,
                    const QSize& size) const;
    QImage overGround(QImage drawn, const geometry::PictureCamera& camera) const;
    void drawSelection(QPainter& painter, const Part& part, const Projector& projector) const;

    std::vector<Part> _parts; ///< one, or two figures
    NodeColors _colors;
    bool _showsGround = false;
};

} // namespace openhost
