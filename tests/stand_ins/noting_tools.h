// The host's tools, noting what they are told instead of doing it.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzfileiosettings.h"
#include "dznode.h"
#include "dznumericproperty.h"
#include "tools/morph_loader.h"
#include "tools/morph_loader_batch.h"
#include "tools/transfer_utility.h"

#include <string>
#include <vector>

/// In this program they stand in for the host's own, for whoever makes them by name and for scripts. Their
/// methods hide those of their bases from callers by name, so that no setter goes unnoticed.
namespace noting {

/// What the tools were told, in order: method and arguments.
inline std::vector<std::string> calls;
/// The options of the last load, as JSON.
inline std::string loadOptions;
/// Whether a load mode suits.
inline bool isModeSuitable = true;

inline QString TextOf(const QString& value)
{
    return value;
}
inline QString TextOf(const QStringList& value)
{
    return value.join(QLatin1Char('+'));
}
inline QString TextOf(bool value)
{
    return QLatin1String(value ? "true" : "false");
}
inline QString TextOf(float value)
{
    return QString::number(double(value));
}
inline QString TextOf(int value)
{
    return QString::number(value);
}
inline QString TextOf(const DzNode* value)
{
    return value ? value->getLabel() : QStringLiteral("null");
}

template <class... Arguments>
bool Note(const char* method, const Arguments&... arguments)
{
    QStringList words(QString::fromUtf8(method));
    (words.append(TextOf(arguments)), ...);
    calls.push_back(words.join(QLatin1Char(' ')).toStdString());
    return true;
}

class Loader : public DzMorphLoader {
    Q_OBJECT

public slots:
    bool setLoadMode(LoadMode mode, DzNode* node)
    {
        return Note("setLoadMode", int(mode), node) && isModeSuitable;
    }
    void setDisplayName(const QString& value) { Note("setDisplayName", value); }
    void setFilename(const QString& value) { Note("setFilename", value); }
    void setMorphName(const QString& value)
    {
        Note("setMorphName", value);
        DzMorphLoader::setMorphName(value); // a list tells by it which loader it is given
    }
    void setMorphSubdivision(bool value) { Note("setMorphSubdivision", value); }
    void setSubdivisionBuiltResolution(int value) { Note("setSubdivisionBuiltResolution", value); }
    void setSubdivisionMinResolution(int value) { Note("setSubdivisionMinResolution", value); }
    void setSubdivisionMaxResolution(int value) { Note("setSubdivisionMaxResolution", value); }
    void setSubdivisionSmoothCage(bool value) { Note("setSubdivisionSmoothCage", value); }
    void setSubdivisionMapping(SubdMapping value) { Note("setSubdivisionMapping", int(value)); }
    void setDeltaTolerance(float value) { Note("setDeltaTolerance", value); }
    void setCreateControlProperty(bool value) { Note("setCreateControlProperty", value); }
    void setPropertyGroupPath(const QString& value) { Note("setPropertyGroupPath", value); }
    void setControlPropertyERCType(DzERCLink::ERCType value)
    {
        Note("setControlPropertyERCType", int(value));
    }
    void setControlPropertyERCUseCustomValue(bool value)
    {
        Note("setControlPropertyERCUseCustomValue", value);
    }
    void setControlPropertyERCCustomValue(float value) { Note("setControlPropertyERCCustomValue", value); }
    void setControlNode(DzNode* value) { Note("setControlNode", value); }
    void setControlProperty(DzNumericProperty*) { Note("setControlProperty"); }
    void setControlPropertyUseCustomLabel(bool value) { Note("setControlPropertyUseCustomLabel", value); }
    void setControlPropertyCustomLabel(const QString& value) { Note("setControlPropertyCustomLabel", value); }
    void setHideSecondaryProperties(bool value) { Note("setHideSecondaryProperties", value); }
    void setReverseDeformations(bool value) { Note("setReverseDeformations", value); }
    void setPreserveExistingDeltas(bool value) { Note("setPreserveExistingDeltas", value); }
    void setReverseDeformationsPose(const QString& value) { Note("setReverseDeformationsPose", value); }
    void setOverwriteExisting(OverwriteMode value) { Note("setOverwriteExisting", int(value)); }
    void setCleanUpOrphans(bool value) { Note("setCleanUpOrphans", value); }
    void setMorphMirroring(MirroringType value) { Note("setMorphMirroring", int(value)); }
    void setAttenuateMapPath(const QString& value) { Note("setAttenuateMapPath", value); }
    void setAttenuateStrength(float value) { Note("setAttenuateStrength", value); }
    void setAttenuateEdgeStrength(float value) { Note("setAttenuateEdgeStrength", value); }
};

class Batch : public DzMorphLoaderBatch {
    Q_OBJECT

public slots:
    void addMorph(DzMorphLoader* morph) { Note("addMorph", morph->getMorphName()); }
    QString createMorphs(DzFileIOSettings* settings, DzNode* node, bool onlyErrorsOrWarnings = true,
                         bool plainText = true)
    {
        Note("createMorphs", node, onlyErrorsOrWarnings, plainText);
        loadOptions = settings->toJsonString().toStdString();
        return QStringLiteral("one morph");
    }
    void setNode(DzNode* node) { Note("setNode", node); }
    void setUsePresetConfiguration(bool on) { Note("setUsePresetConfiguration", on); }
};

class Transfer : public DzTransferUtility {
    Q_OBJECT

public slots:
    bool setSource(DzNode* node) { return Note("setSource", node); }
    bool setTarget(DzNode* node) { return Note("setTarget", node); }
    bool setTransferBinding(bool value) { return Note("setTransferBinding", value); }
    bool setTransferMorphs(bool value) { return Note("setTransferMorphs", value); }
    bool setTransferSourceMorphs(int value) { return Note("setTransferSourceMorphs", value); }
    bool setMorphTransferList(const QStringList& value) { return Note("setMorphTransferList", value); }
    bool setOverrideExistingMorphs(bool value) { return Note("setOverrideExistingMorphs", value); }
    bool setTransferSelectionMap(bool value) { return Note("setTransferSelectionMap", value); }
    bool setTransferFaceGroups(bool value) { return Note("setTransferFaceGroups", value); }
    bool setTransferRegionGroups(bool value) { return Note("setTransferRegionGroups", value); }
    bool setTransferMaterialGroups(bool value) { return Note("setTransferMaterialGroups", value); }
    bool setFitToFigure(bool value) { return Note("setFitToFigure", value); }
    bool setParentToFigure(bool value) { return Note("setParentToFigure", value); }
    bool setTargetReplacesSource(bool value) { return Note("setTargetReplacesSource", value); }
    bool setRemoveOriginalTarget(bool value) { return Note("setRemoveOriginalTarget", value); }
    bool doTransfer() { return Note("doTransfer"); }
};

} // namespace noting
