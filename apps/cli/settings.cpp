// What the user has set once for all runs: in the environment, or in a file.
// SPDX-License-Identifier: MIT

#include "settings.h"

#include "base/atomic_file.h"
#include "base/folders.h"
#include "base/input_file.h"
#include "command.h"
#include "name_checks.h"
#include "settings_lock.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace cli {

namespace fs = std::filesystem;

namespace {

using Json = nlohmann::ordered_json;

std::string Variable(const char* name)
{
    const char* const value = std::getenv(name);
    return value ? value : "";
}

/// As the system's list of folders for programs.
std::vector<std::string> SplitFolders(const std::string& text)
{
    std::vector<std::string> folders;
    std::size_t begin = 0;
    while (begin < text.size()) {
        const std::size_t end = std::min(text.find(':', begin), text.size());
        if (end > begin)
            folders.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return folders;
}

void CheckCount(const std::string& place, const std::string& text)
{
    constexpr int most = 1024;
    int count = 0;
    const char* const end = text.data() + text.size();
    const std::from_chars_result result = std::from_chars(text.data(), end, count);
    if (result.ec != std::errc() || result.ptr != end || count < 1 || count > most)
        throw UsageError(fmt::format("{} \"{}\" is no number from 1 to {}", place, text, most));
}

/// @param place  where the values stand, as the text names it
void CheckValues(const SettingKind& kind, const std::string& place, const std::vector<std::string>& values)
{
    if (values.size() > 1 && kind.value != SettingKind::Value::Folders)
        throw UsageError(fmt::format("{} takes one value", place));
    for (const std::string& value : values) {
        if (value.empty())
            throw UsageError(fmt::format("{} is empty", place));
        if (kind.value == SettingKind::Value::FolderName)
            CheckFolderName(place, value);
        if (kind.value == SettingKind::Value::Text)
            CheckAuthor(place, value);
        if (kind.value == SettingKind::Value::Count)
            CheckCount(place, value);
    }
}

std::string ReadSmallFile(const fs::path& file)
{
    constexpr std::size_t most = 1 << 20;
    std::string text(most + 1, '\0');
    base::InputFile input(file);
    std::size_t size = 0;
    while (const std::size_t count = input.read(&text[size], text.size() - size))
        size += count;
    if (size > most)
        throw std::runtime_error(fmt::format("{}: is too large for settings", FileText(file)));
    text.resize(size);
    return text;
}

/// @return an object; empty where there is no file
Json ReadSettings(const fs::path& file)
{
    std::error_code error;
    if (file.empty() || fs::symlink_status(file, error).type() == fs::file_type::not_found)
        return Json::object();
    const std::string text = ReadSmallFile(file);
    Json settings;
    try {
        settings = Json::parse(text);
    } catch (const Json::parse_error& damage) {
        const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(damage.byte, text.size()));
        throw std::runtime_error(fmt::format("{}: line {} is no JSON, so that no setting is known",
                                             FileText(file), 1 + std::count(text.begin(), end, '\n')));
    } catch (const Json::out_of_range&) {
        throw std::runtime_error(
            fmt::format("{}: holds a number that is too large for any use", FileText(file)));
    }
    if (!settings.is_object())
        throw std::runtime_error(fmt::format("{}: is not one JSON object with the settings", FileText(file)));
    return settings;
}

/// @throws std::runtime_error  they are neither a text, a number nor a list of texts
std::vector<std::string> ValuesOf(const Json& value, const std::string& place)
{
    if (value.is_string())
        return {value.get<std::string>()};
    if (value.is_number_integer())
        return {value.dump()};
    std::vector<std::string> values;
    const bool isList = value.is_array() && !value.empty();
    if (!isList ||
        !std::all_of(value.begin(), value.end(), [](const Json& item) { return item.is_string(); }))
        throw std::runtime_error(fmt::format("{} is neither a text, a number nor a list of texts", place));
    for (const Json& item : value)
        values.push_back(item.get<std::string>());
    return values;
}

Json ToJson(const SettingKind& kind, const std::vector<std::string>& values)
{
    switch (kind.value) {
    case SettingKind::Value::Folders: {
        Json folders = Json::array();
        for (const std::string& folder : values)
            folders.push_back(FileText(fs::absolute(folder).lexically_normal()));
        return folders;
    }
    case SettingKind::Value::Count:
        return std::stoi(values.front());
    case SettingKind::Value::FolderName:
    case SettingKind::Value::Text:
        break;
    }
    return values.front();
}

std::string Dumped(const Json& settings)
{
    constexpr int indent = 4;
    try {
        return settings.dump(indent) + '\n';
    } catch (const Json::type_error&) {
        throw UsageError("the value is not UTF-8");
    }
}

} // namespace

const std::vector<SettingKind>& SettingKinds()
{
    using Value = SettingKind::Value;
    static const std::vector<SettingKind> kinds{{"content", "GANTREL_CONTENT", Value::Folders},
                                                {"vendor", "GANTREL_VENDOR", Value::FolderName},
                                                {"product", "GANTREL_PRODUCT", Value::FolderName},
                                                {"author", "GANTREL_AUTHOR", Value::Text},
                                                {"threads", "GANTREL_THREADS", Value::Count}};
    return kinds;
}

const SettingKind& FindSettingKind(const std::string& name)
{
    std::string names;
    for (const SettingKind& kind : SettingKinds()) {
        if (kind.name == name)
            return kind;
        names += (names.empty() ? "" : ", ") + kind.name;
    }
    throw UsageError(fmt::format("there is no setting \"{}\"; those that there are: {}", name, names));
}

fs::path SettingsFile()
{
    const fs::path named = Variable("XDG_CONFIG_HOME"), home = Variable("HOME");
    // A folder that depends on the current one is none.
    const fs::path folder = named.is_absolute() ? named : home.is_absolute() ? home / ".config" : fs::path();
    return folder.empty() ? folder : folder / "gantrel" / "config.json";
}

Settings::Settings() : _file(SettingsFile())
{
    const Json settings = ReadSettings(_file);
    for (const auto& member : settings.items()) {
        const std::string place = fmt::format("{}: {}", FileText(_file), member.key());
        const auto isKind = [&](const SettingKind& kind) { return kind.name == member.key(); };
        if (std::any_of(SettingKinds().begin(), SettingKinds().end(), isKind))
            _ofFile.emplace_back(member.key(), ValuesOf(member.value(), place));
        else
            _unknownNames.push_back(member.key());
    }
}

std::optional<Setting> Settings::findInFile(const std::string& name) const
{
    for (const auto& [known, values] : _ofFile)
        if (known == name)
            return Setting{values, FileText(_file)};
    return std::nullopt;
}

std::optional<Setting> Settings::find(const SettingKind& kind) const
{
    const std::string text = Variable(kind.variable.c_str());
    const std::vector<std::string> values = kind.value == SettingKind::Value::Folders ? SplitFolders(text)
                                            : text.empty() ? std::vector<std::string>()
                                                           : std::vector<std::string>{text};
    if (!values.empty()) {
        CheckValues(kind, kind.variable, values);
        return Setting{values, kind.variable};
    }
    const std::optional<Setting> kept = findInFile(kind.name);
    if (kept)
        CheckValues(kind, fmt::format("{}: {}", kept->origin, kind.name), kept->values);
    return kept;
}

namespace {

/// What the file is to hold.
std::string TextWith(const SettingKind& kind, const std::vector<std::string>& values)
{
    CheckValues(kind, kind.name, values);
    const fs::path file = SettingsFile();
    if (file.empty())
        throw std::runtime_error("there is no folder for settings: neither XDG_CONFIG_HOME nor HOME has one");
    Json settings = ReadSettings(file);
    if (values.empty())
        settings.erase(kind.name);
    else
        settings[kind.name] = ToJson(kind, values);
    return Dumped(settings);
}

} // namespace

void CheckSetting(const SettingKind& kind, const std::vector<std::string>& values)
{
    TextWith(kind, values);
}

void KeepSetting(const SettingKind& kind, const std::vector<std::string>& values)
{
    CheckSetting(kind, values); // before a folder is made for it
    const fs::path file = SettingsFile();
    base::MakeFolders(file.parent_path());
    base::CheckWritable(file);
    // What others keep meanwhile is in the file that is read now.
    const SettingsLock lock(file);
    base::WriteFileAtomically(file, TextWith(kind, values));
}

} // namespace cli
