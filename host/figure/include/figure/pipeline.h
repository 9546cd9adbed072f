// From dials to the mesh in the world, stage by stage.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzobject.h"
#include "geometry/multires_detail.h"
#include "geometry/polygon_mesh.h"
#include "geometry/skinning.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

class DzDFormModifier;
class DzFacetMesh;
class DzFacetShape;
class DzMorph;
class DzSkeleton;
class DzSkinBinding;

namespace geometry {
struct Graft;
struct Topology;
class ShapeProjection;
} // namespace geometry

namespace openhost {

class CageModifier;
struct GraftedMesh;
struct MeshExtras;
struct RefinedCage;

/// How a figure's skin is posed at the moment.
struct SkinPose {
    std::vector<geometry::JointPose> poses; ///< one per bone of the skeleton, parents first
    const geometry::SkinWeights* weights = nullptr;
    geometry::SkinBlend blend;
    bool atRest =
        true; ///< nothing moves; the skin is left out, so that positions stay as they are to the bit
};

/// Base mesh, morphs, the shape of the figure that is followed, D-Formers, skin, modifiers behind the skin,
/// subdivision with the morphs' fine detail, the node's place in the world. Each stage is kept and made again
/// only when something before it has changed; all is evaluated when read. Spans are valid until the next
/// change.
class Pipeline {
public:
    explicit Pipeline(DzObject& object);
    ~Pipeline();

    /// Gives a new morph its place in the sum of all; one that comes back has its own.
    void numberMorph(DzMorph& morph);
    void morphAdded(DzMorph& morph);
    void morphRemoved(DzMorph& morph);
    void morphChanged(DzMorph& morph, bool deltasToo);
    void baseChanged();
    void stackChanged();  ///< a modifier that is no morph has come or gone
    void formerChanged(); ///< a D-Former's nodes, weights or strength
    void jointsChanged();
    void shaperChanged(); ///< a property of a modifier behind the skin
    void placeChanged();
    void resolutionChanged();
    void nodeChanged();     ///< the object hangs on another node
    void followedChanged(); ///< the figure that is followed, or its shape
    /// Gives the memory of all results back.
    void release();
    /// What all results take in memory, in bytes; about. Of a refinement that others use as well, nothing.
    std::size_t keptBytes() const;

    /// False without a facet shape that has a mesh; the rest is not to be called then.
    bool hasMesh() const;
    const geometry::PolygonMesh& base() const;
    /// The subdivision level in effect.
    int level() const;
    /// Rest pose, figure space, cage: the own morphs alone.
    base::Span<const geometry::Vec3f> morphedCage();
    /// The same with what the figure that is followed adds: its shape, as far as no own dial stands for it.
    base::Span<const geometry::Vec3f> followedCage();
    /// How the shape moves the vertices of the base mesh, for a follower: the active morphs but those for
    /// which it has a dial, and what the figure itself takes over of one that it follows. Empty when nothing
    /// is moved.
    std::vector<geometry::Vec3f> shapeFor(const DzSkeleton& follower);
    /// What following has cost so far.
    struct FollowingWork {
        int matches = 0;     ///< of this base mesh with a followed one
        int projections = 0; ///< of a shape, over a match
    };
    const FollowingWork& followingWork() const { return _followingWork; }
    /// The same as D-Formers leave it.
    base::Span<const geometry::Vec3f> formedCage();
    /// Posed, figure space, cage.
    base::Span<const geometry::Vec3f> posedCage();
    /// The same behind all modifiers.
    base::Span<const geometry::Vec3f> shapedCage();
    /// From posedCage() to shapedCage(); empty where the two are one.
    std::vector<geometry::Vec3f> shapingOffsets();
    /// World space, cage.
    base::Span<const geometry::Vec3f> worldCage();
    /// World space, at the level in effect.
    const geometry::PolygonMesh& world();
    DzFacetMesh* cachedMesh();
    /// Of world(); empty without a mesh.
    geometry::Box3f worldBox();

    /// How the mesh is grafted onto that of the figure that is followed, as far as that can be. Null when it
    /// is not; what does not fit is told once.
    const geometry::Graft* graft();
    /// What did not fit when graft() last looked at the two meshes; empty for nothing.
    const std::string& graftProblem() const { return _graftProblem; }
    /// The figure's mesh and what is grafted onto it as one, in world space at the figure's level.
    /// @param grafts  each grafted onto this figure or one before it in the list
    const geometry::PolygonMesh& grafted(const std::vector<DzSkeleton*>& grafts);

    /// What the dialed-in morphs add to the subdivided mesh, each up to its own limit; read now if it is
    /// still in its file. Brings the dials up to date.
    std::vector<geometry::ActiveDetail> activeDetails();

    SkinPose skinPose() const;
    /// The refinement of the base mesh to at least this level, shared by all objects with the same topology.
    std::shared_ptr<const geometry::Subdivision> subdivision(int levels) const;
    RefinedCage refinedCage() const; ///< what that is made of

private:
    enum Stage { Morphs, Following, Forming, Skinning, Shaping, Place, Result, StageCount };
    void invalidate(Stage first);
    bool takeStale(Stage stage);
    DzFacetShape* shape() const;
    bool readPending(std::vector<DzMorph*>* changed);
    void updateMorphs();
    void sumMorphs(const DzMorph* except, std::vector<geometry::Vec3f>* positions);
    void addMorph(DzMorph& morph, std::vector<geometry::Vec3f>* positions);
    void tellFollowers() const;
    DzSkeleton* followTarget() const;
    void updateFollowing();
    const geometry::ShapeProjection* projectionFrom(const Pipeline& followed);
    void dropProjection();
    void fitGraft(const geometry::Graft& graft, const geometry::Topology& onto, const MeshExtras* ontoExtras,
                  const DzSkeleton& target);
    void refineGrafted();
    void readStack();
    void updateForm();
    void updateSkin();
    void updateShape();
    void updateWorld();
    std::vector<geometry::Vec3f> refinedInWorld(const geometry::Subdivision& refinement, int level);
    void toWorld(base::Span<geometry::Vec3f> positions) const;

    DzObject& _object;
    bool _stale[StageCount] = {true, true, true, true, true, true, true};

    std::vector<DzMorph*> _pending; ///< changed since last read
    std::vector<DzMorph*> _active;  ///< not at 0, in order of sequence
    std::uint64_t _lastSequence = 0;
    bool _sumValid = false;
    DzMorph* _hot = nullptr;              ///< the dial being moved
    std::vector<geometry::Vec3f> _others; ///< base and all active morphs but the hot one
    std::vector<geometry::Vec3f> _morphed;

    std::uint64_t _baseSerial; ///< no two base meshes of any pipelines have the same
    std::pair<std::uint64_t, std::uint64_t> _matchedSerials{0, 0}; ///< of the followed and the own base
    std::unique_ptr<const geometry::ShapeProjection> _projection;  ///< null where the two cannot be matched
    FollowingWork _followingWork;
    bool _isFollowing = false;
    std::vector<geometry::Vec3f> _following;
    std::pair<std::uint64_t, std::uint64_t> _graftSerials{0, 0}; ///< of the meshes that have been checked
    std::unique_ptr<const geometry::Graft> _usableGraft;
    std::string _graftProblem;
    std::unique_ptr<GraftedMesh> _grafted;

    bool _stackRead = false;
    std::vector<const DzDFormModifier*> _formers; ///< in stack order
    std::vector<const CageModifier*> _shapers;    ///< in stack order
    bool _isFormed = false;
    std::vector<geometry::Vec3f> _formed;
    bool _isPosed = false;
    bool _skinFailed = false;
    std::vector<geometry::Vec3f> _posed;
    bool _isShaped = false;
    std::vector<geometry::Vec3f> _shaped;
    bool _isPlaced = false;
    std::vector<geometry::Vec3f> _placed;
    mutable std::shared_ptr<const geometry::Subdivision> _subdivision;
    bool _boxStale = true;
    geometry::Box3f _box;
    DzFacetMesh* _result = nullptr; ///< counted
};

} // namespace openhost
