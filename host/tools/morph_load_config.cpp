// Settings files of Morph Loader Pro.
// SPDX-License-Identifier: MIT

#include "morph_load_config.h"

#include "app/guard.h"
#include "base/atomic_file.h"
#include "dzfileiosettings.h"
#include "morph_load_settings.h"

#include <QFile>

namespace openhost {

namespace {

/// Every setting with its key, for reading and for writing. Enumerations come with their last value.
template <class Settings, class Visitor>
void VisitSettings(Settings& settings, ConfigSection section, const Visitor& visit)
{
    if (section == ConfigSection::Object) {
        visit("DisplayName", settings.displayName);
        visit("Filename", settings.filename);
        visit("MorphName", settings.morphName);
    }
    visit("PropertyGroupPath", settings.propertyGroupPath);
    visit("MorphSubdivision", settings.morphSubdivision);
    visit("SubdivisionBuiltResolution", settings.subdivisionBuiltResolution);
    visit("SubdivisionMinResolution", settings.subdivisionMinResolution);
    visit("SubdivisionMaxResolution", settings.subdivisionMaxResolution);
    visit("SubdivisionSmoothCage", settings.subdivisionSmoothCage);
    visit("SubdivisionMapping", settings.subdivisionMapping, DzMorphLoader::MudboxCage);
    visit("DeltaTolerance", settings.deltaTolerance);
    visit("CreateControlProperty", settings.createControlProperty);
    visit("ControlPropertyERCType", settings.controlPropertyERCType, DzERCLink::ERCKeyed);
    visit("ControlPropertyERCUseCustomValue", settings.controlPropertyERCUseCustomValue);
    visit("ControlPropertyERCCustomValue", settings.controlPropertyERCCustomValue);
    visit("ControlPropertyUseCustomLabel", settings.controlPropertyUseCustomLabel);
    visit("ControlPropertyCustomLabel", settings.controlPropertyCustomLabel);
    visit("HideSecondaryProperties", settings.hideSecondaryProperties);
    visit("ReverseDeformations", settings.reverseDeformations);
    visit("PreserveExistingDeltas", settings.preserveExistingDeltas);
    visit("ReverseDeformationsPose", settings.reverseDeformationsPose);
    visit("OverwriteExisting", settings.overwriteExisting, DzMorphLoader::DeltasOnly);
    visit("CleanUpOrphans", settings.cleanUpOrphans);
    visit("MorphMirroring", settings.morphMirroring, DzMorphLoader::ZNegToPos);
    visit("AttenuateMapPath", settings.attenuateMapPath);
    visit("AttenuateStrength", settings.attenuateStrength);
    visit("AttenuateEdgeStrength", settings.attenuateEdgeStrength);
}

struct Writer {
    DzSettings& to;

    void operator()(const char* key, const QString& value) const
    {
        to.setStringValue(QLatin1String(key), value);
    }
    void operator()(const char* key, bool value) const { to.setBoolValue(QLatin1String(key), value); }
    void operator()(const char* key, int value) const { to.setIntValue(QLatin1String(key), value); }
    void operator()(const char* key, float value) const
    {
        to.setFloatValue(QLatin1String(key), double(value));
    }
    template <class Enum>
    void operator()(const char* key, Enum value, Enum) const
    {
        to.setIntValue(QLatin1String(key), value);
    }
};

struct Reader {
    const DzSettings& from;

    void operator()(const char* key, QString& value) const
    {
        value = from.getStringValue(QLatin1String(key), value);
    }
    void operator()(const char* key, bool& value) const
    {
        value = from.getBoolValue(QLatin1String(key), value);
    }
    void operator()(const char* key, int& value) const
    {
        value = from.getIntValue(QLatin1String(key), value);
    }
    void operator()(const char* key, float& value) const
    {
        value = static_cast<float>(from.getFloatValue(QLatin1String(key), double(value)));
    }
    template <class Enum>
    void operator()(const char* key, Enum& value, Enum last) const
    {
        const int number = from.getIntValue(QLatin1String(key), value);
        if (number >= 0 && number <= last)
            value = static_cast<Enum>(number);
    }
};

QString KeyOf(ConfigSection section, const QString& object)
{
    return section == ConfigSection::Common ? QStringLiteral("Common") : QLatin1String("Object:") + object;
}

} // namespace

bool ReadConfig(const QString& file, ConfigSection section, const QString& object,
                MorphLoadSettings* settings)
{
    QFile stream(file);
    DzFileIOSettings all;
    if (!stream.open(QIODevice::ReadOnly) || !all.fromString(QString::fromUtf8(stream.readAll())))
        return false;
    const DzSettings* const values = all.getSettingsValue(KeyOf(section, object));
    if (!values)
        return false;
    VisitSettings(*settings, section, Reader{*values});
    return true;
}

bool WriteConfig(const QString& file, ConfigSection section, const QString& object,
                 const MorphLoadSettings& settings)
{
    DzFileIOSettings all;
    QFile stream(file);
    if (stream.exists() &&
        !(stream.open(QIODevice::ReadOnly) && all.fromString(QString::fromUtf8(stream.readAll()))))
        return false;
    VisitSettings(settings, section, Writer{*all.setSettingsValue(KeyOf(section, object))});
    return GuardHostCall({file.toStdString()}, [&] {
        base::WriteFileAtomically(file.toStdString(), all.toString().toStdString());
        return true;
    });
}

} // namespace openhost
