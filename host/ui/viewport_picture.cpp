// Drawing the scene into a viewport.
// SPDX-License-Identifier: MIT

#include "viewport_picture.h"

#include "dznode.h"
#include "dzscene.h"
#include "dzskeleton.h"
#include "geometry/preview.h"
#include "openhost/look.h"
#include "viewport_hit.h"
#include "viewport_lines.h"

#include <QPainter>

#include <algorithm>

namespace openhost {

using geometry::PictureCamera;
using geometry::Vec3f;

namespace {

/// Transparent, as nothing is that is drawn.
constexpr QRgb nothing = 0;

QImage ImageOf(geometry::PreviewPicture picture)
{
    auto* const kept = new geometry::PreviewPicture(std::move(picture));
    return QImage(
        reinterpret_cast<uchar*>(kept->pixels.data()), kept->width, kept->height, 4 * kept->width,
        QImage::Format_RGB32, [](void* owned) { delete static_cast<geometry::PreviewPicture*>(owned); },
        kept);
}

std::array<std::uint8_t, 3> Bytes(const QColor& color)
{
    return {std::uint8_t(color.red()), std::uint8_t(color.green()), std::uint8_t(color.blue())};
}

Vec3f ToVec(const DzVec3& v)
{
    return {v.m_x, v.m_y, v.m_z};
}

geometry::Box3f ToBox(const DzBox3& box)
{
    return {ToVec(box.getMin()), ToVec(box.getMax())};
}

/// Puts the ground where nothing was drawn.
void LayOver(QImage& ground, const QImage& drawn)
{
    for (int row = 0; row < ground.height(); ++row) {
        auto* const to = reinterpret_cast<QRgb*>(ground.scanLine(row));
        const auto* const from = reinterpret_cast<const QRgb*>(drawn.constScanLine(row));
        for (int column = 0; column < ground.width(); ++column)
            if (from[column] != nothing)
                to[column] = from[column];
    }
}

bool IsBelow(const DzNode& node, const DzNode& above)
{
    const DzNode* one = &node;
    while (one && one != &above)
        one = one->getNodeParent();
    return one != nullptr;
}

} // namespace

const std::vector<DrawMethod> drawMethods{
    {QT_TRANSLATE_NOOP("openhost::DrawStyles", "Smooth Shaded"), true, false, false, true},
    {QT_TRANSLATE_NOOP("openhost::DrawStyles", "Wire Shaded"), true, true, false, true},
    {QT_TRANSLATE_NOOP("openhost::DrawStyles", "Hidden Line"), false, true, false, true},
    {QT_TRANSLATE_NOOP("openhost::DrawStyles", "Wireframe"), false, true, false, false},
    {QT_TRANSLATE_NOOP("openhost::DrawStyles", "Wire Bounding Box"), false, false, true, false},
};

const DrawMethod& FindDrawMethod(const QString& description)
{
    for (const DrawMethod& method : drawMethods)
        if (description.compare(QLatin1String(method.description), Qt::CaseInsensitive) == 0)
            return method;
    return drawMethods.front();
}

const ViewColors& CurrentViewColors()
{
    static const ViewColors dark{QColor(58, 60, 64), QColor(188, 192, 198), QColor(96, 99, 104),
                                 QColor(226, 152, 60), QColor(200, 204, 210)};
    // In the middle, so that light and dark colours of a difference stand out both.
    static const ViewColors light{QColor(156, 159, 164), QColor(30, 33, 38), QColor(128, 131, 136),
                                  QColor(122, 56, 0), QColor(16, 18, 20)};
    return CurrentLook() == Look::Dark ? dark : light;
}

ViewportPicture::ViewportPicture() : _parts(1) {}

void ViewportPicture::sceneChanged()
{
    for (Part& part : _parts) {
        part.stage.reset();
        part.scene.reset();
    }
}

void ViewportPicture::setColors(NodeColors colors)
{
    _colors = std::move(colors);
    for (Part& part : _parts)
        if (part.scene)
            color(*part.scene);
}

void ViewportPicture::showSideBySide(DzSkeleton* left, DzSkeleton* right)
{
    _parts.clear();
    _parts.resize(left && right ? 2 : 1);
    if (left && right) {
        _parts[0].figure = left;
        _parts[1].figure = right;
    }
}

bool ViewportPicture::isDivided() const
{
    return _parts.size() == 2 && _parts[0].figure && _parts[1].figure;
}

QSize ViewportPicture::partSize(const QSize& size) const
{
    return QSize(std::max(1, isDivided() ? size.width() / 2 : size.width()), std::max(1, size.height()));
}

QStringList ViewportPicture::captions() const
{
    return isDivided() ? QStringList{_parts[0].figure->getLabel(), _parts[1].figure->getLabel()}
                       : QStringList();
}

float ViewportPicture::aspect(const QSize& size) const
{
    const QSize part = partSize(size);
    return float(part.width()) / float(part.height());
}

/// From where the left figure stands.
Vec3f ViewportPicture::offsetOf(const Part& part) const
{
    return part.figure ? ToVec(part.figure->getWSPos()) - ToVec(_parts.front().figure->getWSPos()) : Vec3f{};
}

const ViewportPicture::Part* ViewportPicture::partOf(const DzNode& node) const
{
    if (!isDivided())
        return &_parts.front();
    const auto isIn = [&node](const Part& part) {
        if (IsBelow(node, *part.figure))
            return true;
        const std::vector<DzNode*>& nodes = part.scene ? part.scene->nodes : std::vector<DzNode*>();
        return std::find(nodes.begin(), nodes.end(), &node) != nodes.end();
    };
    const auto part = std::find_if(_parts.begin(), _parts.end(), isIn);
    return part != _parts.end() ? &*part : nullptr;
}

void ViewportPicture::color(ScenePicture& scene) const
{
    for (std::size_t i = 0; i < scene.items.size(); ++i) {
        const auto colors = _colors.find(scene.nodes[i]);
        const bool fits =
            colors != _colors.end() && colors->second.size() == scene.items[i].mesh.vertexCount();
        scene.items[i].vertexColors = fits ? base::Span<const std::array<float, 3>>(colors->second)
                                           : base::Span<const std::array<float, 3>>();
    }
}

ScenePicture& ViewportPicture::sceneOf(Part& part) const
{
    if (!part.scene) {
        part.scene = isDivided() ? FigureItems(*part.figure) : VisibleItems(*dzScene);
        color(*part.scene);
    }
    return *part.scene;
}

const geometry::PictureStage& ViewportPicture::stageOf(Part& part) const
{
    if (!part.stage)
        part.stage.emplace(sceneOf(part).items, geometry::StageNormals::WhereAsked);
    return *part.stage;
}

geometry::PreviewOptions ViewportPicture::optionsFor(const DrawMethod& method, const QSize& size) const
{
    const ViewColors& colors = CurrentViewColors();
    geometry::PreviewOptions options;
    options.shading = method.isShaded ? geometry::PreviewShading::Smooth : geometry::PreviewShading::None;
    options.light = _colors.empty() ? geometry::PreviewLight::ThreePoint : geometry::PreviewLight::Plain;
    options.drawEdges = method.drawsEdges;
    options.width = size.width();
    options.height = size.height();
    options.background = Bytes(colors.background);
    if (_showsGround)
        options.emptyPixel = nothing;
    options.unshaded = Bytes(colors.background);
    if (!method.isShaded)
        options.edges = Bytes(colors.lines);
    return options;
}

QImage ViewportPicture::drawPart(Part& part, const PictureCamera& camera, const DrawMethod& method,
                                 const QSize& size) const
{
    PictureCamera own = camera;
    own.eye = own.eye + offsetOf(part);
    const geometry::PreviewOptions options = optionsFor(method, size);
    QImage image;
    if (method.hidesLines) {
        image = ImageOf(DrawPreview(stageOf(part), own, options));
    } else if (method.drawsEdges) {
        image = ImageOf(DrawWires(sceneOf(part).items, own, options));
    } else {
        image = QImage(size, QImage::Format_RGB32);
        image.fill(_showsGround ? nothing : CurrentViewColors().background.rgb());
    }
    if (_showsGround)
        image = overGround(std::move(image), camera);
    QPainter painter(&image);
    const Projector projector(own, size);
    if (method.drawsBoxes) {
        QVector<QLineF> lines;
        for (const geometry::PictureItem& item : sceneOf(part).items)
            AddBox(geometry::BoundingBox(item.mesh.positions), projector, &lines);
        DrawLines(painter, lines, CurrentViewColors().lines);
    }
    drawSelection(painter, part, projector);
    return image;
}

/// What stands on the floor hides it from above, and is hidden by it nowhere; from below it is seen through.
QImage ViewportPicture::overGround(QImage drawn, const PictureCamera& camera) const
{
    QImage ground(drawn.size(), QImage::Format_RGB32);
    ground.fill(CurrentViewColors().background);
    const auto drawGround = [&] {
        QPainter painter(&ground);
        DrawGround(painter, Projector(camera, ground.size()), CurrentViewColors().ground);
    };
    const bool isAbove = camera.eye.y >= 0.0f;
    if (isAbove)
        drawGround();
    LayOver(ground, drawn);
    if (!isAbove)
        drawGround();
    return ground;
}

void ViewportPicture::drawSelection(QPainter& painter, const Part& part, const Projector& projector) const
{
    QVector<QLineF> lines;
    for (int i = 0; i < dzScene->getNumSelectedNodes(); ++i) {
        const DzNode& node = *dzScene->getSelectedNode(i);
        const DzBox3 box = node.getWSBoundingBox();
        if (box.isValid() && partOf(node) == &part)
            AddBox(ToBox(box), projector, &lines);
    }
    DrawLines(painter, lines, CurrentViewColors().selection);
}

QImage ViewportPicture::draw(const PictureCamera& camera, const DrawMethod& method, const QSize& size)
{
    if (_parts.size() == 2 && !isDivided())
        showSideBySide(nullptr, nullptr); // a figure has gone
    const QSize each = partSize(size);
    if (!isDivided())
        return drawPart(_parts.front(), camera, method, each);
    QImage image(size, QImage::Format_RGB32);
    image.fill(CurrentViewColors().background);
    QPainter painter(&image);
    painter.drawImage(0, 0, drawPart(_parts[0], camera, method, each));
    painter.drawImage(size.width() - each.width(), 0, drawPart(_parts[1], camera, method, each));
    painter.setPen(CurrentViewColors().lines);
    painter.drawLine(each.width(), 0, each.width(), size.height());
    return image;
}

ViewportPicture::Place ViewportPicture::placeAt(const PictureCamera& camera, const QPoint& pixel,
                                                const QSize& size)
{
    const QSize each = partSize(size);
    const bool isRight = isDivided() && pixel.x() >= each.width();
    Part& part = _parts[isRight ? 1 : 0];
    const int column = isRight ? pixel.x() - (size.width() - each.width()) : pixel.x();
    const float x = 2.0f * (float(column) + 0.5f) / float(each.width()) - 1.0f;
    const float y = 1.0f - 2.0f * (float(pixel.y()) + 0.5f) / float(each.height());
    const Vec3f offset = isDivided() ? offsetOf(part) : Vec3f{};
    geometry::Ray ray = camera.ray(x, y, aspect(size));
    ray.origin = ray.origin + offset;
    const geometry::PictureStage::Hit hit = FirstHit(stageOf(part), ray);
    return hit.isValid ? Place{sceneOf(part).nodes[hit.item], hit.position - offset} : Place();
}

DzBox3 ViewportPicture::box() const
{
    if (!isDivided())
        return dzScene->getBoundingBox();
    DzBox3 both = boxOf(*_parts[0].figure);
    both.include(boxOf(*_parts[1].figure));
    return both;
}

DzBox3 ViewportPicture::boxOf(const DzNode& node) const
{
    DzBox3 box = node.getWSBoundingBox();
    const Part* const part = partOf(node);
    const Vec3f offset = part && isDivided() ? offsetOf(*part) : Vec3f{};
    box.translate(DzVec3(-offset.x, -offset.y, -offset.z));
    return box;
}

} // namespace openhost
