// What steps that can be undone are called.
// SPDX-License-Identifier: MIT

#pragma once

#include <QCoreApplication>
#include <QString>

namespace openhost {

/// With %1 for the label of what they are about.
namespace captions {
constexpr const char* set = QT_TRANSLATE_NOOP("openhost::Undo", "Set %1");
constexpr const char* change = QT_TRANSLATE_NOOP("openhost::Undo", "Change %1");
constexpr const char* changeLink = QT_TRANSLATE_NOOP("openhost::Undo", "Change the Link of %1");
constexpr const char* rename = QT_TRANSLATE_NOOP("openhost::Undo", "Rename %1");
constexpr const char* fit = QT_TRANSLATE_NOOP("openhost::Undo", "Fit %1");
constexpr const char* changeMorph = QT_TRANSLATE_NOOP("openhost::Undo", "Change Morph %1");
constexpr const char* createMorph = QT_TRANSLATE_NOOP("openhost::Undo", "Create Morph %1");
constexpr const char* deleteMorph = QT_TRANSLATE_NOOP("openhost::Undo", "Delete Morph %1");
constexpr const char* add = QT_TRANSLATE_NOOP("openhost::Undo", "Add %1");
constexpr const char* deleteWhole = QT_TRANSLATE_NOOP("openhost::Undo", "Delete %1");
constexpr const char* remove = QT_TRANSLATE_NOOP("openhost::Undo", "Remove %1");
constexpr const char* link = QT_TRANSLATE_NOOP("openhost::Undo", "Link %1");
constexpr const char* unlink = QT_TRANSLATE_NOOP("openhost::Undo", "Unlink %1");
constexpr const char* move = QT_TRANSLATE_NOOP("openhost::Undo", "Move %1");
constexpr const char* show = QT_TRANSLATE_NOOP("openhost::Undo", "Show %1");
constexpr const char* hide = QT_TRANSLATE_NOOP("openhost::Undo", "Hide %1");
constexpr const char* deleteAtOnce = QT_TRANSLATE_NOOP("openhost::Undo", "Delete %1 at once");
constexpr const char* replaceShape = QT_TRANSLATE_NOOP("openhost::Undo", "Replace the Shape of %1");
constexpr const char* changeShape = QT_TRANSLATE_NOOP("openhost::Undo", "Change the Shape of %1");
} // namespace captions

/// In the windows' language.
/// @param pattern  one of the captions
inline QString Captioned(const char* pattern, const QString& label)
{
    return QCoreApplication::translate("openhost::Undo", pattern).arg(label);
}

} // namespace openhost
