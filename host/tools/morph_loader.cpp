// Morph Loader Pro: the settings of one morph.
// SPDX-License-Identifier: MIT

#include "tools/morph_loader.h"

#include "dzapp.h"
#include "dzfigure.h"
#include "dzmorph.h"
#include "dzobject.h"
#include "dzplugin.h"
#include "dzpluginmgr.h"
#include "morph_load.h"
#include "morph_load_config.h"
#include "morph_load_settings.h"

DzMorphLoader::DzMorphLoader() : _impl(std::make_unique<openhost::MorphLoadSettings>()) {}
DzMorphLoader::~DzMorphLoader() = default;

QString DzMorphLoader::createMorph(DzFileIOSettings* settings, DzNode* node, bool onlyErrorsOrWarnings,
                                   bool plainText)
{
    return openhost::LoadMorphFromFile(*_impl, settings, node).text(onlyErrorsOrWarnings, plainText);
}

QString DzMorphLoader::createMorphFromMesh(DzVertexMeshPtr mesh, DzNode* node, bool onlyErrorsOrWarnings,
                                           bool plainText)
{
    return openhost::LoadMorphFromMesh(*_impl, mesh, node).text(onlyErrorsOrWarnings, plainText);
}

bool DzMorphLoader::setLoadMode(LoadMode mode, DzNode* node)
{
    if (!node || !node->getObject() || !node->getObject()->getCurrentShape())
        return false;
    const bool isSkinned = qobject_cast<DzFigure*>(node) != nullptr;
    const bool isSkinMode = mode == SingleSkinFigure || mode == SingleSkinFigureFromGraft;
    if (isSkinned != isSkinMode || (!isSkinned && mode != PrimaryNode))
        return false;
    _impl->loadMode = mode;
    return true;
}

bool DzMorphLoader::readObjectSettingsFromConfigFile(const QString& file, const QString& object)
{
    return openhost::ReadConfig(file, openhost::ConfigSection::Object, object, _impl.get());
}

bool DzMorphLoader::readObjectCommonSettingsFromConfigFile(const QString& file)
{
    return openhost::ReadConfig(file, openhost::ConfigSection::Common, QString(), _impl.get());
}

bool DzMorphLoader::saveObjectSettingsToConfigFile(const QString& file, const QString& object, bool common)
{
    using openhost::ConfigSection;
    return openhost::WriteConfig(file, common ? ConfigSection::Common : ConfigSection::Object, object,
                                 *_impl);
}

bool DzMorphLoader::morphAlreadyExists(DzNode* node)
{
    return node && openhost::FindMorph(*node, openhost::EffectiveMorphName(*_impl)) != nullptr;
}

bool DzMorphLoader::allowMultiResolutionMorphs()
{
    return SupportsMultiResolution();
}

bool DzMorphLoader::SupportsMultiResolution()
{
    const DzPlugin* const plugin =
        dzApp->getPluginMgr()->findPlugin(QLatin1String("Morph Loader Pro SubDivision Resolution"));
    return plugin && plugin->isActivated();
}

QString DzMorphLoader::getPathForContext(DzWeightMapContext* context, DzNode* node)
{
    return openhost::AttenuationPath(context, node);
}

void DzMorphLoader::setDisplayName(const QString& value)
{
    _impl->displayName = value;
}
QString DzMorphLoader::getDisplayName() const
{
    return _impl->displayName;
}
void DzMorphLoader::setFilename(const QString& value)
{
    _impl->filename = value;
}
QString DzMorphLoader::getFilename() const
{
    return _impl->filename;
}
void DzMorphLoader::setMorphName(const QString& value)
{
    _impl->morphName = value;
}
QString DzMorphLoader::getMorphName() const
{
    return _impl->morphName;
}
void DzMorphLoader::setMorphSubdivision(bool value)
{
    _impl->morphSubdivision = value;
}
bool DzMorphLoader::getMorphSubdivision() const
{
    return _impl->morphSubdivision;
}
void DzMorphLoader::setSubdivisionBuiltResolution(int value)
{
    _impl->subdivisionBuiltResolution = value;
}
int DzMorphLoader::getSubdivisionBuiltResolution() const
{
    return _impl->subdivisionBuiltResolution;
}
void DzMorphLoader::setSubdivisionMinResolution(int value)
{
    _impl->subdivisionMinResolution = value;
}
int DzMorphLoader::getSubdivisionMinResolution() const
{
    return _impl->subdivisionMinResolution;
}
void DzMorphLoader::setSubdivisionMaxResolution(int value)
{
    _impl->subdivisionMaxResolution = value;
}
int DzMorphLoader::getSubdivisionMaxResolution() const
{
    return _impl->subdivisionMaxResolution;
}
void DzMorphLoader::setSubdivisionSmoothCage(bool value)
{
    _impl->subdivisionSmoothCage = value;
}
bool DzMorphLoader::getSubdivisionSmoothCage() const
{
    return _impl->subdivisionSmoothCage;
}
void DzMorphLoader::setSubdivisionMapping(SubdMapping value)
{
    _impl->subdivisionMapping = value;
}
DzMorphLoader::SubdMapping DzMorphLoader::getSubdivisionMapping() const
{
    return _impl->subdivisionMapping;
}
void DzMorphLoader::setDeltaTolerance(float value)
{
    _impl->deltaTolerance = value;
}
float DzMorphLoader::getDeltaTolerance() const
{
    return _impl->deltaTolerance;
}
void DzMorphLoader::setCreateControlProperty(bool value)
{
    _impl->createControlProperty = value;
}
bool DzMorphLoader::getCreateControlProperty() const
{
    return _impl->createControlProperty;
}
void DzMorphLoader::setPropertyGroupPath(const QString& value)
{
    _impl->propertyGroupPath = value;
}
QString DzMorphLoader::getPropertyGroupPath() const
{
    return _impl->propertyGroupPath;
}
void DzMorphLoader::setControlPropertyERCType(DzERCLink::ERCType value)
{
    _impl->controlPropertyERCType = value;
}
DzERCLink::ERCType DzMorphLoader::getControlPropertyERCType() const
{
    return _impl->controlPropertyERCType;
}
void DzMorphLoader::setControlPropertyERCUseCustomValue(bool value)
{
    _impl->controlPropertyERCUseCustomValue = value;
}
bool DzMorphLoader::getControlPropertyERCUseCustomValue() const
{
    return _impl->controlPropertyERCUseCustomValue;
}
void DzMorphLoader::setControlPropertyERCCustomValue(float value)
{
    _impl->controlPropertyERCCustomValue = value;
}
float DzMorphLoader::getControlPropertyERCCustomValue() const
{
    return _impl->controlPropertyERCCustomValue;
}
void DzMorphLoader::setControlNode(DzNode* value)
{
    _impl->controlNode = value;
}
DzNode* DzMorphLoader::getControlNode() const
{
    return _impl->controlNode;
}
void DzMorphLoader::setControlProperty(DzNumericProperty* value)
{
    _impl->controlProperty = value;
}
DzNumericProperty* DzMorphLoader::getControlProperty() const
{
    return _impl->controlProperty;
}
void DzMorphLoader::setControlPropertyUseCustomLabel(bool value)
{
    _impl->controlPropertyUseCustomLabel = value;
}
bool DzMorphLoader::getControlPropertyUseCustomLabel() const
{
    return _impl->controlPropertyUseCustomLabel;
}
void DzMorphLoader::setControlPropertyCustomLabel(const QString& value)
{
    _impl->controlPropertyCustomLabel = value;
}
QString DzMorphLoader::getControlPropertyCustomLabel() const
{
    return _impl->controlPropertyCustomLabel;
}
void DzMorphLoader::setHideSecondaryProperties(bool value)
{
    _impl->hideSecondaryProperties = value;
}
bool DzMorphLoader::getHideSecondaryProperties() const
{
    return _impl->hideSecondaryProperties;
}
void DzMorphLoader::setReverseDeformations(bool value)
{
    _impl->reverseDeformations = value;
}
bool DzMorphLoader::getReverseDeformations() const
{
    return _impl->reverseDeformations;
}
void DzMorphLoader::setPreserveExistingDeltas(bool value)
{
    _impl->preserveExistingDeltas = value;
}
bool DzMorphLoader::getPreserveExistingDeltas() const
{
    return _impl->preserveExistingDeltas;
}
void DzMorphLoader::setReverseDeformationsPose(const QString& value)
{
    _impl->reverseDeformationsPose = value;
}
QString DzMorphLoader::getReverseDeformationsPose() const
{
    return _impl->reverseDeformationsPose;
}
void DzMorphLoader::setOverwriteExisting(OverwriteMode value)
{
    _impl->overwriteExisting = value;
}
DzMorphLoader::OverwriteMode DzMorphLoader::getOverwriteExisting() const
{
    return _impl->overwriteExisting;
}
void DzMorphLoader::setCleanUpOrphans(bool value)
{
    _impl->cleanUpOrphans = value;
}
bool DzMorphLoader::getCleanUpOrphans() const
{
    return _impl->cleanUpOrphans;
}
void DzMorphLoader::setMorphMirroring(MirroringType value)
{
    _impl->morphMirroring = value;
}
DzMorphLoader::MirroringType DzMorphLoader::getMorphMirroring() const
{
    return _impl->morphMirroring;
}
void DzMorphLoader::setAttenuateMapPath(const QString& value)
{
    _impl->attenuateMapPath = value;
}
QString DzMorphLoader::getAttenuateMapPath() const
{
    return _impl->attenuateMapPath;
}
void DzMorphLoader::setAttenuateStrength(float value)
{
    _impl->attenuateStrength = value;
}
float DzMorphLoader::getAttenuateStrength() const
{
    return _impl->attenuateStrength;
}
void DzMorphLoader::setAttenuateEdgeStrength(float value)
{
    _impl->attenuateEdgeStrength = value;
}
float DzMorphLoader::getAttenuateEdgeStrength() const
{
    return _impl->attenuateEdgeStrength;
}
