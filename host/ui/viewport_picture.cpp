// Drawing the scene into a viewport.
// SPDX-License-Identifier: MIT

#include "viewport_picture.h"

#include "dznode.h"
#include "dzscene.h"
#include "geometry/preview.h"

#include <QLineF>
#include <QPainter>

#include <algorithm>

namespace openhost {

using geometry::PictureCamera;
using geometry::Vec3f;

namespace {

const QColor background(58, 60, 64), lineColor(188, 192, 198), selection(226, 152, 60);

/// Places points on the picture and cuts lines at the eye.
class Projector {
public:
    Projector(const PictureCamera& camera, const QSize& size)
        : _camera(camera), _size(size), _aspect(float(size.width()) / float(size.height()))
    {
    }

    /// False when the line lies behind the eye.
    bool line(Vec3f a, Vec3f b, QLineF* result) const
    {
        constexpr float nearest = 0.1f;
        const float depthA = depth(a), depthB = depth(b);
        if (_camera.isPerspective) {
            if (depthA < nearest && depthB < nearest)
                return false;
            if (depthA < nearest)
                a = a + (b - a) * ((nearest - depthA) / (depthB - depthA));
            else if (depthB < nearest)
                b = b + (a - b) * ((nearest - depthB) / (depthA - depthB));
        }
        *result = QLineF(place(a), place(b));
        return true;
    }

private:
    float depth(Vec3f p) const { return Dot(p - _camera.eye, _camera.forward); }

    QPointF place(Vec3f p) const
    {
        const Vec3f at = _camera.project(p, _aspect);
        return QPointF(0.5 * (double(at.x) + 1.0) * _size.width(),
                       0.5 * (1.0 - double(at.y)) * _size.height());
    }

    const PictureCamera& _camera;
    QSize _size;
    float _aspect;
};

void AddBox(const geometry::Box3f& box, const Projector& projector, QVector<QLineF>* lines)
{
    const auto corner = [&](int i) {
        return Vec3f{i & 1 ? box.max.x : box.min.x, i & 2 ? box.max.y : box.min.y,
                     i & 4 ? box.max.z : box.min.z};
    };
    for (int from = 0; from < 8; ++from)
        for (const int axis : {1, 2, 4}) {
            QLineF line;
            if (!(from & axis) && projector.line(corner(from), corner(from | axis), &line))
                lines->append(line);
        }
}

QImage ImageOf(geometry::PreviewPicture picture)
{
    auto* const kept = new geometry::PreviewPicture(std::move(picture));
    return QImage(
        reinterpret_cast<uchar*>(kept->pixels.data()), kept->width, kept->height, 4 * kept->width,
        QImage::Format_RGB32, [](void* owned) { delete static_cast<geometry::PreviewPicture*>(owned); },
        kept);
}

geometry::PreviewOptions OptionsFor(const DrawMethod& method, const QSize& size)
{
    const auto bytes = [](const QColor& color) {
        return std::array<std::uint8_t, 3>{std::uint8_t(color.red()), std::uint8_t(color.green()),
                                           std::uint8_t(color.blue())};
    };
    geometry::PreviewOptions options;
    options.shading = method.isShaded ? geometry::PreviewShading::Smooth : geometry::PreviewShading::None;
    options.drawEdges = method.drawsEdges;
    options.width = size.width();
    options.height = size.height();
    options.background = bytes(background);
    if (!method.isShaded)
        options.edges = bytes(lineColor);
    return options;
}

void DrawLines(QPainter& painter, const QVector<QLineF>& lines, const QColor& color)
{
    painter.setPen(QPen(color, 1.0));
    painter.drawLines(lines);
}

void DrawSelection(QPainter& painter, const Projector& projector)
{
    QVector<QLineF> lines;
    for (int i = 0; i < dzScene->getNumSelectedNodes(); ++i) {
        const DzBox3 box = dzScene->getSelectedNode(i)->getWSBoundingBox();
        if (box.isValid())
            AddBox({{box.getMin().m_x, box.getMin().m_y, box.getMin().m_z},
                    {box.getMax().m_x, box.getMax().m_y, box.getMax().m_z}},
                   projector, &lines);
    }
    DrawLines(painter, lines, selection);
}

} // namespace

const std::vector<DrawMethod> drawMethods{
    {"Smooth Shaded", true, false, false, true},      {"Wire Shaded", true, true, false, true},
    {"Hidden Line", false, true, false, true},        {"Wireframe", false, true, false, false},
    {"Wire Bounding Box", false, false, true, false},
};

const DrawMethod& FindDrawMethod(const QString& description)
{
    for (const DrawMethod& method : drawMethods)
        if (description.compare(QLatin1String(method.description), Qt::CaseInsensitive) == 0)
            return method;
    return drawMethods.front();
}

void ViewportPicture::sceneChanged()
{
    _stage.reset();
    _scene.reset();
}

const ScenePicture& ViewportPicture::scene()
{
    if (!_scene)
        _scene = VisibleItems(*dzScene);
    return *_scene;
}

const geometry::PictureStage& ViewportPicture::stage()
{
    if (!_stage)
        _stage.emplace(scene().items, geometry::StageNormals::WhereAsked);
    return *_stage;
}

QImage ViewportPicture::draw(const PictureCamera& camera, const DrawMethod& method, const QSize& size)
{
    const geometry::PreviewOptions options = OptionsFor(method, size);
    QImage image;
    if (method.hidesLines) {
        image = ImageOf(DrawPreview(stage(), camera, options));
    } else if (method.drawsEdges) {
        image = ImageOf(DrawWires(scene().items, camera, options));
    } else {
        image = QImage(size, QImage::Format_RGB32);
        image.fill(background);
    }
    QPainter painter(&image);
    const Projector projector(camera, size);
    if (method.drawsBoxes) {
        QVector<QLineF> lines;
        for (const geometry::PictureItem& item : scene().items)
            AddBox(geometry::BoundingBox(item.mesh.positions), projector, &lines);
        DrawLines(painter, lines, lineColor);
    }
    DrawSelection(painter, projector);
    return image;
}

DzNode* ViewportPicture::nodeAt(const PictureCamera& camera, const QPoint& pixel, const QSize& size)
{
    const float x = 2.0f * (float(pixel.x()) + 0.5f) / float(size.width()) - 1.0f;
    const float y = 1.0f - 2.0f * (float(pixel.y()) + 0.5f) / float(size.height());
    const geometry::PictureStage::Hit hit =
        stage().trace(camera.ray(x, y, float(size.width()) / float(size.height())));
    return hit.isValid ? scene().nodes[hit.item] : nullptr;
}

} // namespace openhost
