// The option sets of the host's OBJ exporter and importer.
// SPDX-License-Identifier: MIT

#pragma once

#include <memory>

#include <QString>

class DzAppSettings;
class DzFileIOSettings;

namespace kst {

struct ImportExportDefs;

/// Owns one host option set. Movable, not copyable.
class ImportExportSettingsBase {
public:
    ImportExportSettingsBase();
    ImportExportSettingsBase(ImportExportSettingsBase&&) noexcept;
    ImportExportSettingsBase& operator=(ImportExportSettingsBase&&) noexcept;
    ~ImportExportSettingsBase();

    /// Replaces the options by what the application settings hold under the key, which is remembered.
    /// @param key  a constant text that outlives this object
    /// @return false, changing nothing else, when there is no text or the host cannot read it
    bool loadFromAppSettings(DzAppSettings& appSettings, const char* key);
    /// Stores the options under the remembered key.
    /// @throws Exception  "failed to invoke DzFileIOSettings::toJsonString()"
    void saveSettingsOrThrow(DzAppSettings& appSettings) const;

    bool isUsingDefaults() const noexcept;
    float getScale() const noexcept; ///< centimetres per file unit; 0 when not set
    void setScale(float scale) noexcept;
    DzFileIOSettings& getDzFileIOSettings() const noexcept; ///< owned by this object

    /// The options as JSON text, in the host's own layout.
    /// @throws Exception  "failed to invoke DzFileIOSettings::toJsonString()"
    QString toJsonStringOrThrowQ() const;

protected:
    void loadDefaults(const ImportExportDefs& defs);
    void markAsChosenByUser();

private:
    struct Impl;
    std::unique_ptr<Impl> _pImpl;
};

class ObjExportSettings : public ImportExportSettingsBase {
public:
    void loadBlenderDefaults(); ///< options that the table does not name are kept
    /// Sets both options that limit the export to the selection.
    void setSelectedRootsOnly(bool on) noexcept;
    /// Lets the user change the options in the host's dialog.
    /// @return false when cancelled
    /// @throws Exception  "failed to find DzObjExporter"
    bool showDialogOrThrow();
};

class ObjImportSettings : public ImportExportSettingsBase {
public:
    void loadBlenderDefaults();
};

} // namespace kst
