// What the desktop application keeps between runs.
// SPDX-License-Identifier: MIT

#include "desktop_settings.h"

#include <QJsonDocument>
#include <QMainWindow>
#include <QVector>

#include <dzappsettings.h>

namespace desktop {

namespace {

const QLatin1String group("Gantrel Desktop");
const QLatin1String foldersKey("content_folders");
const QLatin1String recentKey("recent_files");
const QLatin1String authorNameKey("author_name");
const QLatin1String authorEmailKey("author_email");
const QLatin1String authorUrlKey("author_url");
const QLatin1String lengthUnitKey("length_unit");
const QLatin1String pictureCacheKey("picture_cache_mib");
const QLatin1String undoKey("undo_mib");
const QLatin1String geometryKey("window_geometry");
const QLatin1String rigKey("adjust_rig");
const QLatin1String groundKey("view_ground");
const QLatin1String viewButtonsKey("view_buttons");
const QLatin1String viewStyleKey("view_style");
const QLatin1String lookKey("look");
const QLatin1String lightLookKey("light_look"); // of earlier versions
const QLatin1String docksKey("window_docks");
const QLatin1String jobCellsKey("job_settings");
const QLatin1String dialogGroup("Gantrel Desktop/Dialog Places");
// The plug-in's, so that a place that is given in one dialog is proposed in the other.
const QLatin1String productGroup("Kestrom's Gantrel");
const QLatin1String morphFolderKey("save_last_content_library");
const QLatin1String morphVendorKey("save_last_vendor_name");
const QLatin1String morphProductKey("save_last_product_name");
const QLatin1Char between('\n'); // in no sensible path

QStringList Paths(const QString& key)
{
    return DzAppSettings(group).getStringValue(key).split(between, Qt::SkipEmptyParts);
}

void SetPaths(const QString& key, const QStringList& paths)
{
    DzAppSettings(group).setStringValue(key, paths.join(between));
}

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
    return Paths(foldersKey);
}

void RememberContentFolders(const QStringList& folders)
{
    SetPaths(foldersKey, folders);
}

QStringList RememberedRecentFiles()
{
    return Paths(recentKey);
}

void RememberRecentFiles(const QStringList& files)
{
    SetPaths(recentKey, files);
}

DzAuthor RememberedAuthor()
{
    const DzAppSettings settings(group);
    return DzAuthor(settings.getStringValue(authorNameKey), settings.getStringValue(authorEmailKey),
                    settings.getStringValue(authorUrlKey));
}

void RememberAuthor(const DzAuthor& author)
{
    DzAppSettings settings(group);
    settings.setStringValue(authorNameKey, author.getName());
    settings.setStringValue(authorEmailKey, author.getEmail());
    settings.setStringValue(authorUrlKey, author.getURL());
}

OwnPreferences RememberedOwnPreferences()
{
    const DzAppSettings settings(group);
    const OwnPreferences usual;
    return {settings.getIntValue(lengthUnitKey, usual.lengthUnit),
            settings.getIntValue(pictureCacheKey, usual.pictureCacheMiB),
            settings.getIntValue(undoKey, usual.undoMiB)};
}

void RememberOwnPreferences(const OwnPreferences& preferences)
{
    DzAppSettings settings(group);
    settings.setIntValue(lengthUnitKey, preferences.lengthUnit);
    settings.setIntValue(pictureCacheKey, preferences.pictureCacheMiB);
    settings.setIntValue(undoKey, preferences.undoMiB);
}

bool RememberedRigAdjusting()
{
    return DzAppSettings(group).getBoolValue(rigKey, false);
}

void RememberRigAdjusting(bool isWanted)
{
    DzAppSettings(group).setBoolValue(rigKey, isWanted);
}

ViewChoices RememberedViewChoices()
{
    const DzAppSettings settings(group);
    const ViewChoices usual;
    return {settings.getBoolValue(groundKey, usual.showsGround),
            settings.getBoolValue(viewButtonsKey, usual.showsButtons),
            settings.getStringValue(viewStyleKey, usual.drawStyle)};
}

void RememberViewChoices(const ViewChoices& choices)
{
    DzAppSettings settings(group);
    settings.setBoolValue(groundKey, choices.showsGround);
    settings.setBoolValue(viewButtonsKey, choices.showsButtons);
    settings.setStringValue(viewStyleKey, choices.drawStyle);
}

LookChoice RememberedLook()
{
    const DzAppSettings settings(group);
    const LookChoice usual =
        settings.getBoolValue(lightLookKey, false) ? LookChoice::Light : LookChoice::Dark;
    const int kept = settings.getIntValue(lookKey, int(usual));
    return kept >= 0 && kept <= int(LookChoice::System) ? LookChoice(kept) : usual;
}

void RememberLook(LookChoice choice)
{
    DzAppSettings(group).setIntValue(lookKey, int(choice));
}

MorphPlace RememberedMorphPlace()
{
    const DzAppSettings settings(productGroup);
    return {settings.getStringValue(morphFolderKey), settings.getStringValue(morphVendorKey),
            settings.getStringValue(morphProductKey, QStringLiteral("Product"))};
}

void RememberMorphPlace(const MorphPlace& place)
{
    DzAppSettings settings(productGroup);
    settings.setStringValue(morphFolderKey, place.contentFolder);
    settings.setStringValue(morphVendorKey, place.vendor);
    settings.setStringValue(morphProductKey, place.product);
}

QJsonObject RememberedJobCells()
{
    return QJsonDocument::fromJson(DzAppSettings(group).getStringValue(jobCellsKey).toUtf8()).object();
}

void RememberJobCells(const QJsonObject& cells)
{
    DzAppSettings(group).setStringValue(
        jobCellsKey, QString::fromUtf8(QJsonDocument(cells).toJson(QJsonDocument::Compact)));
}

QRect RememberedDialogPlace(const QString& dialog)
{
    QVector<int> numbers;
    for (const QString& text : DzAppSettings(dialogGroup).getStringValue(dialog).split(QLatin1Char(' ')))
        numbers.append(text.toInt());
    return numbers.size() == 4 ? QRect(numbers[0], numbers[1], numbers[2], numbers[3]) : QRect();
}

void RememberDialogPlace(const QString& dialog, const QRect& place)
{
    DzAppSettings(dialogGroup)
        .setStringValue(dialog, QStringLiteral("%1 %2 %3 %4")
                                    .arg(place.x())
                                    .arg(place.y())
                                    .arg(place.width())
                                    .arg(place.height()));
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
