// Drawing the scene into a viewport: traced surfaces, drawn lines.
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

/// Every edge once, however many faces share it.
void AddEdges(const geometry::PolygonMeshView& mesh, const Projector& projector, QVector<QLineF>* lines)
{
    std::vector<std::pair<std::uint32_t, std::uint32_t>> edges;
    edges.reserve(mesh.topology->cornerCount());
    for (std::size_t f = 0; f < mesh.faceCount(); ++f) {
        const base::Span<const std::uint32_t> face = mesh.face(f);
        for (std::size_t i = 0; i < face.size(); ++i)
            edges.push_back(std::minmax(face[i], face[(i + 1) % face.size()]));
    }
    std::sort(edges.begin(), edges.end());
    edges.erase(std::unique(edges.begin(), edges.end()), edges.end());
    for (const auto& [a, b] : edges) {
        QLineF line;
        if (projector.line(mesh.positions[a], mesh.positions[b], &line))
            lines->append(line);
    }
}

QImage Traced(const geometry::PictureStage& stage, const PictureCamera& camera, const DrawMethod& method,
              const QSize& size)
{
    geometry::PreviewOptions options;
    options.shading = method.isShaded ? geometry::PreviewShading::Smooth : geometry::PreviewShading::None;
    options.drawEdges = method.drawsEdges;
    options.width = size.width();
    options.height = size.height();
    const auto bytes = [](const QColor& color) {
        return std::array<std::uint8_t, 3>{std::uint8_t(color.red()), std::uint8_t(color.green()),
                                           std::uint8_t(color.blue())};
    };
    options.background = bytes(background);
    if (!method.isShaded)
        options.edges = bytes(lineColor);
    const geometry::Picture picture = DrawPreview(stage, camera, options);
    return QImage(picture.rgb.data(), picture.width, picture.height, 3 * picture.width, QImage::Format_RGB888)
        .convertToFormat(QImage::Format_RGB32);
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
        _stage.emplace(scene().items);
    return *_stage;
}

QImage ViewportPicture::draw(const PictureCamera& camera, const DrawMethod& method, const QSize& size)
{
    QImage image;
    if (method.hidesLines) {
        image = Traced(stage(), camera, method, size);
    } else {
        image = QImage(size, QImage::Format_RGB32);
        image.fill(background);
    }
    QPainter painter(&image);
    const Projector projector(camera, size);
    if (!method.hidesLines) {
        QVector<QLineF> lines;
        for (const geometry::PictureItem& item : scene().items) {
            if (method.drawsBoxes)
                AddBox(geometry::BoundingBox(item.mesh.positions), projector, &lines);
            else
                AddEdges(item.mesh, projector, &lines);
        }
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
