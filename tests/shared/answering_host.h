// Classes of hosts whose methods answer, and of hosts whose methods do not.
// SPDX-License-Identifier: MIT

#pragma once

#include <dzerclink.h>

#include <QObject>
#include <QStringList>

#include <string>
#include <vector>

class DzFileIOSettings;
class DzMorphLoader;
class DzNode;
class DzNumericProperty;
class DzVertexMesh;
class DzWeightMapContext;

namespace answering {

/// What the classes below were called for, in order: name and argument.
inline std::vector<std::string> calls;
/// What the methods answer that answer with a bool.
inline bool answer = true;

inline std::string TextOf(const QString& text)
{
    return text.toStdString();
}
inline std::string TextOf(const QStringList& texts)
{
    return texts.join(QLatin1Char('+')).toStdString();
}
inline std::string TextOf(const void* object)
{
    return object ? "object" : "null";
}
inline std::string TextOf(bool on)
{
    return on ? "on" : "off";
}
inline std::string TextOf(double number)
{
    return QString::number(number, 'g', 3).toStdString();
}
inline std::string TextOf(int number)
{
    return std::to_string(number);
}

template <class T>
bool Called(const char* name, const T& argument)
{
    calls.push_back(std::string(name) + ' ' + TextOf(argument));
    return answer;
}

class BoolTransfer : public QObject {
    Q_OBJECT
public:
    Q_INVOKABLE bool setSource(DzNode* node) { return Called("source", static_cast<void*>(node)); }
    Q_INVOKABLE bool setTarget(DzNode* node) { return Called("target", static_cast<void*>(node)); }
    Q_INVOKABLE bool setTransferMorphs(bool on) { return Called("morphs", on); }
    Q_INVOKABLE bool setTransferSourceMorphs(int type) { return Called("which", type); }
    Q_INVOKABLE bool setOverrideExistingMorphs(bool on) { return Called("override", on); }
    Q_INVOKABLE bool setTransferBinding(bool on) { return Called("binding", on); }
    Q_INVOKABLE bool setTransferSelectionMap(bool on) { return Called("selection", on); }
    Q_INVOKABLE bool setTransferFaceGroups(bool on) { return Called("faces", on); }
    Q_INVOKABLE bool setTransferRegionGroups(bool on) { return Called("regions", on); }
    Q_INVOKABLE bool setTargetReplacesSource(bool on) { return Called("replaces", on); }
    Q_INVOKABLE bool setParentToFigure(bool on) { return Called("parent", on); }
    Q_INVOKABLE bool setMorphTransferList(const QStringList& names) { return Called("list", names); }
    Q_INVOKABLE bool doTransfer() { return Called("transfer", true); }
};

class SilentTransfer : public QObject {
    Q_OBJECT
public:
    Q_INVOKABLE void setSource(DzNode* node) { Called("source", static_cast<void*>(node)); }
    Q_INVOKABLE void setTarget(DzNode* node) { Called("target", static_cast<void*>(node)); }
    Q_INVOKABLE void setTransferMorphs(bool on) { Called("morphs", on); }
    Q_INVOKABLE void setTransferSourceMorphs(int type) { Called("which", type); }
    Q_INVOKABLE void setOverrideExistingMorphs(bool on) { Called("override", on); }
    Q_INVOKABLE void setTransferBinding(bool on) { Called("binding", on); }
    Q_INVOKABLE void setTransferSelectionMap(bool on) { Called("selection", on); }
    Q_INVOKABLE void setTransferFaceGroups(bool on) { Called("faces", on); }
    Q_INVOKABLE void setTransferRegionGroups(bool on) { Called("regions", on); }
    /// Neither bool nor void.
    Q_INVOKABLE int setTargetReplacesSource(bool on) { return Called("replaces", on) ? 0 : 1; }
    Q_INVOKABLE void setParentToFigure(bool on) { Called("parent", on); }
    Q_INVOKABLE void setMorphTransferList(const QStringList& names) { Called("list", names); }
    Q_INVOKABLE void doTransfer() { Called("transfer", true); }
};

typedef void* DzVertexMeshPtr;

class BoolLoader : public QObject {
    Q_OBJECT
public:
    enum LoadMode { PrimaryNode = 2, SingleSkinFigure = 3 };
    enum SubdMapping { Catmark };
    enum OverwriteMode { DeltasOnly = 2 };
    enum MirroringType { DoNotMirror };

    Q_INVOKABLE bool setLoadMode(LoadMode mode, DzNode*) { return Called("mode", static_cast<int>(mode)); }
    Q_INVOKABLE bool setFilename(const QString& file) { return Called("file", file); }
    Q_INVOKABLE bool setMorphName(const QString& name) { return Called("name", name); }
    Q_INVOKABLE bool setMorphSubdivision(bool on) { return Called("subdivision", on); }
    Q_INVOKABLE bool setSubdivisionBuiltResolution(int level) { return Called("built", level); }
    Q_INVOKABLE bool setSubdivisionMinResolution(int level) { return Called("min", level); }
    Q_INVOKABLE bool setSubdivisionMaxResolution(int level) { return Called("max", level); }
    Q_INVOKABLE bool setSubdivisionSmoothCage(bool on) { return Called("smooth", on); }
    Q_INVOKABLE bool setSubdivisionMapping(SubdMapping mapping)
    {
        return Called("mapping", static_cast<int>(mapping));
    }
    Q_INVOKABLE bool setDeltaTolerance(float tolerance)
    {
        return Called("tolerance", static_cast<double>(tolerance));
    }
    Q_INVOKABLE bool setCreateControlProperty(bool on) { return Called("control", on); }
    Q_INVOKABLE bool setPropertyGroupPath(const QString& path) { return Called("path", path); }
    Q_INVOKABLE bool setReverseDeformations(bool on) { return Called("reverse", on); }
    Q_INVOKABLE bool setOverwriteExisting(OverwriteMode mode)
    {
        return Called("overwrite", static_cast<int>(mode));
    }
    Q_INVOKABLE bool setCleanUpOrphans(bool on) { return Called("orphans", on); }
    Q_INVOKABLE bool setMorphMirroring(MirroringType type)
    {
        return Called("mirroring", static_cast<int>(type));
    }
    Q_INVOKABLE bool setAttenuateMapPath(const QString& path) { return Called("map", path); }
    Q_INVOKABLE bool setAttenuateStrength(float strength)
    {
        return Called("strength", static_cast<double>(strength));
    }

    // Those that the wrapper looks for but does not call.
    Q_INVOKABLE void createMorph(DzFileIOSettings*, DzNode*, bool, bool) {}
    Q_INVOKABLE void createMorphFromMesh(DzVertexMeshPtr, DzNode*, bool, bool) {}
    Q_INVOKABLE void setDisplayName(const QString&) {}
    Q_INVOKABLE void getDisplayName() {}
    Q_INVOKABLE void getFilename() {}
    Q_INVOKABLE void getMorphName() {}
    Q_INVOKABLE void getMorphSubdivision() {}
    Q_INVOKABLE void getSubdivisionBuiltResolution() {}
    Q_INVOKABLE void getSubdivisionMinResolution() {}
    Q_INVOKABLE void getSubdivisionMaxResolution() {}
    Q_INVOKABLE void getSubdivisionSmoothCage() {}
    Q_INVOKABLE void getSubdivisionMapping() {}
    Q_INVOKABLE void getDeltaTolerance() {}
    Q_INVOKABLE void getCreateControlProperty() {}
    Q_INVOKABLE void getPropertyGroupPath() {}
    Q_INVOKABLE void setControlPropertyERCType(DzERCLink::ERCType) {}
    Q_INVOKABLE void getControlPropertyERCType() {}
    Q_INVOKABLE void setControlPropertyERCUseCustomValue(bool) {}
    Q_INVOKABLE void getControlPropertyERCUseCustomValue() {}
    Q_INVOKABLE void setControlPropertyERCCustomValue(float) {}
    Q_INVOKABLE void getControlPropertyERCCustomValue() {}
    Q_INVOKABLE void setControlNode(DzNode*) {}
    Q_INVOKABLE void getControlNode() {}
    Q_INVOKABLE void setControlProperty(DzNumericProperty*) {}
    Q_INVOKABLE void getControlProperty() {}
    Q_INVOKABLE void setControlPropertyUseCustomLabel(bool) {}
    Q_INVOKABLE void getControlPropertyUseCustomLabel() {}
    Q_INVOKABLE void setControlPropertyCustomLabel(const QString&) {}
    Q_INVOKABLE void getControlPropertyCustomLabel() {}
    Q_INVOKABLE void setHideSecondaryProperties(bool) {}
    Q_INVOKABLE void getHideSecondaryProperties() {}
    Q_INVOKABLE void getReverseDeformations() {}
    Q_INVOKABLE void setPreserveExistingDeltas(bool) {}
    Q_INVOKABLE void getPreserveExistingDeltas() {}
    Q_INVOKABLE void setReverseDeformationsPose(const QString&) {}
    Q_INVOKABLE void getReverseDeformationsPose() {}
    Q_INVOKABLE void getOverwriteExisting() {}
    Q_INVOKABLE void getCleanUpOrphans() {}
    Q_INVOKABLE void getMorphMirroring() {}
    Q_INVOKABLE void getAttenuateMapPath() {}
    Q_INVOKABLE void getAttenuateStrength() {}
    Q_INVOKABLE void setAttenuateEdgeStrength(float) {}
    Q_INVOKABLE void getAttenuateEdgeStrength() {}
    Q_INVOKABLE void readObjectSettingsFromConfigFile(const QString&, const QString&) {}
    Q_INVOKABLE void readObjectCommonSettingsFromConfigFile(const QString&) {}
    Q_INVOKABLE void saveObjectSettingsToConfigFile(const QString&, const QString&, bool) {}
    Q_INVOKABLE void morphAlreadyExists(DzNode*) {}
    Q_INVOKABLE void allowMultiResolutionMorphs() {}
    Q_INVOKABLE void getPathForContext(DzWeightMapContext*, DzNode*) {}
};

/// Hides the answers: a method of a name is looked for in the last class first.
class SilentLoader : public BoolLoader {
    Q_OBJECT
public:
    Q_INVOKABLE void setLoadMode(LoadMode mode, DzNode* node) { BoolLoader::setLoadMode(mode, node); }
    Q_INVOKABLE void setFilename(const QString& file) { BoolLoader::setFilename(file); }
    Q_INVOKABLE void setMorphName(const QString& name) { BoolLoader::setMorphName(name); }
    Q_INVOKABLE void setMorphSubdivision(bool on) { BoolLoader::setMorphSubdivision(on); }
    Q_INVOKABLE void setSubdivisionBuiltResolution(int level)
    {
        BoolLoader::setSubdivisionBuiltResolution(level);
    }
    Q_INVOKABLE void setSubdivisionMinResolution(int level)
    {
        BoolLoader::setSubdivisionMinResolution(level);
    }
    Q_INVOKABLE void setSubdivisionMaxResolution(int level)
    {
        BoolLoader::setSubdivisionMaxResolution(level);
    }
    Q_INVOKABLE void setSubdivisionSmoothCage(bool on) { BoolLoader::setSubdivisionSmoothCage(on); }
    Q_INVOKABLE void setSubdivisionMapping(SubdMapping mapping)
    {
        BoolLoader::setSubdivisionMapping(mapping);
    }
    Q_INVOKABLE void setDeltaTolerance(float tolerance) { BoolLoader::setDeltaTolerance(tolerance); }
    Q_INVOKABLE void setCreateControlProperty(bool on) { BoolLoader::setCreateControlProperty(on); }
    Q_INVOKABLE void setPropertyGroupPath(const QString& path) { BoolLoader::setPropertyGroupPath(path); }
    Q_INVOKABLE void setReverseDeformations(bool on) { BoolLoader::setReverseDeformations(on); }
    Q_INVOKABLE void setOverwriteExisting(OverwriteMode mode) { BoolLoader::setOverwriteExisting(mode); }
    Q_INVOKABLE void setCleanUpOrphans(bool on) { BoolLoader::setCleanUpOrphans(on); }
    Q_INVOKABLE void setMorphMirroring(MirroringType type) { BoolLoader::setMorphMirroring(type); }
    Q_INVOKABLE void setAttenuateMapPath(const QString& path) { BoolLoader::setAttenuateMapPath(path); }
    /// Neither bool nor void.
    Q_INVOKABLE QString setAttenuateStrength(float strength)
    {
        BoolLoader::setAttenuateStrength(strength);
        return QLatin1String("as wished");
    }
};

class TextBatch : public QObject {
    Q_OBJECT
public:
    Q_INVOKABLE QString createMorphs(DzFileIOSettings*, DzNode*, bool onlyErrors, bool plainText)
    {
        Called(onlyErrors ? "errors" : "all", plainText);
        return QLatin1String("one morph");
    }
    Q_INVOKABLE void createMorphs(DzFileIOSettings*, DzNode*, bool) {}
    Q_INVOKABLE void createMorphs(DzFileIOSettings*, DzNode*) {}
    Q_INVOKABLE int addMorph(DzMorphLoader* loader) { return Called("add", static_cast<void*>(loader)); }

    // Those that the wrapper looks for but does not call.
    Q_INVOKABLE void morphListChanged() {}
    Q_INVOKABLE void morphAdded(DzMorphLoader*) {}
    Q_INVOKABLE void morphRemoved(DzMorphLoader*, int) {}
    Q_INVOKABLE void morphMoved(int, int) {}
    Q_INVOKABLE void getNumMorphs() {}
    Q_INVOKABLE void getMorph(int) {}
    Q_INVOKABLE void findMorph(DzMorphLoader*) {}
    Q_INVOKABLE void clear() {}
    Q_INVOKABLE void moveMorph(DzMorphLoader*, bool) {}
    Q_INVOKABLE void removeMorph(DzMorphLoader*) {}
    Q_INVOKABLE void addFromFile(const QString&) {}
    Q_INVOKABLE void addFromFiles(const QStringList&) {}
    Q_INVOKABLE void addFromMesh(DzVertexMesh*) {}
    Q_INVOKABLE void addFromConfigFile(const QString&) {}
    Q_INVOKABLE void saveProjectSettingsToConfigFile(const QString&, bool, bool) {}
    Q_INVOKABLE void usePresetConfiguration() {}
    Q_INVOKABLE void setUsePresetConfiguration(bool) {}
    Q_INVOKABLE void presetConfigurationFile() {}
    Q_INVOKABLE void setPresetConfigurationFile(const QString&) {}
    Q_INVOKABLE void setNode(DzNode*) {}
    Q_INVOKABLE void getNode() {}
};

class SilentBatch : public TextBatch {
    Q_OBJECT
public:
    Q_INVOKABLE void createMorphs(DzFileIOSettings* settings, DzNode* node, bool onlyErrors, bool plainText)
    {
        TextBatch::createMorphs(settings, node, onlyErrors, plainText);
    }
};

} // namespace answering
