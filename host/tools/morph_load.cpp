// Making a morph from a mesh in a new shape.
// SPDX-License-Identifier: MIT

#include "morph_load.h"

#include "app/guard.h"
#include "app/host_log.h"
#include "app/operations.h"
#include "app/texts.h"
#include "base/errors.h"
#include "dzapp.h"
#include "dzbone.h"
#include "dzcontentmgr.h"
#include "dzerclink.h"
#include "dzfileiosettings.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dzmorphdeltas.h"
#include "dzobject.h"
#include "dzscene.h"
#include "dzskeleton.h"
#include "dzweightmap.h"
#include "figure/deltas_access.h"
#include "figure/mesh_access.h"
#include "figure/pipeline.h"
#include "geometry/deltas.h"
#include "morph_split.h"
#include "obj_memory.h"
#include "obj_options.h"
#include "reverse_deformation.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include <QFileInfo>

namespace openhost {

namespace {

using base::Span;
using geometry::Vec3f;

/// A morph that counts as not there while the shape without it is looked at.
class DialedOut {
public:
    explicit DialedOut(const DzMorph* morph) : _dial(morph ? morph->getValueControl() : nullptr)
    {
        if (!_dial)
            return;
        _value = _dial->getDoubleRawValue();
        _wasOverriding = _dial->isOverridingControllers();
        _dial->setOverrideControllers(true);
        _dial->setDoubleRawValue(0.0);
    }
    ~DialedOut()
    {
        if (!_dial)
            return;
        _dial->setDoubleRawValue(_value);
        _dial->setOverrideControllers(_wasOverriding);
    }
    DialedOut(const DialedOut&) = delete;
    DialedOut& operator=(const DialedOut&) = delete;

private:
    DzFloatProperty* _dial;
    double _value = 0.0;
    bool _wasOverriding = false;
};

geometry::SubdividedMorph MakePlainMorph(const MorphLoadSettings& settings, DzNode& node,
                                         std::vector<Vec3f> file)
{
    Pipeline& pipeline = node.getObject()->pipeline();
    std::vector<Vec3f> deltas = std::move(file);
    base::Span<const Vec3f> neutral = pipeline.base().positions;
    if (settings.reverseDeformations) {
        deltas = UndoSkin(pipeline, UndoShaping(pipeline, UndoPlace(node, std::move(deltas)), 0));
        neutral = pipeline.formedCage();
    }
    for (std::size_t v = 0; v < deltas.size(); ++v)
        deltas[v] -= neutral[v];
    if (const auto mirroring = MirroringOf(settings.morphMirroring))
        geometry::MirrorDeltas(deltas, pipeline.base().positions, *mirroring);
    // An edge strength damps along the border of a facet selection; without a selection there is no border.
    geometry::SubdividedMorph made;
    made.deltas = geometry::MakeDeltas(deltas, 0.0f);
    geometry::DropShort(made.deltas, settings.deltaTolerance);
    return made;
}

geometry::SubdividedMorph MakeSubdividedMorph(const MorphLoadSettings& settings, DzNode& node,
                                              std::vector<Vec3f> file)
{
    Pipeline& pipeline = node.getObject()->pipeline();
    if (!settings.reverseDeformations)
        return SplitMorph(settings, pipeline, file);
    return SplitMorph(
        settings, pipeline,
        UndoShaping(pipeline, UndoPlace(node, std::move(file)), settings.subdivisionBuiltResolution));
}

void AttenuateByMap(geometry::SubdividedMorph& made, const MorphLoadSettings& settings, const DzNode& node)
{
    if (settings.attenuateMapPath.isEmpty())
        return;
    const DzWeightMap* const map = FindAttenuationMap(node, settings.attenuateMapPath);
    const Pipeline& pipeline = node.getObject()->pipeline();
    std::vector<float> weights(pipeline.base().vertexCount());
    const std::size_t count = std::min(weights.size(), static_cast<std::size_t>(map->getNumWeights()));
    for (std::size_t v = 0; v < count; ++v)
        weights[v] = map->getFloatWeight(static_cast<int>(v));
    geometry::Attenuate(made.deltas, weights, settings.attenuateStrength);
    if (!made.detail.empty())
        geometry::Attenuate(made.detail, *pipeline.subdivision(static_cast<int>(made.detail.levels.size())),
                            weights, settings.attenuateStrength);
}

void Preserve(geometry::SubdividedMorph& made, const DzMorph& present, const Pipeline& pipeline)
{
    made.deltas = geometry::WithPreserved(DeltasAccess::deltas(*present.getDeltas()), made.deltas);
    const geometry::MultiresDetail& old = DeltasAccess::detail(*present.getDeltas());
    if (old.empty())
        return;
    const auto subdivision = pipeline.subdivision(static_cast<int>(old.levels.size()));
    made.detail.levels.resize(std::max(made.detail.levels.size(), old.levels.size()));
    for (std::size_t i = 0; i < old.levels.size(); ++i)
        made.detail.levels[i] = geometry::WithPreserved(old.levels[i], made.detail.levels[i],
                                                        *subdivision->topology(static_cast<int>(i) + 1));
}

QString UniqueMorphName(const DzNode& node, const QString& name)
{
    QString unique = name;
    for (int n = 2; node.getObject()->findModifier(unique); ++n)
        unique = name + QLatin1Char(' ') + QString::number(n);
    return unique;
}

QString WithLeadingSlash(const QString& path)
{
    return path.startsWith(QLatin1Char('/')) ? path : QLatin1Char('/') + path;
}

DzMorph& AddMorph(DzNode& node, const QString& name, const MorphLoadSettings& settings)
{
    auto made = std::make_unique<DzMorph>();
    made->setName(name);
    made->setLabel(name);
    if (node.getObject()->addModifier(made.get()) != DZ_NO_ERROR)
        throw base::Error("the morph was refused");
    DzMorph* const morph = made.release();
    if (!settings.propertyGroupPath.isEmpty())
        morph->getValueControl()->setPath(WithLeadingSlash(settings.propertyGroupPath));
    morph->getValueControl()->setCanAutoFollow(true);
    return *morph;
}

void MakeControlProperty(const MorphLoadSettings& settings, DzNode& node, DzMorph& morph)
{
    DzNode& owner = settings.controlNode ? *settings.controlNode : node;
    DzNumericProperty* control = settings.controlProperty;
    // A control that an earlier load made is used again.
    if (!control)
        control = qobject_cast<DzNumericProperty*>(owner.findProperty(morph.getName()));
    if (!control) {
        auto* const dial = new DzFloatProperty(morph.getName(), true, true, 0.0f);
        dial->setLabel(settings.controlPropertyUseCustomLabel ? settings.controlPropertyCustomLabel
                                                              : morph.getName());
        dial->setMinMax(0.0f, 1.0f);
        dial->setIsClamped(true);
        dial->setDisplayAsPercent(true);
        owner.addProperty(dial);
        dial->setPath(morph.getValueControl()->getPath());
        control = dial;
    }
    const double scalar =
        settings.controlPropertyERCUseCustomValue ? settings.controlPropertyERCCustomValue : 1.0;
    morph.getValueControl()->insertController(
        new DzERCLink(settings.controlPropertyERCType, control, scalar, 0.0));
    morph.getValueControl()->setHidden(settings.hideSecondaryProperties);
}

void PutInPlace(const MorphLoadSettings& settings, DzNode& node, DzMorph* present,
                geometry::SubdividedMorph made)
{
    const QString name = EffectiveMorphName(settings);
    const int vertexCount = static_cast<int>(node.getObject()->pipeline().base().vertexCount());
    if (present && settings.overwriteExisting == DzMorphLoader::DeltasAndERCLinks) {
        node.getObject()->removeModifier(present);
        present = nullptr;
    }
    const bool isUnique = !present || settings.overwriteExisting == DzMorphLoader::MakeUnique;
    if (!isUnique && settings.preserveExistingDeltas)
        Preserve(made, *present, node.getObject()->pipeline());
    DzMorph& morph = isUnique ? AddMorph(node, UniqueMorphName(node, name), settings) : *present;
    DzMorphDeltas* const deltas = DeltasAccess::create(std::move(made.deltas), vertexCount);
    DeltasAccess::assignDetail(*deltas, std::move(made.detail));
    morph.setDeltas(deltas);
    if (isUnique && settings.createControlProperty)
        MakeControlProperty(settings, node, morph);
}

/// The nodes of one figure, or the node alone.
std::vector<DzNode*> PartsOf(DzNode& node)
{
    auto* skeleton = qobject_cast<DzSkeleton*>(&node);
    if (const auto* const bone = qobject_cast<DzBone*>(&node))
        skeleton = bone->getSkeleton();
    std::vector<DzNode*> parts{skeleton ? static_cast<DzNode*>(skeleton) : &node};
    if (skeleton)
        parts.insert(parts.end(), skeleton->bones().begin(), skeleton->bones().end());
    return parts;
}

/// Morphs of the same name on the figure's other parts, which the file holds nothing for.
void RemoveOrphans(const MorphLoadSettings& settings, DzNode& node)
{
    for (DzNode* const part : PartsOf(node)) {
        DzMorph* const orphan =
            part != &node && part->getObject() ? FindMorph(*part, EffectiveMorphName(settings)) : nullptr;
        if (orphan)
            part->getObject()->removeModifier(orphan);
    }
}

void LoadPose(const MorphLoadSettings& settings, DzNode& node)
{
    if (settings.reverseDeformationsPose.isEmpty())
        return;
    dzScene->selectAllNodes(false);
    dzScene->setPrimarySelection(&node);
    if (!dzApp->getContentMgr()->openFile(settings.reverseDeformationsPose, true))
        throw base::Error("the pose " + ToStd(settings.reverseDeformationsPose) + " cannot be loaded");
}

/// The file must hold the mesh as it is subdivided at the level that it was made at.
void CheckSubdividedLoad(const MorphLoadSettings& settings, const DzNode& node, std::size_t fileVertexCount)
{
    if (!DzMorphLoader::SupportsMultiResolution())
        throw base::Error("subdivided morphs need the plug-in Morph Loader Pro SubDivision Resolution");
    const int level = settings.subdivisionBuiltResolution;
    if (level < 0)
        throw base::Error("there is no subdivision level " + std::to_string(level));
    if (settings.subdivisionMapping != DzMorphLoader::Catmark)
        throw base::Error("only files in the order of our own subdivision can be loaded");
    Pipeline& pipeline = node.getObject()->pipeline();
    // Each face of the level before has a vertex of its own, so most wrong levels show without subdividing.
    const double leastCount =
        level == 0 ? 0.0
                   : std::pow(4.0, level - 2) * static_cast<double>(pipeline.base().topology->cornerCount());
    const bool isPossible = static_cast<double>(fileVertexCount) >= leastCount;
    const std::size_t vertexCount =
        isPossible ? pipeline.subdivision(level)->topology(level)->vertexCount : 0;
    if (fileVertexCount != vertexCount)
        throw base::FormatError("the file has {} vertices, which is not {} at subdivision level {}",
                                fileVertexCount, ToStd(node.getLabel()), level);
}

/// What can be told before anything is changed.
void CheckLoad(const MorphLoadSettings& settings, const DzNode* node, std::size_t fileVertexCount)
{
    if (!node || !node->getObject() || !node->getObject()->pipeline().hasMesh())
        throw base::Error("there is no mesh to load a morph onto");
    if (EffectiveMorphName(settings).isEmpty())
        throw base::Error("the morph has no name");
    if (settings.morphSubdivision)
        CheckSubdividedLoad(settings, *node, fileVertexCount);
    const std::size_t vertexCount = node->getObject()->pipeline().base().vertexCount();
    if (!settings.morphSubdivision && fileVertexCount != vertexCount)
        throw base::FormatError("the file has {} vertices but {} has {}", fileVertexCount,
                                ToStd(node->getLabel()), vertexCount);
    if (!settings.attenuateMapPath.isEmpty() && !FindAttenuationMap(*node, settings.attenuateMapPath))
        throw base::Error("there is no weight map at " + ToStd(settings.attenuateMapPath));
    if (!Allows(Operation::CreateMorph, EffectiveMorphName(settings)))
        throw base::Error("the morph was refused");
}

void MakeMorph(const MorphLoadSettings& settings, DzNode* node, std::vector<Vec3f> file)
{
    CheckLoad(settings, node, file.size());
    if (settings.loadMode == DzMorphLoader::SingleSkinFigureFromGraft)
        LogNote(
            EffectiveMorphName(settings) +
            QLatin1String(": the load mode SingleSkinFigureFromGraft has no effect here; the file is read "
                          "as the figure's own mesh"));
    LoadPose(settings, *node);
    DzMorph* const present = FindMorph(*node, EffectiveMorphName(settings));
    geometry::SubdividedMorph made;
    {
        // A morph that stays beside the new one is part of the shape that the new one is added to.
        const bool isReplaced = settings.overwriteExisting != DzMorphLoader::MakeUnique;
        const DialedOut without(settings.reverseDeformations && isReplaced ? present : nullptr);
        made = settings.morphSubdivision && settings.subdivisionBuiltResolution > 0
                   ? MakeSubdividedMorph(settings, *node, std::move(file))
                   : MakePlainMorph(settings, *node, std::move(file));
    }
    // After dropping, so that the parts of a map and of its complement add up to the full morph.
    AttenuateByMap(made, settings, *node);
    PutInPlace(settings, *node, present, std::move(made));
    if (settings.cleanUpOrphans && settings.overwriteExisting != DzMorphLoader::MakeUnique)
        RemoveOrphans(settings, *node);
}

template <class Work>
MorphLoadReport Report(const MorphLoadSettings& settings, Work work)
{
    MorphLoadReport report;
    const QString name = EffectiveMorphName(settings);
    // Reported too, since callers may throw the report away.
    const bool isMade = GuardHostCall(
        {{}, name.toStdString()},
        [&work] {
            work();
            return true;
        },
        [&](const HostFailure& failure) {
            report.problems << name + QLatin1String(": ") + QString::fromStdString(failure.reason);
            return false;
        });
    if (isMade)
        report.success = name + QLatin1String(" was created successfully.");
    return report;
}

} // namespace

QString MorphLoadReport::text(bool onlyProblems, bool plainText) const
{
    QStringList lines = problems;
    if (!onlyProblems && !success.isEmpty())
        lines << success;
    if (plainText)
        return lines.join(QLatin1Char('\n'));
    QString html;
    for (const QString& line : lines)
        html += QLatin1String("<p>") + line.toHtmlEscaped() + QLatin1String("</p>");
    return html;
}

MorphLoadReport LoadMorphFromFile(const MorphLoadSettings& settings, const DzFileIOSettings* importOptions,
                                  DzNode* node)
{
    return Report(settings, [&] {
        const DzFileIOSettings defaults;
        geometry::ObjReadOptions options = ReadObjReadOptions(importOptions ? *importOptions : defaults);
        options.readFaces = options.readLines = options.readTexCoords = false;
        options.readGroups = options.readSurfaces = false;
        geometry::ObjContent content = ObjsOfThisWork()->read(ToStd(settings.filename), options);
        MakeMorph(settings, node, std::move(content.mesh.positions));
    });
}

MorphLoadReport LoadMorphFromMesh(const MorphLoadSettings& settings, const DzVertexMesh* mesh, DzNode* node)
{
    return Report(settings, [&] {
        if (!mesh)
            throw base::Error("there is no mesh to make a morph from");
        MakeMorph(settings, node, MeshAccess::mesh(*mesh).positions);
    });
}

QString EffectiveMorphName(const MorphLoadSettings& settings)
{
    return settings.morphName.isEmpty() ? QFileInfo(settings.filename).completeBaseName()
                                        : settings.morphName;
}

DzMorph* FindMorph(const DzNode& node, const QString& name)
{
    const DzObject* const object = node.getObject();
    return object ? qobject_cast<DzMorph*>(object->findModifier(name)) : nullptr;
}

} // namespace openhost
