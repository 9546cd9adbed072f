// The host's Morph Loader Pro, driven by method name.
// SPDX-License-Identifier: MIT

#include "ks_morph-loader.h"

#include "ks_assert.h"
#include "ks_exception.h"
#include "ks_string.h"

#include <algorithm>
#include <cstring>

#include <dzfileiosettings.h>
#include <dznode.h>

namespace kst {

namespace {

const float deltaToleranceCentimetres = 0.001f;

/// Position of a signature in a table; each that is called stands there.
std::size_t IndexOf(const std::vector<const char*>& signatures, const char* signature)
{
    const auto found = std::find_if(signatures.begin(), signatures.end(), [signature](const char* entry) {
        return std::strcmp(entry, signature) == 0;
    });
    assert(found != signatures.end());
    return static_cast<std::size_t>(found - signatures.begin());
}

/// The wrapped class is known by name only, so its pointers travel as plain objects under their type text.
QGenericArgument ObjectArgument(const char* typeName, QObject* const& object)
{
    return QGenericArgument(typeName, &object);
}

void PrepareImportSettings_X(DzFileIOSettings& settings, const QString& json)
{
    if (!json.isEmpty() && !settings.fromString(json))
        throw Exception("invalid JSON settings for OBJ importer in Morph Loader Pro");
    // A morph needs positions only; the rest costs time.
    for (const char* const key : {"IncludeVT", "IncludeG", "IncludeUsemtl", "IncludeMtllib"})
        settings.setBoolValue(QLatin1String(key), false);
    settings.setIntValue(QLatin1String("RunSilent"), 1);
}

} // namespace

const std::vector<const char*>& MorphLoader::Signatures()
{
    static const std::vector<const char*> signatures{"createMorph(DzFileIOSettings*,DzNode*,bool,bool)",
                                                     "createMorphFromMesh(DzVertexMeshPtr,DzNode*,bool,bool)",
                                                     "setLoadMode(LoadMode,DzNode*)",
                                                     "setDisplayName(QString)",
                                                     "getDisplayName()",
                                                     "setFilename(QString)",
                                                     "getFilename()",
                                                     "setMorphName(QString)",
                                                     "getMorphName()",
                                                     "setMorphSubdivision(bool)",
                                                     "getMorphSubdivision()",
                                                     "setSubdivisionBuiltResolution(int)",
                                                     "getSubdivisionBuiltResolution()",
                                                     "setSubdivisionMinResolution(int)",
                                                     "getSubdivisionMinResolution()",
                                                     "setSubdivisionMaxResolution(int)",
                                                     "getSubdivisionMaxResolution()",
                                                     "setSubdivisionSmoothCage(bool)",
                                                     "getSubdivisionSmoothCage()",
                                                     "setSubdivisionMapping(SubdMapping)",
                                                     "getSubdivisionMapping()",
                                                     "setDeltaTolerance(float)",
                                                     "getDeltaTolerance()",
                                                     "setCreateControlProperty(bool)",
                                                     "getCreateControlProperty()",
                                                     "setPropertyGroupPath(QString)",
                                                     "getPropertyGroupPath()",
                                                     "setControlPropertyERCType(DzERCLink::ERCType)",
                                                     "getControlPropertyERCType()",
                                                     "setControlPropertyERCUseCustomValue(bool)",
                                                     "getControlPropertyERCUseCustomValue()",
                                                     "setControlPropertyERCCustomValue(float)",
                                                     "getControlPropertyERCCustomValue()",
                                                     "setControlNode(DzNode*)",
                                                     "getControlNode()",
                                                     "setControlProperty(DzNumericProperty*)",
                                                     "getControlProperty()",
                                                     "setControlPropertyUseCustomLabel(bool)",
                                                     "getControlPropertyUseCustomLabel()",
                                                     "setControlPropertyCustomLabel(QString)",
                                                     "getControlPropertyCustomLabel()",
                                                     "setHideSecondaryProperties(bool)",
                                                     "getHideSecondaryProperties()",
                                                     "setReverseDeformations(bool)",
                                                     "getReverseDeformations()",
                                                     "setPreserveExistingDeltas(bool)",
                                                     "getPreserveExistingDeltas()",
                                                     "setReverseDeformationsPose(QString)",
                                                     "getReverseDeformationsPose()",
                                                     "setOverwriteExisting(OverwriteMode)",
                                                     "getOverwriteExisting()",
                                                     "setCleanUpOrphans(bool)",
                                                     "getCleanUpOrphans()",
                                                     "setMorphMirroring(MirroringType)",
                                                     "getMorphMirroring()",
                                                     "setAttenuateMapPath(QString)",
                                                     "getAttenuateMapPath()",
                                                     "setAttenuateStrength(float)",
                                                     "getAttenuateStrength()",
                                                     "setAttenuateEdgeStrength(float)",
                                                     "getAttenuateEdgeStrength()",
                                                     "readObjectSettingsFromConfigFile(QString,QString)",
                                                     "readObjectCommonSettingsFromConfigFile(QString)",
                                                     "saveObjectSettingsToConfigFile(QString,QString,bool)",
                                                     "morphAlreadyExists(DzNode*)",
                                                     "allowMultiResolutionMorphs()",
                                                     "getPathForContext(DzWeightMapContext*,DzNode*)"};
    return signatures;
}

std::unique_ptr<MorphLoader> MorphLoader::CreateMlpInstance_X()
{
    return std::unique_ptr<MorphLoader>(
        new MorphLoader(std::unique_ptr<QObject>(CreateInstanceViaFactory_X("DzMorphLoader"))));
}

MorphLoader::MorphLoader(std::unique_ptr<QObject> object)
    : MagicImpl<QObject, MorphLoader>(*object), _object(std::move(object))
{
}

MorphLoader::~MorphLoader() = default;

bool MorphLoader::set(const char* signature, const char* typeName, const void* value)
{
    static_assert(sizeof(LoadMode) == sizeof(int), "enumerations are handed over as the host's");
    return invokeBool(IndexOf(Signatures(), signature), QGenericArgument(typeName, value));
}

bool MorphLoader::setLoadMode(LoadMode mode, DzNode* node)
{
    return invokeBool(IndexOf(Signatures(), "setLoadMode(LoadMode,DzNode*)"),
                      QGenericArgument("LoadMode", &mode), Q_ARG(DzNode*, node));
}

bool MorphLoader::setFilename(const QString& file)
{
    return set("setFilename(QString)", "QString", &file);
}

bool MorphLoader::setMorphName(const QString& name)
{
    return set("setMorphName(QString)", "QString", &name);
}

bool MorphLoader::setPropertyGroupPath(const QString& path)
{
    return set("setPropertyGroupPath(QString)", "QString", &path);
}

bool MorphLoader::setAttenuateMapPath(const QString& path)
{
    return set("setAttenuateMapPath(QString)", "QString", &path);
}

bool MorphLoader::setAttenuateStrength(float strength)
{
    return set("setAttenuateStrength(float)", "float", &strength);
}

bool MorphLoader::setDeltaTolerance(float centimetres)
{
    return set("setDeltaTolerance(float)", "float", &centimetres);
}

bool MorphLoader::setCleanUpOrphans(bool on)
{
    return set("setCleanUpOrphans(bool)", "bool", &on);
}

bool MorphLoader::setCreateControlProperty(bool on)
{
    return set("setCreateControlProperty(bool)", "bool", &on);
}

bool MorphLoader::setMorphSubdivision(bool on)
{
    return set("setMorphSubdivision(bool)", "bool", &on);
}

bool MorphLoader::setReverseDeformations(bool on)
{
    return set("setReverseDeformations(bool)", "bool", &on);
}

bool MorphLoader::setSubdivisionSmoothCage(bool on)
{
    return set("setSubdivisionSmoothCage(bool)", "bool", &on);
}

bool MorphLoader::setSubdivisionBuiltResolution(int level)
{
    return set("setSubdivisionBuiltResolution(int)", "int", &level);
}

bool MorphLoader::setSubdivisionMinResolution(int level)
{
    return set("setSubdivisionMinResolution(int)", "int", &level);
}

bool MorphLoader::setSubdivisionMaxResolution(int level)
{
    return set("setSubdivisionMaxResolution(int)", "int", &level);
}

bool MorphLoader::setSubdivisionMapping(SubdMapping mapping)
{
    return set("setSubdivisionMapping(SubdMapping)", "SubdMapping", &mapping);
}

bool MorphLoader::setOverwriteExisting(OverwriteMode mode)
{
    return set("setOverwriteExisting(OverwriteMode)", "OverwriteMode", &mode);
}

bool MorphLoader::setMorphMirroring(MirroringType type)
{
    return set("setMorphMirroring(MirroringType)", "MirroringType", &type);
}

const std::vector<const char*>& MorphLoaderBatch::Signatures()
{
    static const std::vector<const char*> signatures{"morphListChanged()",
                                                     "morphAdded(DzMorphLoader*)",
                                                     "morphRemoved(DzMorphLoader*,int)",
                                                     "morphMoved(int,int)",
                                                     "createMorphs(DzFileIOSettings*,DzNode*,bool,bool)",
                                                     "createMorphs(DzFileIOSettings*,DzNode*,bool)",
                                                     "createMorphs(DzFileIOSettings*,DzNode*)",
                                                     "addMorph(DzMorphLoader*)",
                                                     "getNumMorphs()",
                                                     "getMorph(int)",
                                                     "findMorph(DzMorphLoader*)",
                                                     "clear()",
                                                     "moveMorph(DzMorphLoader*,bool)",
                                                     "removeMorph(DzMorphLoader*)",
                                                     "addFromFile(QString)",
                                                     "addFromFiles(QStringList)",
                                                     "addFromMesh(DzVertexMesh*)",
                                                     "addFromConfigFile(QString)",
                                                     "saveProjectSettingsToConfigFile(QString,bool,bool)",
                                                     "usePresetConfiguration()",
                                                     "setUsePresetConfiguration(bool)",
                                                     "presetConfigurationFile()",
                                                     "setPresetConfigurationFile(QString)",
                                                     "setNode(DzNode*)",
                                                     "getNode()"};
    return signatures;
}

std::unique_ptr<MorphLoaderBatch> MorphLoaderBatch::CreateMlBatchInstance_X()
{
    return std::unique_ptr<MorphLoaderBatch>(
        new MorphLoaderBatch(std::unique_ptr<QObject>(CreateInstanceViaFactory_X("DzMorphLoaderBatch"))));
}

MorphLoaderBatch::MorphLoaderBatch(std::unique_ptr<QObject> object)
    : MagicImpl<QObject, MorphLoaderBatch>(*object), _object(std::move(object))
{
}

MorphLoaderBatch::~MorphLoaderBatch() = default;

void MorphLoaderBatch::addMorph(MorphLoader& loader)
{
    QObject* const loaderObject = &loader.getObject();
    invoke(IndexOf(Signatures(), "addMorph(DzMorphLoader*)"), ObjectArgument("DzMorphLoader*", loaderObject));
}

QString MorphLoaderBatch::createMorphs(DzFileIOSettings* settings, DzNode* node, bool onlyErrorsOrWarnings,
                                       bool plainText)
{
    return invokeText(IndexOf(Signatures(), "createMorphs(DzFileIOSettings*,DzNode*,bool,bool)"),
                      Q_ARG(DzFileIOSettings*, settings), Q_ARG(DzNode*, node),
                      Q_ARG(bool, onlyErrorsOrWarnings), Q_ARG(bool, plainText));
}

std::string MorphLoaderBatch::Exec_X(DzNode* node, std::string_view objFile, std::string_view morphName,
                                     const QString& importSettingsJson, bool subdivide, int builtResolution,
                                     std::string_view propertyGroupPath, bool reverseDeformations,
                                     std::string_view attenuateMapPath, float attenuateStrength)
{
    DzFileIOSettings settings;
    PrepareImportSettings_X(settings, importSettingsJson);

    const std::unique_ptr<MorphLoader> loader = MorphLoader::CreateMlpInstance_X();
    const MorphLoader::LoadMode mode = node && node->inherits("DzFigure")
                                           ? MorphLoader::LoadMode::SingleSkinFigure
                                           : MorphLoader::LoadMode::PrimaryNode;
    if (!loader->setLoadMode(mode, node))
        throw Exception("incompatible load mode");
    loader->setFilename(str::ToQ(objFile));
    loader->setMorphName(str::ToQ(morphName));
    loader->setMorphSubdivision(subdivide);
    loader->setSubdivisionBuiltResolution(builtResolution);
    loader->setSubdivisionMinResolution(0);
    loader->setSubdivisionMaxResolution(9);
    loader->setSubdivisionSmoothCage(subdivide);
    loader->setSubdivisionMapping(MorphLoader::SubdMapping::Catmark);
    loader->setDeltaTolerance(deltaToleranceCentimetres);
    loader->setCreateControlProperty(false);
    loader->setPropertyGroupPath(str::ToQ(propertyGroupPath));
    loader->setReverseDeformations(reverseDeformations);
    loader->setOverwriteExisting(MorphLoader::OverwriteMode::DeltasOnly);
    loader->setCleanUpOrphans(true);
    loader->setMorphMirroring(MorphLoader::MirroringType::DoNotMirror);
    if (!attenuateMapPath.empty()) {
        loader->setAttenuateMapPath(str::ToQ(attenuateMapPath));
        loader->setAttenuateStrength(attenuateStrength);
    }

    const std::unique_ptr<MorphLoaderBatch> batch = CreateMlBatchInstance_X();
    batch->addMorph(*loader);
    batch->createMorphs(&settings, node, false, true);
    return std::string();
}

} // namespace kst
