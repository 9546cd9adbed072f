// The host's Morph Loader Pro, driven by method name.
// SPDX-License-Identifier: MIT

#pragma once

#include "ks_qt-magic.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <QString>

class DzFileIOSettings;
class DzNode;

namespace kst {

/// One morph to load: wraps and owns a host object. Setters invoke the host's method of the same name and
/// answer what it answers, true in a host whose methods answer nothing; a call that cannot be made throws
/// kst::Exception "failed to invoke {}::{}".
class MorphLoader : public qt::MagicImpl<QObject, MorphLoader> {
public:
    // The host's enumerations, as far as they are used here.
    enum class LoadMode : int { PrimaryNode = 2, SingleSkinFigure = 3 };
    enum class SubdMapping : int { Catmark = 0 };
    enum class OverwriteMode : int { DeltasOnly = 2 };
    enum class MirroringType : int { DoNotMirror = 0 };

    /// @throws Exception  the host has no such class, or the class lacks a method of the table
    static std::unique_ptr<MorphLoader> CreateMlpInstance_X();
    ~MorphLoader();

    /// @return false when the mode does not suit the node
    bool setLoadMode(LoadMode mode, DzNode* node);
    bool setFilename(const QString& file);
    bool setMorphName(const QString& name);
    bool setPropertyGroupPath(const QString& path);
    bool setAttenuateMapPath(const QString& path);
    bool setAttenuateStrength(float strength);
    bool setDeltaTolerance(float centimetres);
    bool setCleanUpOrphans(bool on);
    bool setCreateControlProperty(bool on);
    bool setMorphSubdivision(bool on);
    bool setReverseDeformations(bool on);
    bool setSubdivisionSmoothCage(bool on);
    bool setSubdivisionBuiltResolution(int level);
    bool setSubdivisionMinResolution(int level);
    bool setSubdivisionMaxResolution(int level);
    bool setSubdivisionMapping(SubdMapping mapping);
    bool setOverwriteExisting(OverwriteMode mode);
    bool setMorphMirroring(MirroringType type);

    QObject& getObject() const { return object(); }
    static const std::vector<const char*>& Signatures();

private:
    explicit MorphLoader(std::unique_ptr<QObject> object);
    bool set(const char* signature, const char* typeName, const void* value);

    std::unique_ptr<QObject> _object;
};

/// One morph as it is to be loaded. Texts are UTF-8.
struct MorphLoad {
    std::string objFile, morphName;
    QString importSettingsJson;       ///< OBJ import options; an empty text leaves the host's own
    bool subdivide = false;           ///< the file holds the mesh subdivided to builtResolution
    int builtResolution = 0;          ///< subdivision level
    std::string propertyGroupPath;    ///< where the dial is filed
    bool reverseDeformations = false; ///< the new morph under the present pose and dials reproduces the file
    std::string attenuateMapPath;     ///< weight map that limits the morph; empty for none
    float attenuateStrength = 0.0f;   ///< 1 the map, -1 its complement
};

/// One option of a load, as the native driver sets it and as the script does.
struct MorphLoadOption {
    void (*set)(MorphLoader& loader, const MorphLoad& load);
    const char* scriptMethod; ///< of the loader
    const char* scriptValue;  ///< a value of the load is the script function's parameter
};

/// In the order in which the loader gets them.
const std::vector<MorphLoadOption>& MorphLoadOptions();
/// Set only when there is a weight map: without one, the host's own values stay.
const std::vector<MorphLoadOption>& MorphAttenuationOptions();

/// OBJ import options that are switched off: a morph needs positions only, and the rest costs time.
const std::vector<const char*>& MorphImportSwitchedOff();

constexpr const char* MORPH_IMPORT_SETTINGS_ERROR =
    "invalid JSON settings for OBJ importer in Morph Loader Pro";
constexpr const char* MORPH_LOAD_MODE_ERROR = "incompatible load mode";

/// A list of morphs to load: wraps and owns a host object.
class MorphLoaderBatch : public qt::MagicImpl<QObject, MorphLoaderBatch> {
public:
    static std::unique_ptr<MorphLoaderBatch> CreateMlBatchInstance_X();
    ~MorphLoaderBatch();

    void addMorph(MorphLoader& loader);
    /// @return the host's log text; empty in a host that gives none
    QString createMorphs(DzFileIOSettings* settings, DzNode* node, bool onlyErrorsOrWarnings, bool plainText);

    /// Makes one morph on a node from an OBJ file. Whether the morph is there afterwards is for the caller to
    /// check.
    /// @return always empty
    /// @throws Exception  "invalid JSON settings for OBJ importer in Morph Loader Pro", "incompatible load
    /// mode"
    static std::string Exec_X(DzNode* node, const MorphLoad& load);
    /// The same with the load's members one by one.
    static std::string Exec_X(DzNode* node, std::string_view objFile, std::string_view morphName,
                              const QString& importSettingsJson, bool subdivide, int builtResolution,
                              std::string_view propertyGroupPath, bool reverseDeformations,
                              std::string_view attenuateMapPath, float attenuateStrength);

    static const std::vector<const char*>& Signatures();

private:
    explicit MorphLoaderBatch(std::unique_ptr<QObject> object);

    std::unique_ptr<QObject> _object;
};

} // namespace kst
