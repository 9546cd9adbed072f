// The option sets of the host's OBJ exporter and importer.
// SPDX-License-Identifier: MIT

#include "ks_obj-settings.h"

#include "ks_daz-managers.h"
#include "ks_exception.h"

#include <vector>

#include <QMetaMethod>
#include <QMetaObject>

#include <dzappsettings.h>
#include <dzexporter.h>
#include <dzfileiosettings.h>

namespace kst {

template <class T>
using Options = std::vector<std::pair<const char*, T>>;

/// A table of options, by type; set in this order.
struct ImportExportDefs {
    Options<const char*> strings;
    Options<float> floats;
    Options<bool> bools;
    Options<int> ints;
};

namespace {

const ImportExportDefs& ExportDefaults()
{
    static const ImportExportDefs defs{
        {{"Preset", "Custom"}, {"LatAxis", "X"}, {"VertAxis", "Y"}, {"DepthAxis", "Z"}},
        {{"Scale", 50.0f}},
        {{"InvertLatAxis", false},
         {"InvertVertAxis", false},
         {"InvertDepthAxis", false},
         {"IgnoreInvisible", true},
         {"WeldSeams", false},
         {"RemoveUnusedVerts", false},
         {"TriangulateNgons", false},
         {"CollapseUVTiles", false},
         {"WriteVT", true},
         {"WriteVN", false},
         {"WriteF", true},
         {"WriteL", true},
         {"WriteO", false},
         {"WriteG", true},
         {"GroupGeom", true},
         {"GroupNodes", false},
         {"GroupSurfaces", false},
         {"GroupSingle", false},
         {"WriteUsemtl", true},
         {"NoMaps", false},
         {"OriginalMaps", true},
         {"CollectMaps", false},
         {"ConvertMaps", false},
         {"WriteMtllib", false},
         {"QuoteMapPathsWithSpaces", true},
         {"SelectedOnly", false},
         {"PrimaryRootOnly", false},
         {"SelectedRootsOnly", true},
         {"IncludeParented", false}},
        {{"FloatPrecision", 8}, {"RunSilent", 0}}};
    return defs;
}

// The importer spells its inversion options without "Axis".
const ImportExportDefs& ImportDefaults()
{
    static const ImportExportDefs defs{
        {{"Preset", "Custom"}, {"LatAxis", "X"}, {"VertAxis", "Y"}, {"DepthAxis", "Z"}},
        {{"Scale", 50.0f}},
        {{"InvertLat", false},
         {"InvertVert", false},
         {"InvertDepth", false},
         {"IncludeVT", true},
         {"IncludeF", true},
         {"IncludeL", true},
         {"IncludeG", true},
         {"IncludeUsemtl", true},
         {"IncludeMtllib", true},
         {"AutoAdapt", false}},
        {{"RunSilent", 0}}};
    return defs;
}

} // namespace

struct ImportExportSettingsBase::Impl {
    DzFileIOSettings settings;
    const char* key = nullptr;
    bool usingDefaults = true;
};

ImportExportSettingsBase::ImportExportSettingsBase() : _pImpl(new Impl) {}
ImportExportSettingsBase::ImportExportSettingsBase(ImportExportSettingsBase&&) noexcept = default;
ImportExportSettingsBase& ImportExportSettingsBase::operator=(ImportExportSettingsBase&&) noexcept = default;
ImportExportSettingsBase::~ImportExportSettingsBase() = default;

bool ImportExportSettingsBase::loadFromAppSettings(DzAppSettings& appSettings, const char* key)
{
    _pImpl->key = key;
    const QString text = appSettings.getStringValue(QLatin1String(key));
    DzFileIOSettings loaded;
    if (text.isEmpty() || !loaded.fromString(text))
        return false;
    _pImpl->settings.replaceWithSettings(&loaded);
    _pImpl->usingDefaults = false;
    return true;
}

void ImportExportSettingsBase::saveSettingsOrThrow(DzAppSettings& appSettings) const
{
    appSettings.setStringValue(QLatin1String(_pImpl->key), toJsonStringOrThrowQ());
}

bool ImportExportSettingsBase::isUsingDefaults() const noexcept
{
    return _pImpl->usingDefaults;
}

float ImportExportSettingsBase::getScale() const noexcept
{
    return static_cast<float>(_pImpl->settings.getFloatValue(QLatin1String("Scale"), 0.0));
}

void ImportExportSettingsBase::setScale(float scale) noexcept
{
    _pImpl->settings.setFloatValue(QLatin1String("Scale"), scale);
}

DzFileIOSettings& ImportExportSettingsBase::getDzFileIOSettings() const noexcept
{
    return _pImpl->settings;
}

QString ImportExportSettingsBase::toJsonStringOrThrowQ() const
{
    // The host offers the JSON form to scripts only, so it is reached by name.
    const QMetaObject* const metaObject = _pImpl->settings.metaObject();
    const int index = metaObject->indexOfMethod("toJsonString()");
    QString text;
    const bool isInvoked =
        index >= 0 && metaObject->method(index).invoke(&_pImpl->settings, Qt::DirectConnection,
                                                       Q_RETURN_ARG(QString, text));
    if (!isInvoked)
        throw Exception("failed to invoke DzFileIOSettings::toJsonString()");
    return text;
}

void ImportExportSettingsBase::loadDefaults(const ImportExportDefs& defs)
{
    DzFileIOSettings& settings = _pImpl->settings;
    for (const auto& option : defs.strings)
        settings.setStringValue(QLatin1String(option.first), QLatin1String(option.second));
    for (const auto& option : defs.floats)
        settings.setFloatValue(QLatin1String(option.first), option.second);
    for (const auto& option : defs.bools)
        settings.setBoolValue(QLatin1String(option.first), option.second);
    for (const auto& option : defs.ints)
        settings.setIntValue(QLatin1String(option.first), option.second);
    _pImpl->usingDefaults = true;
}

void ImportExportSettingsBase::markAsChosenByUser()
{
    _pImpl->usingDefaults = false;
}

void ObjExportSettings::loadBlenderDefaults()
{
    loadDefaults(ExportDefaults());
}

void ObjExportSettings::setSelectedRootsOnly(bool on) noexcept
{
    getDzFileIOSettings().setBoolValue(QLatin1String("SelectedOnly"), on);
    getDzFileIOSettings().setBoolValue(QLatin1String("SelectedRootsOnly"), on);
}

bool ObjExportSettings::showDialogOrThrow()
{
    const std::unique_ptr<DzExporter> exporter(&daz::GetObjExporter_X());
    if (!exporter->getOptions(&getDzFileIOSettings(), true, QString()))
        return false;
    markAsChosenByUser();
    return true;
}

void ObjImportSettings::loadBlenderDefaults()
{
    loadDefaults(ImportDefaults());
}

} // namespace kst
