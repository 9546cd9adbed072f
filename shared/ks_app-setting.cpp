// Settings that live in the host's store.
// SPDX-License-Identifier: MIT

#include "ks_app-setting.h"

#include "ks_string.h"

#include <dzappsettings.h>

namespace kst {

AppSettingsStorageBase::AppSettingsStorageBase(DzAppSettings& settings, std::string_view key)
    : _settings(settings), _key(str::ToQ(key))
{
}

AppSettingsStorageInt::AppSettingsStorageInt(DzAppSettings& settings, std::string_view key)
    : AppSettingsStorageBase(settings, key)
{
}

void AppSettingsStorageInt::loadInt(int& cache, int defaultValue)
{
    if (_loaded)
        return;
    cache = _settings.getIntValue(_key, defaultValue);
    _loaded = true;
}

void AppSettingsStorageInt::storeInt(int& cache, int value)
{
    _settings.setIntValue(_key, value);
    cache = value;
    _loaded = true;
}

AppSettingsStorageFloat::AppSettingsStorageFloat(DzAppSettings& settings, std::string_view key)
    : AppSettingsStorageBase(settings, key)
{
}

void AppSettingsStorageFloat::loadFloat(float& cache, float defaultValue)
{
    if (_loaded)
        return;
    cache = static_cast<float>(_settings.getFloatValue(_key, static_cast<double>(defaultValue)));
    _loaded = true;
}

void AppSettingsStorageFloat::storeFloat(float& cache, float value)
{
    _settings.setFloatValue(_key, static_cast<double>(value));
    cache = value;
    _loaded = true;
}

AppSettingsStorageString::AppSettingsStorageString(DzAppSettings& settings, std::string_view key)
    : AppSettingsStorageBase(settings, key)
{
}

void AppSettingsStorageString::loadString(std::string& cache, const std::string& defaultValue)
{
    if (_loaded)
        return;
    cache = str::StringOrOther(str::ToStd(_settings.getStringValue(_key, QString())), defaultValue);
    _loaded = true;
}

void AppSettingsStorageString::storeString(std::string& cache, const std::string& value)
{
    _settings.setStringValue(_key, str::ToQ(value));
    cache = value;
    _loaded = true;
}

BoolAppSetting::BoolAppSetting(DzAppSettings& settings, std::string_view key, bool defaultValue)
    : SettingBase<bool>(defaultValue), AppSettingsStorageBase(settings, key)
{
}

const bool& BoolAppSetting::get()
{
    if (!_loaded) {
        _value = _settings.getBoolValue(_key, _defaultValue);
        _loaded = true;
    }
    return _value;
}

void BoolAppSetting::set(const bool& value)
{
    _settings.setBoolValue(_key, value);
    _value = value;
    _loaded = true;
}

} // namespace kst
