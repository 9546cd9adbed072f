// The user's settings on disk.
// SPDX-License-Identifier: MIT

#include "app/settings_store.h"

#include "base/atomic_file.h"
#include "base/cancellation.h"
#include "base/errors.h"
#include "base/file_set.h"
#include "base/folders.h"
#include "base/reason.h"
#include "dzappsettings.h"
#include "openhost/diagnostics.h"

#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QSet>

#include <cerrno>
#include <cstdio>
#include <optional>

#include <nlohmann/json.hpp>

namespace openhost {

namespace {

using Values = QMap<QString, QVariant>;

QString g_folder;

QString FileName()
{
    return g_folder + QLatin1String("/settings.json");
}

QVariant FromJson(const nlohmann::json& value)
{
    if (value.is_boolean())
        return value.get<bool>();
    if (value.is_number_integer())
        return value.get<int>();
    if (value.is_number_float())
        return value.get<double>();
    return value.is_string() ? QVariant(QString::fromStdString(value.get<std::string>())) : QVariant();
}

nlohmann::json ToJson(const QVariant& value)
{
    switch (value.userType()) {
    case QMetaType::Bool:
        return value.toBool();
    case QMetaType::Int:
        return value.toInt();
    case QMetaType::Double:
        return value.toDouble();
    default:
        return value.toString().toStdString();
    }
}

/// What was told since the settings were read or written last: each of them asks for the same file.
QSet<QString> g_told;

void Tell(const QString& what)
{
    if (g_told.contains(what))
        return;
    g_told.insert(what);
    Report({base::Severity::Warning, FileName().toStdString(), {}, what.toStdString()});
}

void TellUnsaved(const char* reason)
{
    Tell(QLatin1String("the settings are not saved: ") + QString::fromUtf8(reason));
}

/// What cannot be understood makes room for other settings.
bool SetAside()
{
    const QByteArray file = QFile::encodeName(FileName());
    if (std::rename(file.constData(), (file + ".broken").constData()) != 0) {
        Tell(QStringLiteral("the settings cannot be read, nor set aside: ") +
             QString::fromStdString(base::ReasonOf(errno)));
        return false;
    }
    Report({base::Severity::Warning,
            {},
            {},
            QStringLiteral("the settings in \"%1\" cannot be read; they are kept as \"%1.broken\"")
                .arg(FileName())
                .toStdString()});
    return true;
}

/// @return 0 or the system's error number; the toolkit's reasons are in the language of the user's locale
int ReadWhole(const QByteArray& name, std::string& text)
{
    std::FILE* const file = std::fopen(name.constData(), "rb");
    if (!file)
        return errno;
    char part[4096];
    while (const std::size_t size = std::fread(part, 1, sizeof part, file))
        text.append(part, size);
    const int error = std::ferror(file) ? errno : 0;
    std::fclose(file);
    return error;
}

/// @return nothing where there are settings that cannot be had now, and must not be written over
std::optional<Values> Load()
{
    Values values;
    if (!QFile::exists(FileName()))
        return values;
    if (!QFileInfo(FileName()).isFile()) { // a pipe would be waited for
        Tell(QStringLiteral("the settings cannot be read: it is no file"));
        return std::nullopt;
    }
    std::string text;
    if (const int error = ReadWhole(QFile::encodeName(FileName()), text)) {
        Tell(QLatin1String("the settings cannot be read: ") + QString::fromStdString(base::ReasonOf(error)));
        return std::nullopt;
    }
    const nlohmann::json json = nlohmann::json::parse(text.begin(), text.end(), nullptr, false);
    if (!json.is_object())
        return SetAside() ? std::make_optional(values) : std::nullopt;
    for (auto it = json.begin(); it != json.end(); ++it)
        values.insert(QString::fromStdString(it.key()), FromJson(it.value()));
    return values;
}

void Save(const Values& values)
{
    nlohmann::json json = nlohmann::json::object();
    for (auto it = values.begin(); it != values.end(); ++it)
        json[it.key().toStdString()] = ToJson(it.value());
    base::WriteFileAtomically(FileName().toStdString(), json.dump(2) + '\n');
    g_told.clear();
}

// Other processes may share the file: its folder is locked, the file read anew, changed and written as one
// step.
template <class Change>
bool Update(const Change& change)
{
    try {
        base::MakeFolders(g_folder.toStdString());
        // A lock that is a file would outlive a program that is killed.
        const base::FileSet lock(g_folder.toStdString());
        std::optional<Values> values = Load();
        if (!values || !change(*values))
            return false;
        Save(*values);
        return true;
    } catch (const base::Cancelled&) {
        TellUnsaved("another program is saving them");
    } catch (const std::exception& error) {
        TellUnsaved(error.what());
    }
    return false;
}

} // namespace

void SetSettingsFolder(const QString& folder)
{
    g_folder = folder;
    g_told.clear();
}

QVariant ReadSetting(const QString& key)
{
    return Load().value_or(Values()).value(key);
}

bool WriteSetting(const QString& key, const QVariant& value)
{
    return Update([&](Values& values) {
        if (!value.isValid())
            return values.remove(key) > 0;
        values.insert(key, value);
        return true;
    });
}

bool RemoveSettings(const QString& group)
{
    return Update([&](Values& values) {
        const QString prefix = group + QLatin1Char('/');
        bool any = false;
        for (const QString& key : values.keys()) {
            if (key.startsWith(prefix))
                any = values.remove(key) > 0 || any;
        }
        return any;
    });
}

} // namespace openhost

DzAppSettings::DzAppSettings(const QString& startPath)
{
    pushPath(startPath);
}
DzAppSettings::~DzAppSettings() = default;

QString DzAppSettings::fullKey(const QString& key) const
{
    return (_path + QStringList(key)).join(QLatin1Char('/'));
}

namespace {

template <class T>
T ValueOr(const QString& key, const T& fallback)
{
    const QVariant value = openhost::ReadSetting(key);
    return value.isValid() && value.canConvert<T>() ? value.value<T>() : fallback;
}

} // namespace

QString DzAppSettings::getStringValue(const QString& key, const QString& def) const
{
    return ValueOr(fullKey(key), def);
}
int DzAppSettings::getIntValue(const QString& key, int def) const
{
    return ValueOr(fullKey(key), def);
}
bool DzAppSettings::getBoolValue(const QString& key, bool def) const
{
    return ValueOr(fullKey(key), def);
}
double DzAppSettings::getFloatValue(const QString& key, double def) const
{
    return ValueOr(fullKey(key), def);
}

bool DzAppSettings::setStringValue(const QString& key, const QString& value)
{
    return openhost::WriteSetting(fullKey(key), value);
}

bool DzAppSettings::setIntValue(const QString& key, int value)
{
    return openhost::WriteSetting(fullKey(key), value);
}
bool DzAppSettings::setBoolValue(const QString& key, bool value)
{
    return openhost::WriteSetting(fullKey(key), value);
}
bool DzAppSettings::setFloatValue(const QString& key, double value)
{
    return openhost::WriteSetting(fullKey(key), value);
}
bool DzAppSettings::containsValue(const QString& key) const
{
    return openhost::ReadSetting(fullKey(key)).isValid();
}
bool DzAppSettings::removeValue(const QString& key)
{
    return openhost::WriteSetting(fullKey(key), QVariant());
}
bool DzAppSettings::removeKey(const QString& key)
{
    return openhost::RemoveSettings(fullKey(key));
}
void DzAppSettings::pushPath(const QString& path)
{
    _path += path.split(QLatin1Char('/'), Qt::SkipEmptyParts);
}

void DzAppSettings::popPath()
{
    if (!_path.isEmpty())
        _path.removeLast();
}
