// Settings that live in the host's store.
// SPDX-License-Identifier: MIT

#pragma once

#include "ks_flag-set.h"
#include "ks_setting.h"

#include <string>
#include <string_view>

#include <QString>

class DzAppSettings;

namespace kst {

/// One key of the store. The store is borrowed and must outlive the setting. The value is read when it is
/// first asked for and never again, and every change is written at once, so there is nothing to save.
/// Another setting on the same key does not see a change once it has read its value.
class AppSettingsStorageBase : public ProhibitCopy {
protected:
    /// @param key  UTF-8, below the store's group path
    AppSettingsStorageBase(DzAppSettings& settings, std::string_view key);
    ~AppSettingsStorageBase() = default;

    DzAppSettings& _settings;
    const QString _key;
    bool _loaded = false;
};

/// Loading fills the cache when nothing was loaded or stored before; storing fills both store and cache.
class AppSettingsStorageInt : public AppSettingsStorageBase {
public:
    /// @param defaultValue  for a key that the store does not have
    void loadInt(int& cache, int defaultValue);
    void storeInt(int& cache, int value);

protected:
    AppSettingsStorageInt(DzAppSettings& settings, std::string_view key);
};

class AppSettingsStorageFloat : public AppSettingsStorageBase {
public:
    /// @param defaultValue  for a key that the store does not have
    void loadFloat(float& cache, float defaultValue);
    void storeFloat(float& cache, float value);

protected:
    AppSettingsStorageFloat(DzAppSettings& settings, std::string_view key);
};

class AppSettingsStorageString : public AppSettingsStorageBase {
public:
    /// @param defaultValue  UTF-8; for a key that the store does not have, and for an empty text in it
    void loadString(std::string& cache, const std::string& defaultValue);
    void storeString(std::string& cache, const std::string& value);

protected:
    AppSettingsStorageString(DzAppSettings& settings, std::string_view key);
};

class BoolAppSetting : public SettingBase<bool>, public AppSettingsStorageBase {
public:
    BoolAppSetting(DzAppSettings& settings, std::string_view key, bool defaultValue);
    const bool& get() override;
    void set(const bool& value) override;
};

class IntAppSetting : public SettingBase<int>, public AppSettingsStorageInt {
public:
    IntAppSetting(DzAppSettings& settings, std::string_view key, int defaultValue);
    const int& get() override;
    void set(const int& value) override;
};

class FloatAppSetting : public SettingBase<float>, public AppSettingsStorageFloat {
public:
    FloatAppSetting(DzAppSettings& settings, std::string_view key, float defaultValue);
    const float& get() override;
    void set(const float& value) override;
};

/// A UTF-8 text. An empty text reads as the default in the next run.
class StringAppSetting : public SettingBase<std::string>, public AppSettingsStorageString {
public:
    StringAppSetting(DzAppSettings& settings, std::string_view key, std::string defaultValue);
    const std::string& get() override;
    void set(const std::string& value) override;
};

/// Stored as the number made of its bits.
template <class E>
class FlagAppSetting : public SettingBase<FlagSet<E>>, public AppSettingsStorageInt {
public:
    FlagAppSetting(DzAppSettings& settings, std::string_view key, FlagSet<E> defaultValue)
        : SettingBase<FlagSet<E>>(defaultValue), AppSettingsStorageInt(settings, key)
    {
    }

    const FlagSet<E>& get() override
    {
        int bits = this->_value.toInt();
        loadInt(bits, this->_defaultValue.toInt());
        this->_value = FlagSet<E>::fromInt(bits);
        return this->_value;
    }

    void set(const FlagSet<E>& value) override
    {
        int bits = 0;
        storeInt(bits, value.toInt());
        this->_value = FlagSet<E>::fromInt(bits);
    }
};

} // namespace kst
