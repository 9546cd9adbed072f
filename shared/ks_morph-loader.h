// The host's Morph Loader Pro, driven by method name.
// SPDX-License-Identifier: MIT

#pragma once

#include "shared/ks_qt-magic.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <QString>

class DzFileIOSettings;
class DzNode;

namespace kst {

/// One morph to load: wraps and owns a host object. Setters invoke the host's method of the same name; a call
/// that cannot be made throws kst::Exception "failed to invoke {}::{}".
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
    void setFilename(const QString& file);
    void setMorphName(const QString& name);
    void setPropertyGroupPath(const QString& path);
    void setAttenuateMapPath(const QString& path);
    void setAttenuateStrength(float strength);
    void setDeltaTolerance(float centimetres);
    void setCleanUpOrphans(bool on);
    void setCreateControlProperty(bool on);
    void setMorphSubdivision(bool on);
    void setReverseDeformations(bool on);
    void setSubdivisionSmoothCage(bool on);
    void setSubdivisionBuiltResolution(int level);
    void setSubdivisionMinResolution(int level);
    void setSubdivisionMaxResolution(int level);
    void setSubdivisionMapping(SubdMapping mapping);
    void setOverwriteExisting(OverwriteMode mode);
    void setMorphMirroring(MirroringType type);

    QObject& getObject() const { return object(); }
    static const std::vector<const char*>& Signatures();

private:
    explicit MorphLoader(std::unique_ptr<QObject> object);
    void set(const char* signature, const char* typeName, const void* value);

    std::unique_ptr<QObject> _object;
};

/// A list of morphs to load: wraps and owns a host object.
class MorphLoaderBatch : public qt::MagicImpl<QObject, MorphLoaderBatch> {
public:
    static std::unique_ptr<MorphLoaderBatch> CreateMlBatchInstance_X();
    ~MorphLoaderBatch();

    void addMorph(MorphLoader& loader);
    /// @return the host's log text
    QString createMorphs(DzFileIOSettings* settings, DzNode* node, bool onlyErrorsOrWarnings, bool plainText);

    /// Makes one morph on a node from an OBJ file. Whether the morph is there afterwards is for the caller to
    /// check.
    /// @param importSettingsJson   OBJ import options; an empty text leaves the host's own
    /// @param subdivide            the file holds the mesh subdivided to builtResolution
    /// @param propertyGroupPath    where the dial is filed
    /// @param reverseDeformations  the new morph under the present pose and dials reproduces the file
    /// @param attenuateMapPath     weight map that limits the morph; empty for none
    /// @param attenuateStrength    1 the map, -1 its complement
    /// @return always empty
    /// @throws Exception  "invalid JSON settings for OBJ importer in Morph Loader Pro", "incompatible load
    /// mode"
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
