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
        throw Exception(MORPH_IMPORT_SETTINGS_ERROR);
    for (const char* const key : MorphImportSwitchedOff())
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

const std::vector<MorphLoadOption>& MorphLoadOptions()
{
    typedef MorphLoader L;
    typedef const MorphLoad& Load;
    static const std::vector<MorphLoadOption> options{
        {[](L& l, Load load) { l.setFilename(str::ToQ(load.objFile)); }, "setFilename", "sInputFilename"},
        {[](L& l, Load load) { l.setMorphName(str::ToQ(load.morphName)); }, "setMorphName", "sMorphName"},
        {[](L& l, Load load) { l.setMorphSubdivision(load.subdivide); }, "setMorphSubdivision", "fSubd"},
        {[](L& l, Load load) { l.setSubdivisionBuiltResolution(load.builtResolution); },
         "setSubdivisionBuiltResolution", "iSubdBuiltResolution"},
        {[](L& l, Load) { l.setSubdivisionMinResolution(0); }, "setSubdivisionMinResolution", "0"},
        {[](L& l, Load) { l.setSubdivisionMaxResolution(9); }, "setSubdivisionMaxResolution", "9"},
        {[](L& l, Load load) { l.setSubdivisionSmoothCage(load.subdivide); }, "setSubdivisionSmoothCage",
         "fSubd"},
        {[](L& l, Load) { l.setSubdivisionMapping(L::SubdMapping::Catmark); }, "setSubdivisionMapping",
         "DzMorphLoader.Catmark"},
        {[](L& l, Load) { l.setDeltaTolerance(0.001f); }, "setDeltaTolerance", "0.001"}, // centimetres
        {[](L& l, Load) { l.setCreateControlProperty(false); }, "setCreateControlProperty", "false"},
        {[](L& l, Load load) { l.setPropertyGroupPath(str::ToQ(load.propertyGroupPath)); },
         "setPropertyGroupPath", "sPropertyGroupPath"},
        {[](L& l, Load load) { l.setReverseDeformations(load.reverseDeformations); },
         "setReverseDeformations", "fReverseDeformations"},
        {[](L& l, Load) { l.setOverwriteExisting(L::OverwriteMode::DeltasOnly); }, "setOverwriteExisting",
         "DzMorphLoader.DeltasOnly"},
        {[](L& l, Load) { l.setCleanUpOrphans(true); }, "setCleanUpOrphans", "true"},
        {[](L& l, Load) { l.setMorphMirroring(L::MirroringType::DoNotMirror); }, "setMorphMirroring",
         "DzMorphLoader.DoNotMirror"},
    };
    return options;
}

const std::vector<MorphLoadOption>& MorphAttenuationOptions()
{
    static const std::vector<MorphLoadOption> options{
        {[](MorphLoader& l, const MorphLoad& load) {
             l.setAttenuateMapPath(str::ToQ(load.attenuateMapPath));
         },
         "setAttenuateMapPath", "sAttenuateMapPath"},
        {[](MorphLoader& l, const MorphLoad& load) { l.setAttenuateStrength(load.attenuateStrength); },
         "setAttenuateStrength", "tAttenuate"},
    };
    return options;
}

const std::vector<const char*>& MorphImportSwitchedOff()
{
    static const std::vector<const char*> keys{"IncludeVT", "IncludeG", "IncludeUsemtl", "IncludeMtllib"};
    return keys;
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

std::string MorphLoaderBatch::Exec_X(DzNode* node, const MorphLoad& load)
{
    DzFileIOSettings settings;
    PrepareImportSettings_X(settings, load.importSettingsJson);

    const std::unique_ptr<MorphLoader> loader = MorphLoader::CreateMlpInstance_X();
    const MorphLoader::LoadMode mode = node && node->inherits("DzFigure")
                                           ? MorphLoader::LoadMode::SingleSkinFigure
                                           : MorphLoader::LoadMode::PrimaryNode;
    if (!loader->setLoadMode(mode, node))
        throw Exception(MORPH_LOAD_MODE_ERROR);
    for (const MorphLoadOption& option : MorphLoadOptions())
        option.set(*loader, load);
    if (!load.attenuateMapPath.empty())
        for (const MorphLoadOption& option : MorphAttenuationOptions())
            option.set(*loader, load);

    const std::unique_ptr<MorphLoaderBatch> batch = CreateMlBatchInstance_X();
    batch->addMorph(*loader);
    batch->createMorphs(&settings, node, false, true);
    return std::string();
}

std::string MorphLoaderBatch::Exec_X(DzNode* node, std::string_view objFile, std::string_view morphName,
                                     const QString& importSettingsJson, bool subdivide, int builtResolution,
                                     std::string_view propertyGroupPath, bool reverseDeformations,
                                     std::string_view attenuateMapPath, float attenuateStrength)
{
    return Exec_X(node, MorphLoad{std::string(objFile), std::string(morphName), importSettingsJson, subdivide,
                                  builtResolution, std::string(propertyGroupPath), reverseDeformations,
                                  std::string(attenuateMapPath), attenuateStrength});
}

} // namespace kst
