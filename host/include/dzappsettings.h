// Values kept between runs.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzbase.h"

#include <QStringList>

/// The user's settings below a group path. Every change is in the file when the setter returns.
class DzAppSettings : public DzBase {
    Q_OBJECT
public:
    explicit DzAppSettings(const QString& startPath);
    ~DzAppSettings();

    QString getStringValue(const QString& key, const QString& def = QString()) const;
    int getIntValue(const QString& key, int def = 0) const;
    bool getBoolValue(const QString& key, bool def = false) const;
    double getFloatValue(const QString& key, double def = 0) const;
    /// True if stored.
    bool setStringValue(const QString& key, const QString& value);
    bool setIntValue(const QString& key, int value);
    bool setBoolValue(const QString& key, bool value);
    bool setFloatValue(const QString& key, double value);

    bool containsValue(const QString& key) const;
    bool removeValue(const QString& key);
    /// Removes a group with all its values.
    bool removeKey(const QString& key);
    void pushPath(const QString& path);
    void popPath();

private:
    QString fullKey(const QString& key) const;

    QStringList _path;
};
