// From dials to the mesh in the world, stage by stage.
// SPDX-License-Identifier: MIT

// Before Qt, whose keyword emit names a function there.
#include <tbb/parallel_for.h>

#include "base/cancellation.h"
#include "figure/pipeline.h"

#include "app/guard.h"
#include "base/errors.h"
#include "dzbone.h"
#include "dzdformmodifier.h"
#include "dzfacetshape.h"
#include "dzfloatproperty.h"
#include "dzskeleton.h"
#include "dzskinbinding.h"
#include "figure/cage_modifier.h"
#include "figure/deltas_access.h"
#include "figure/mesh_access.h"
#include "figure/skin_access.h"
#include "forming.h"
#include "geometry/shape_projection.h"
#include "grafted_mesh.h"
#include "modifier_impl.h"
#include "openhost/diagnostics.h"
#include "scene/node_transform.h"
#include "scene/node_walk.h"
#include "subdivision_cache.h"

#include <QHash>

#include <algorithm>
#include <atomic>

namespace openhost {

using base::Span;
using geometry::Vec3f;

namespace {

std::uint64_t NextBaseSerial()
{
    static std::atomic<std::uint64_t> last{0};
    return ++last;
}

} // namespace

Pipeline::Pipeline(DzObject& object) : _object(object), _baseSerial(NextBaseSerial()) {}

Pipeline::~Pipeline()
{
    release();
}

void Pipeline::release()
{
    invalidate(Morphs);
    _sumValid = false;
    _hot = nullptr;
    std::vector<Vec3f>().swap(_others);
    std::vector<Vec3f>().swap(_morphed);
    std::vector<Vec3f>().swap(_following);
    dropProjection();
    _grafted.reset();
    std::vector<Vec3f>().swap(_formed);
    std::vector<Vec3f>().swap(_posed);
    std::vector<Vec3f>().swap(_shaped);
    std::vector<Vec3f>().swap(_placed);
    _subdivision.reset();
    if (_result)
        _result->unref();
    _result = nullptr;
}

namespace {

std::size_t BytesOf(const geometry::Topology& topology)
{
    return sizeof(std::uint32_t) * (topology.faceOffsets.size() + topology.cornerVertices.size() +
                                    topology.faceGroups.size() + topology.faceSurfaces.size());
}

/// The cage's topology is its figure's.
std::size_t BytesOf(const geometry::Subdivision& refinement)
{
    // Of the rules' sums over four to nine vertices, as many new ones as a regular cage has of each kind.
    constexpr std::size_t weightsOfVertex = 6;
    constexpr std::size_t ofVertex = weightsOfVertex * (sizeof(float) + sizeof(std::uint32_t));
    std::size_t bytes = 0;
    for (int level = 1; level <= refinement.levels(); ++level)
        bytes += BytesOf(*refinement.topology(level)) +
                 refinement.topology(level)->faceCount() * sizeof(std::uint32_t) +
                 refinement.topology(level)->vertexCount * ofVertex;
    return bytes;
}

std::size_t BytesOfOwn(const std::shared_ptr<const geometry::Subdivision>& refinement)
{
    return refinement.use_count() == 1 ? BytesOf(*refinement) : 0;
}

} // namespace

std::size_t Pipeline::keptBytes() const
{
    std::size_t vertices = 0;
    for (const std::vector<Vec3f>* const stage :
         {&_others, &_morphed, &_following, &_formed, &_posed, &_shaped, &_placed})
        vertices += stage->size();
    if (_result)
        vertices += static_cast<std::size_t>(_result->getNumVertices());
    std::size_t bytes = BytesOfOwn(_subdivision);
    if (_grafted) {
        vertices += _grafted->mesh.vertexCount();
        bytes += BytesOf(*_grafted->mesh.topology) + BytesOfOwn(_grafted->subdivision);
    }
    return bytes + vertices * sizeof(Vec3f);
}

void Pipeline::invalidate(Stage first)
{
    const bool wasFresh = !_stale[Result];
    for (int stage = first; stage < StageCount; ++stage)
        _stale[stage] = true;
    if (wasFresh)
        emit _object.cachedGeomInvalidated();
    if (first <= Following)
        tellFollowers();
}

bool Pipeline::takeStale(Stage stage)
{
    const bool stale = _stale[stage];
    _stale[stage] = false;
    if (stale && stage == Skinning)
        NoteHierarchyRead();
    return stale;
}

void Pipeline::baseChanged()
{
    _baseSerial = NextBaseSerial();
    _sumValid = false;
    _hot = nullptr;
    _skinFailed = false;
    _subdivision.reset();
    invalidate(Morphs);
}

// The skin may be another one then.
void Pipeline::stackChanged()
{
    _stackRead = false;
    _skinFailed = false;
    invalidate(Forming);
}

void Pipeline::formerChanged()
{
    invalidate(Forming);
}
void Pipeline::shaperChanged()
{
    invalidate(Shaping);
}

void Pipeline::jointsChanged()
{
    _skinFailed = false;
    invalidate(Skinning);
}

void Pipeline::placeChanged()
{
    // D-Formers stay where they are.
    readStack();
    invalidate(_formers.empty() ? Place : Forming);
}
void Pipeline::resolutionChanged()
{
    invalidate(Result);
}

void Pipeline::numberMorph(DzMorph& morph)
{
    morph._morph->sequence = ++_lastSequence;
}

void Pipeline::morphAdded(DzMorph& morph)
{
    morph._morph->applied = 0.0f;
    morphChanged(morph, false);
}

void Pipeline::morphRemoved(DzMorph& morph)
{
    _pending.erase(std::remove(_pending.begin(), _pending.end(), &morph), _pending.end());
    morph._morph->pending = false;
    const auto active = std::find(_active.begin(), _active.end(), &morph);
    if (active == _active.end())
        return;
    _active.erase(active);
    _sumValid = false;
    _hot = nullptr;
    invalidate(Morphs);
}

void Pipeline::morphChanged(DzMorph& morph, bool deltasToo)
{
    // A morph at 0 that stays at 0 changes nothing; its dial is read with the others.
    if (deltasToo && morph._morph->applied != 0.0f) {
        _sumValid = false;
        _hot = nullptr;
    }
    if (!morph._morph->pending) {
        morph._morph->pending = true;
        _pending.push_back(&morph);
    }
    invalidate(Morphs);
}

DzFacetShape* Pipeline::shape() const
{
    return qobject_cast<DzFacetShape*>(_object.getCurrentShape());
}

bool Pipeline::hasMesh() const
{
    const DzFacetShape* const facets = shape();
    return facets && facets->getFacetMesh();
}

const geometry::PolygonMesh& Pipeline::base() const
{
    return MeshAccess::mesh(*shape()->getFacetMesh());
}

int Pipeline::level() const
{
    return shape()->getSubDDrawLevel();
}

// The morphs whose dials differ from what the sum holds; the list of active ones is brought up to date.
bool Pipeline::readPending(std::vector<DzMorph*>* changed)
{
    std::vector<DzMorph*> pending;
    pending.swap(_pending);
    for (DzMorph* morph : pending) {
        DzMorph::MorphImpl& state = *morph->_morph;
        state.pending = false;
        const float value = morph->getValueControl()->getValue();
        if (value == state.applied)
            continue;
        const auto place = std::lower_bound(
            _active.begin(), _active.end(), state.sequence,
            [](const DzMorph* m, std::uint64_t sequence) { return m->_morph->sequence < sequence; });
        if (state.applied == 0.0f)
            _active.insert(place, morph);
        else if (value == 0.0f)
            _active.erase(place);
        state.applied = value;
        changed->push_back(morph);
    }
    return !changed->empty();
}

void Pipeline::addMorph(DzMorph& morph, std::vector<Vec3f>* positions)
{
    if (morph._morph->applied == 0.0f)
        return;
    const geometry::SparseDeltas& deltas = DeltasAccess::deltas(*morph.getDeltas());
    if (!deltas.empty() && deltas.vertices.back() >= positions->size()) {
        Report({base::Severity::Warning,
                {},
                morph.getName().toStdString(),
                fmt::format("the morph moves vertex {} of a mesh with {}; it is left out",
                            deltas.vertices.back(), positions->size())});
        return;
    }
    geometry::AddDeltas(base::Span<Vec3f>(*positions), deltas, morph._morph->applied);
}

void Pipeline::sumMorphs(const DzMorph* except, std::vector<Vec3f>* positions)
{
    *positions = base().positions;
    for (DzMorph* morph : _active) {
        if (morph != except)
            addMorph(*morph, positions);
    }
}

// While one dial is being moved, the sum of all others is kept. It is made from the base mesh each time the
// dial changes hands, so nothing drifts.
void Pipeline::updateMorphs()
{
    std::vector<DzMorph*> changed;
    if (!readPending(&changed) && _sumValid)
        return;
    if (_sumValid && changed.size() == 1) {
        if (_hot != changed.front()) {
            _hot = changed.front();
            sumMorphs(_hot, &_others);
        }
        _morphed = _others;
        addMorph(*_hot, &_morphed);
        return;
    }
    _hot = nullptr;
    sumMorphs(nullptr, &_morphed);
    _sumValid = true;
}

base::Span<const Vec3f> Pipeline::morphedCage()
{
    if (takeStale(Morphs))
        updateMorphs();
    return _morphed;
}

void Pipeline::readStack()
{
    if (_stackRead)
        return;
    _stackRead = true;
    _formers.clear();
    _shapers.clear();
    for (int i = 0; i < _object.getNumModifiers(); ++i) {
        if (const auto* const former = qobject_cast<const DzDFormModifier*>(_object.getModifier(i)))
            _formers.push_back(former);
        if (const auto* const shaper = qobject_cast<const CageModifier*>(_object.getModifier(i)))
            _shapers.push_back(shaper);
    }
}

// One that does not fit is left out, the others act all the same.
void Pipeline::updateForm()
{
    readStack();
    const base::Span<const Vec3f> followed = followedCage();
    _isFormed = false;
    for (const DzDFormModifier* const former : _formers) {
        if (!IsActive(*former))
            continue;
        if (!_isFormed)
            _formed.assign(followed.begin(), followed.end());
        _isFormed = true;
        GuardHostCall({{}, _object.getName().toStdString(), "cannot be deformed", base::Severity::Warning},
                      [&] {
                          ApplyDFormer(*former, _object, _formed);
                          return true;
                      });
    }
}

base::Span<const Vec3f> Pipeline::formedCage()
{
    const base::Span<const Vec3f> followed = followedCage();
    if (takeStale(Forming))
        updateForm();
    return _isFormed ? base::Span<const Vec3f>(_formed) : followed;
}

SkinPose Pipeline::skinPose() const
{
    SkinPose pose;
    DzSkeleton* const skeleton = qobject_cast<DzSkeleton*>(_object.getNode());
    const DzSkinBinding* binding = nullptr;
    for (int i = _object.getNumModifiers() - 1; i >= 0 && !binding; --i)
        binding = qobject_cast<const DzSkinBinding*>(_object.getModifier(i));
    if (!skeleton || !binding || skeleton->bones().isEmpty())
        return pose;

    std::vector<geometry::Joint> joints;
    QHash<const DzNode*, int> indices;
    for (const DzBone* bone : skeleton->bones()) {
        const LocalPlace place = ReadPlace(*bone);
        geometry::Joint joint;
        joint.center = place.center;
        joint.orientation = place.orientation;
        joint.order = place.order;
        joint.rotation = place.rotation;
        joint.translation = place.translation;
        joint.scale = place.scale;
        joint.inheritsScale = bone->inheritsScale();
        for (const DzNode* up = bone->getNodeParent(); up && up != skeleton && joint.parent < 0;
             up = up->getNodeParent())
            joint.parent = indices.value(up, -1);
        indices.insert(bone, static_cast<int>(joints.size()));
        pose.atRest = pose.atRest && place.isAtRest();
        joints.push_back(joint);
    }
    pose.poses = geometry::EvaluateSkeleton(joints);
    pose.weights = &SkinAccess::weights(*binding, *skeleton, base().vertexCount());
    pose.blend = SkinAccess::blend(*binding, *skeleton, base().vertexCount());
    return pose;
}

void Pipeline::updateSkin()
{
    _isPosed = false;
    if (_skinFailed)
        return;
    const QString name = _object.getNode() ? _object.getNode()->getLabel() : _object.getName();
    _skinFailed =
        !GuardHostCall({{}, name.toStdString(), "cannot be posed", base::Severity::Warning}, [this] {
            const SkinPose pose = skinPose();
            if (pose.atRest || !pose.weights)
                return true;
            _posed = geometry::Skin(formedCage(), *pose.weights, pose.poses, pose.blend);
            _isPosed = true;
            return true;
        });
}

base::Span<const Vec3f> Pipeline::posedCage()
{
    const base::Span<const Vec3f> formed = formedCage();
    if (takeStale(Skinning))
        updateSkin();
    return _isPosed ? base::Span<const Vec3f>(_posed) : formed;
}

void Pipeline::updateShape()
{
    readStack();
    std::vector<const CageModifier*> active;
    std::copy_if(_shapers.begin(), _shapers.end(), std::back_inserter(active),
                 [](const CageModifier* shaper) { return shaper->isActive(); });
    std::stable_partition(active.begin(), active.end(),
                          [](const CageModifier* shaper) { return !shaper->actsLast(); });
    _isShaped = !active.empty();
    if (!_isShaped)
        return;
    const base::Span<const Vec3f> posed = posedCage();
    CageShape cage{base().topology, formedCage(), {posed.begin(), posed.end()}};
    for (const CageModifier* const shaper : active)
        GuardHostCall({{}, _object.getName().toStdString(), "cannot be shaped", base::Severity::Warning},
                      [&] {
                          shaper->apply(cage);
                          return true;
                      });
    _shaped = std::move(cage.positions);
}

std::vector<Vec3f> Pipeline::shapingOffsets()
{
    const base::Span<const Vec3f> shaped = shapedCage(), posed = posedCage();
    std::vector<Vec3f> offsets;
    if (_isShaped)
        std::transform(shaped.begin(), shaped.end(), posed.begin(), std::back_inserter(offsets),
                       [](Vec3f to, Vec3f from) { return to - from; });
    return offsets;
}

base::Span<const Vec3f> Pipeline::shapedCage()
{
    const base::Span<const Vec3f> posed = posedCage();
    if (takeStale(Shaping))
        updateShape();
    return _isShaped ? base::Span<const Vec3f>(_shaped) : posed;
}

void Pipeline::toWorld(base::Span<Vec3f> positions) const
{
    const DzNode* const node = _object.getNode();
    const NodeTransform transform = node ? WorldTransform(*node) : NodeTransform();
    if (transform.isIdentity())
        return;
    tbb::parallel_for(std::size_t(0), positions.size(), [&](std::size_t i) {
        base::ThrowIfCancelled();
        positions[i] = geometry::FromEigen(transform.apply(geometry::ToEigen(positions[i])));
    });
}

base::Span<const Vec3f> Pipeline::worldCage()
{
    const base::Span<const Vec3f> posed = shapedCage();
    if (takeStale(Place)) {
        const DzNode* const node = _object.getNode();
        _isPlaced = node && !WorldTransform(*node).isIdentity();
        _placed.clear();
        if (_isPlaced) {
            _placed.assign(posed.begin(), posed.end());
            toWorld(_placed);
        }
    }
    return _isPlaced ? base::Span<const Vec3f>(_placed) : posed;
}

std::vector<geometry::ActiveDetail> Pipeline::activeDetails()
{
    morphedCage();
    std::vector<geometry::ActiveDetail> details;
    for (const DzMorph* const morph : _active) {
        const geometry::MultiresDetail& detail = DeltasAccess::detail(*morph->getDeltas());
        if (detail.empty())
            continue;
        const int limit = morph->getHDLimit();
        details.push_back({&detail, morph->_morph->applied, limit < 0 ? INT32_MAX : limit});
    }
    return details;
}

// Detail is added in frames of the posed cage, and the whole then put into its place, so that it turns and
// grows with the figure.
std::vector<Vec3f> Pipeline::refinedInWorld(const geometry::Subdivision& refinement, int level)
{
    const std::vector<geometry::ActiveDetail> details = activeDetails();
    if (details.empty())
        return refinement.refine(worldCage(), 0, level);
    std::vector<Vec3f> positions = geometry::RefineWithDetail(refinement, shapedCage(), level, details);
    toWorld(positions);
    return positions;
}

std::shared_ptr<const geometry::Subdivision> Pipeline::subdivision(int levels) const
{
    if (!_subdivision || _subdivision->levels() < levels || _subdivision->topology(0) != base().topology)
        _subdivision = FindSubdivision(refinedCage(), levels);
    return _subdivision;
}

RefinedCage Pipeline::refinedCage() const
{
    const DzFacetMesh& mesh = *shape()->getFacetMesh();
    const MeshExtras* const extras = MeshAccess::extras(mesh);
    return {base().topology, MeshAccess::boundaryRule(mesh),
            extras ? extras->creases : std::vector<geometry::Crease>()};
}

void Pipeline::updateWorld()
{
    const base::Span<const Vec3f> cage = worldCage();
    if (!takeStale(Result))
        return;
    geometry::PolygonMesh mesh;
    mesh.topology = base().topology;
    int reached = 0;
    if (level() > 0)
        GuardHostCall({{}, _object.getName().toStdString(), "cannot be subdivided", base::Severity::Warning},
                      [&] {
                          const auto refinement = subdivision(level());
                          mesh.positions = refinedInWorld(*refinement, level());
                          mesh.topology = refinement->topology(level());
                          reached = level();
                          return true;
                      });
    if (reached == 0)
        mesh.positions.assign(cage.begin(), cage.end());
    _boxStale = true;
    if (!_result) {
        _result = new DzFacetMesh;
        _result->ref();
    }
    MeshAccess::assign(*_result, std::move(mesh), reached);
    emit _object.cachedGeomUpdated();
}

const geometry::PolygonMesh& Pipeline::world()
{
    return MeshAccess::mesh(*cachedMesh());
}

DzFacetMesh* Pipeline::cachedMesh()
{
    updateWorld();
    return _result;
}

geometry::Box3f Pipeline::worldBox()
{
    if (!hasMesh())
        return geometry::Box3f();
    updateWorld();
    if (_boxStale)
        _box = geometry::BoundingBox(world().positions);
    _boxStale = false;
    return _box;
}

} // namespace openhost
