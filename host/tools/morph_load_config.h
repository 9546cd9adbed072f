// Settings files of Morph Loader Pro.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace openhost {

struct MorphLoadSettings;

/// A file has a section for what all objects of a project have in common and one for each object. The names
/// of file and morph and the caption belong to an object's section only. Nodes and properties of the scene
/// are not kept.
enum class ConfigSection { Common, Object };

/// Settings that the section does not name stay as they are, as do numbers out of an enumeration's range.
/// @param object  the object's name; unused for the common section
/// @return false, changing nothing, when the file cannot be read or lacks the section
bool ReadConfig(const QString& file, ConfigSection section, const QString& object,
                MorphLoadSettings* settings);
/// Writes the section beside the file's other ones. A file that holds something else is left alone.
/// @return false when that is so or the file cannot be written
bool WriteConfig(const QString& file, ConfigSection section, const QString& object,
                 const MorphLoadSettings& settings);

} // namespace openhost
