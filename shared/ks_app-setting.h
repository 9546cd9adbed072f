// Settings that live in the host's store.
// SPDX-License-Identifier: MIT

#pragma once

#include "ks_flag-set.h"
#include "ks_setting.h"

#include <string>
#include <string_view>
#include <utility>

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

/// A value of a type that a storage class has functions for.
/// @tparam Argument  how these take a value
template <class T, class Storage, class Argument, void (Storage::*load)(T&, Argument),
          void (Storage::*store)(T&, Argument)>
class StoredAppSetting : public SettingBase<T>, public Storage {
public:
    StoredAppSetting(DzAppSettings& settings, std::string_view key, T defaultValue)
        : SettingBase<T>(std::move(defaultValue)), Storage(settings, key)
    {
    }

    const T& get() override
    {
        Storage& storage = *this;
        (storage.*load)(this->_value, this->_defaultValue);
        return this->_value;
    }

    void set(const T& value) override
    {
        Storage& storage = *this;
        (storage.*store)(this->_value, value);
    }
};

typedef StoredAppSetting<int, AppSettingsStorageInt, int, &AppSettingsStorageInt::loadInt,
                         &AppSettingsStorageInt::storeInt>
    IntAppSetting;
typedef StoredAppSetting<float, AppSettingsStorageFloat, float, &AppSettingsStorageFloat::loadFloat,
                         &AppSettingsStorageFloat::storeFloat>
    FloatAppSetting;
/// A UTF-8 text. An empty text reads as the default in the next run.
typedef StoredAppSetting<std::string, AppSettingsStorageString, const std::string&,
                         &AppSettingsStorageString::loadString, &AppSettingsStorageString::storeString>
    StringAppSetting;

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
