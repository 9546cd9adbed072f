// What the user has set once for all runs: in the environment, or in a file.
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace cli {

/// Stands for the option of the same name where that is not given.
struct SettingKind {
    std::string name;     ///< "vendor", of the option "--vendor"
    std::string variable; ///< "GANTREL_VENDOR"
    enum class Value { FolderName, Text, Folders, Count } value;
};

/// In the order in which they are listed.
const std::vector<SettingKind>& SettingKinds();
/// @throws UsageError  none is called so; the text has those that there are
const SettingKind& FindSettingKind(const std::string& name);

struct Setting {
    std::vector<std::string> values; ///< at least one; several of folders alone
    std::string origin;              ///< the variable, or the file
};

/// In the user's folder for configuration; empty where there is none.
std::filesystem::path SettingsFile();

/// The file's settings as they were when it was read, with those of the environment in front of them.
class Settings {
public:
    /// @throws std::runtime_error  the file cannot be read, or is not as it has to be; the text names it
    Settings();

    /// @throws std::runtime_error  the value cannot be meant; the text says where it stands
    std::optional<Setting> find(const SettingKind& kind) const;

    /// What the file says of names that are none.
    const std::vector<std::string>& unknownNames() const { return _unknownNames; }

private:
    std::optional<Setting> findInFile(const std::string& name) const;

    std::filesystem::path _file;
    std::vector<std::pair<std::string, std::vector<std::string>>> _ofFile;
    std::vector<std::string> _unknownNames;
};

/// Puts it into the file, where everything else stays, also what other programs put there at the same time.
/// No values take the setting out.
/// @throws UsageError          the values cannot be meant
/// @throws std::runtime_error  the file is damaged, which leaves it as it is, or cannot be written, or others
///                             have been changing it for some seconds
void KeepSetting(const SettingKind& kind, const std::vector<std::string>& values);
/// Whether that could be done; does nothing.
/// @throws as above
void CheckSetting(const SettingKind& kind, const std::vector<std::string>& values);

} // namespace cli
