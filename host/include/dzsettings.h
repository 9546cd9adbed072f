// Sets of named values.
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QString>

#include <memory>

/// Keys keep their order. A getter of another type converts: true reads as 1, "1" and "yes" as true.
class DzSettings : public QObject {
    Q_OBJECT
    Q_ENUMS(Type)
public:
    enum Type { StringValue, IntValue, BoolValue, FloatValue, SettingsValue };

    DzSettings();
    DzSettings(const DzSettings& other);
    DzSettings& operator=(const DzSettings& other);
    ~DzSettings();

    Q_INVOKABLE void setStringValue(const QString& key, const QString& value);
    Q_INVOKABLE void setFloatValue(const QString& key, double value);
    Q_INVOKABLE void setIntValue(const QString& key, int value);
    Q_INVOKABLE void setBoolValue(const QString& key, bool value);
    /// The default when the key is absent or cannot be converted.
    Q_INVOKABLE QString getStringValue(const QString& key, const QString& def = QString()) const;
    Q_INVOKABLE double getFloatValue(const QString& key, double def = 0) const;
    Q_INVOKABLE int getIntValue(const QString& key, int def = 0) const;
    Q_INVOKABLE bool getBoolValue(const QString& key, bool def = false) const;

    /// The nested set of that key, made empty if it is not there.
    DzSettings* setSettingsValue(const QString& key);
    /// Stores a copy and returns it.
    DzSettings* setSettingsValue(const QString& key, const DzSettings* settings);
    DzSettings* getSettingsValue(const QString& key) const; ///< null if none

    /// The key's index, -1 if absent: test with >= 0.
    Q_INVOKABLE int hasKey(const QString& key) const;
    Q_INVOKABLE int getNumValues() const;
    Q_INVOKABLE QString getKey(int index) const;
    Q_INVOKABLE QString getValue(int index) const; ///< as text; empty for a nested set
    Type getValueType(int index) const;
    Q_INVOKABLE void removeValue(const QString& key);
    Q_INVOKABLE void clear();
    /// Copies one value of another set; nothing happens when it has none of that key.
    void copySetting(const QString& key, const DzSettings* source);
    void replaceWithSettings(const DzSettings* settings);

    /// Reads what toString or toJsonString makes. False, and nothing changed, when the text cannot be read.
    Q_INVOKABLE bool fromString(const QString& text);
    Q_INVOKABLE QString toString() const;     ///< XML
    Q_INVOKABLE QString toJsonString() const; ///< an object; floats with a decimal point

private:
    struct Impl;
    std::unique_ptr<Impl> _impl;
};
