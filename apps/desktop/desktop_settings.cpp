// What the desktop application keeps between runs.
// SPDX-License-Identifier: MIT

#include "apps/desktop/desktop_settings.h"

#include <QMainWindow>

#include <dzappsettings.h>

namespace desktop {

namespace {

const QLatin1String group("Gantrel Desktop");
const QLatin1String foldersKey("content_folders");
const QLatin1String geometryKey("window_geometry");
const QLatin1String docksKey("window_docks");
const QLatin1Char between('\n'); // in no sensible path

QByteArray Bytes(const DzAppSettings& settings, const QString& key)
{
    return QByteArray::fromBase64(settings.getStringValue(key).toLatin1());
}

void SetBytes(DzAppSettings& settings, const QString& key, const QByteArray& bytes)
{
    settings.setStringValue(key, QString::fromLatin1(bytes.toBase64()));
}

} // namespace

QStringList RememberedContentFolders()
{
    return DzAppSettings(group).getStringValue(foldersKey).split(between, Qt::SkipEmptyParts);
}

void RememberContentFolders(const QStringList& folders)
{
    DzAppSettings(group).setStringValue(foldersKey, folders.join(between));
}

bool RestoreLayout(QMainWindow& window)
{
    const DzAppSettings settings(group);
    return window.restoreGeometry(Bytes(settings, geometryKey)) &&
           window.restoreState(Bytes(settings, docksKey));
}

void RememberLayout(const QMainWindow& window)
{
    DzAppSettings settings(group);
    SetBytes(settings, geometryKey, window.saveGeometry());
    SetBytes(settings, docksKey, window.saveState());
}

} // namespace desktop
