// What the desktop application keeps between runs.
// SPDX-License-Identifier: MIT

#pragma once

#include <QJsonObject>
#include <QRect>
#include <QStringList>

#include <dzauthor.h>

class QMainWindow;

namespace desktop {

/// In the user's order. Of earlier versions: those of all programs are kept elsewhere.
QStringList RememberedContentFolders();
void RememberContentFolders(const QStringList& folders);

/// The files that were opened or saved last, newest first.
QStringList RememberedRecentFiles();
void RememberRecentFiles(const QStringList& files);

/// Who saves files; without a name as long as nobody gave one.
DzAuthor RememberedAuthor();
void RememberAuthor(const DzAuthor& author);

/// What no other program has.
struct OwnPreferences {
    int lengthUnit = 0; ///< openhost::LengthUnit
    int pictureCacheMiB = 64;
    int undoMiB = 512;
};
OwnPreferences RememberedOwnPreferences();
void RememberOwnPreferences(const OwnPreferences& preferences);

/// Whether joints follow new morphs; not unless somebody wished it.
bool RememberedRigAdjusting();
void RememberRigAdjusting(bool isWanted);

/// What stands in the view besides the scene, and how the scene is drawn.
struct ViewChoices {
    bool showsGround = false;
    bool showsButtons = true;
    QString drawStyle; ///< its description; empty for the view's own
};
ViewChoices RememberedViewChoices();
void RememberViewChoices(const ViewChoices& choices);

enum class LookChoice { Dark, Light, System };
/// Of the windows; dark unless somebody wished another one.
LookChoice RememberedLook();
void RememberLook(LookChoice choice);

/// Where morphs were saved to last, in the product's own dialog or in that of the desktop.
struct MorphPlace {
    QString contentFolder, vendor, product;
};
MorphPlace RememberedMorphPlace();
void RememberMorphPlace(const MorphPlace& place);

/// What was chosen for a job of the list last, as a row of a batch's table has it.
QJsonObject RememberedJobCells();
void RememberJobCells(const QJsonObject& cells);

/// Where a dialog stood, with its frame's corner, and its size without frame, in pixels of the screen. Null
/// where nobody has moved it.
/// @param dialog  its object's name
QRect RememberedDialogPlace(const QString& dialog);
void RememberDialogPlace(const QString& dialog, const QRect& place);

/// Size, place and docks. False when there is nothing to restore.
bool RestoreLayout(QMainWindow& window);
void RememberLayout(const QMainWindow& window);

} // namespace desktop
