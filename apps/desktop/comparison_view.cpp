// Two figures against each other in the view: the difference in colours, and side by side.
// SPDX-License-Identifier: MIT

#include "comparison_view.h"

#include "comparison_panel.h"
#include "shape_changes.h"

#include <dz3dviewport.h>
#include <dznode.h>
#include <dzpresentation.h>
#include <dzscene.h>
#include <openhost/scene_picture.h>
#include <openhost/viewport_extras.h>

#include <QAction>
#include <QSignalBlocker>

#include <array>
#include <cmath>

namespace desktop {

namespace {

/// Eyes, mouth, lashes and the like, which one generation of figures has as figures of their own; clothes and
/// hair are not compared.
bool IsPartOfBody(const DzNode& node, const DzSkeleton& figure)
{
    const DzPresentation* const presentation = node.getPresentation();
    return &node == &figure ||
           (presentation && presentation->getType().startsWith(QLatin1String("Follower/Attachment")));
}

/// What distances are measured of, apart from the scene.
geometry::PolygonMesh Copied(const geometry::PolygonMeshView& mesh, geometry::Vec3f origin)
{
    geometry::PolygonMesh copy;
    auto topology = std::make_shared<geometry::Topology>();
    topology->vertexCount = mesh.topology->vertexCount;
    topology->faceOffsets = mesh.topology->faceOffsets;
    topology->cornerVertices = mesh.topology->cornerVertices;
    copy.topology = std::move(topology);
    copy.positions.reserve(mesh.positions.size());
    for (const geometry::Vec3f p : mesh.positions)
        copy.positions.push_back(p - origin);
    return copy;
}

Surfaces SurfacesOf(DzSkeleton& figure, std::vector<QPointer<DzNode>>* nodes)
{
    const DzVec3 place = figure.getWSPos();
    const openhost::ScenePicture seen = openhost::FigureItems(figure);
    Surfaces surfaces;
    for (std::size_t i = 0; i < seen.items.size(); ++i) {
        if (!IsPartOfBody(*seen.nodes[i], figure))
            continue;
        surfaces.push_back(Copied(seen.items[i].mesh, {place.m_x, place.m_y, place.m_z}));
        nodes->push_back(seen.nodes[i]);
    }
    return surfaces;
}

bool AreAlike(const Surfaces& a, const Surfaces& b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const geometry::PolygonMesh& one, const geometry::PolygonMesh& other) {
                          return one.positions == other.positions &&
                                 one.topology->cornerVertices == other.topology->cornerVertices;
                      });
}

/// The colours in small steps: each takes a while.
class Palette {
public:
    explicit Palette(double topMm) : _scale{topMm}
    {
        for (std::size_t i = 0; i < _colors.size(); ++i)
            _colors[i] = app::ColorAt(static_cast<double>(i) / static_cast<double>(_colors.size() - 1));
    }

    app::LinearRgb of(float centimetres) const
    {
        if (!std::isfinite(centimetres))
            return app::ColorOfNothing();
        const double at = _scale.position(centimetres);
        return at > 1.0
                   ? app::ColorBeyond()
                   : _colors[static_cast<std::size_t>(at * static_cast<double>(_colors.size() - 1) + 0.5)];
    }

private:
    app::ColorScale _scale;
    std::array<app::LinearRgb, 512> _colors;
};

QAction* MakeEntry(const QString& text, const QKeySequence& keys, QObject* owner)
{
    auto* const entry = new QAction(text, owner);
    entry->setCheckable(true);
    entry->setShortcut(keys);
    return entry;
}

} // namespace

ComparisonView::ComparisonView(Dz3DViewport& view)
    : _view(&view), _difference(MakeEntry(tr("&Difference"), Qt::CTRL + Qt::Key_D, this)),
      _sideBySide(MakeEntry(tr("Side &by Side"), Qt::CTRL + Qt::Key_B, this))
{
    connect(&_work, &DifferenceWork::answered, this, &ComparisonView::showAnswer);
    connect(&_figures, SIGNAL(changed()), SLOT(handleFigures()));
    connect(_difference, SIGNAL(toggled(bool)), SLOT(handleToggled()));
    connect(_sideBySide, SIGNAL(toggled(bool)), SLOT(handleToggled()));
    handleFigures();
}

ComparisonView::~ComparisonView()
{
    delete _panel; // it knows the figures
}

bool ComparisonView::isSideBySide() const
{
    return _sideBySide->isChecked() && _figures.areThere();
}

void ComparisonView::handleFigures()
{
    for (QAction* const entry : {_difference, _sideBySide}) {
        if (!_figures.areThere())
            entry->setChecked(false);
        entry->setEnabled(_figures.areThere());
    }
    if (_difference->isChecked() || _sideBySide->isChecked())
        handleToggled();
}

void ComparisonView::handleToggled()
{
    if (!_view)
        return;
    divide();
    showPanel();
    if (_difference->isChecked())
        beginDifference();
    else
        endDifference();
}

void ComparisonView::divide()
{
    const bool isDivided = isSideBySide();
    const QPointer<DzSkeleton> left = isDivided ? _figures.source() : nullptr,
                               right = isDivided ? _figures.result() : nullptr;
    if (left == _left && right == _right)
        return;
    _left = left;
    _right = right;
    openhost::ShowSideBySide(*_view, left, right);
    emit placesChanged();
}

void ComparisonView::showPanel()
{
    const bool isNeeded = _difference->isChecked() || _sideBySide->isChecked();
    if (isNeeded && !_panel) {
        _panel = new ComparisonPanel(*_view, _figures);
        connect(_panel, SIGNAL(scaleChanged()), SLOT(recolor()));
    }
    if (!_panel)
        return;
    _panel->showDifference(_difference->isChecked());
    _panel->setVisible(isNeeded);
}

/// Whatever changes a shape: what has not moved in the end is not measured again.
void ComparisonView::beginDifference()
{
    _changes = std::make_unique<ShapeChanges>();
    connect(_changes.get(), SIGNAL(changed()), SLOT(measure()));
}

void ComparisonView::endDifference()
{
    _changes.reset();
    _work.drop();
    _answer.reset();
    _asked.reset();
    _askedNodes.clear();
    _askedOthers.clear();
    openhost::SetNodeColors(*_view, {});
}

void ComparisonView::measure()
{
    if (!_figures.areThere() || !_view)
        return;
    std::vector<QPointer<DzNode>> nodes, others;
    auto question = std::make_shared<DifferenceQuestion>();
    question->from = SurfacesOf(*_figures.result(), &nodes);
    question->to = SurfacesOf(*_figures.source(), &others);
    const bool isOfTheSame = nodes == _askedNodes && others == _askedOthers;
    if (_asked && isOfTheSame && AreAlike(question->from, _asked->from) && AreAlike(question->to, _asked->to))
        return;
    _asked = question;
    if (!isOfTheSame) {
        _work.drop(); // an earlier answer is about other surfaces
        _askedNodes = std::move(nodes);
        _askedOthers = std::move(others);
        _answer.reset();
        openhost::SetNodeColors(*_view, {});
        _panel->showText(tr("The difference is being measured."));
    }
    _work.ask(std::move(question));
}

void ComparisonView::showAnswer(std::shared_ptr<const DifferenceAnswer> answer)
{
    _answer = std::move(answer);
    if (!_answer->trouble.isEmpty())
        _asked.reset(); // what failed is tried again with the next change
    recolor();
}

void ComparisonView::recolor()
{
    if (!_answer || !_view || !_panel)
        return;
    _panel->showAnswer(*_answer);
    const Palette palette(_panel->topFor(*_answer));
    openhost::NodeColors colors;
    for (std::size_t i = 0; i < std::min(_answer->distances.size(), _askedNodes.size()); ++i) {
        if (!_askedNodes[i])
            continue;
        std::vector<app::LinearRgb>& own = colors[_askedNodes[i]];
        own.reserve(_answer->distances[i].size());
        for (const float distance : _answer->distances[i])
            own.push_back(palette.of(distance));
    }
    openhost::SetNodeColors(*_view, std::move(colors));
}

} // namespace desktop
