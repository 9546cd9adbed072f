// Where the command line saves morphs to.
// SPDX-License-Identifier: MIT

#include "save_options.h"

#include "base/device_name.h"
#include "base/folders.h"
#include "base/limits.h"
#include "command.h"
#include "option_words.h"

#include <algorithm>
#include <cstring>
#include <filesystem>

#include <QString>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

namespace cli {

/// Libraries move between systems; some refuse these characters, and drop a full stop at the end.
void CheckFolderName(const std::string& option, const std::string& name)
{
    const bool hasBadCharacter = std::any_of(name.begin(), name.end(), [](char c) {
        return static_cast<unsigned char>(c) < 0x20 || std::strchr("/\\:*?\"<>|", c);
    });
    // Some drop blanks at the ends as well.
    const bool hasBlankEnd = name.empty() || name.front() == ' ' || name.back() == ' ';
    if (hasBlankEnd || hasBadCharacter || name.back() == '.' || base::IsDeviceName(name))
        throw UsageError(option + " \"" + name + "\" cannot be the name of a folder");
    if (QString::fromStdString(name).toStdString() != name)
        throw UsageError(fmt::format("{} is not UTF-8", option));
    if (name.size() > base::longestName)
        throw UsageError(fmt::format("{} is too long for the name of a folder: {} bytes, of {} at most",
                                     option, name.size(), base::longestName));
}

void CheckAuthor(const std::string& option, const std::string& name)
{
    const bool hasControl = std::any_of(
        name.begin(), name.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7f; });
    if (hasControl)
        throw UsageError(fmt::format("{} has characters that nobody can see", option));
    if (!name.empty() && QString::fromStdString(name).trimmed().isEmpty())
        throw UsageError(fmt::format("{} is blank", option));
    if (QString::fromStdString(name).toStdString() != name)
        throw UsageError(fmt::format("{} is not UTF-8", option));
}

SaveOptionSet AddSaveOptions(CLI::App& command, SaveArguments& arguments)
{
    SaveOptionSet set;
    set.contentDirectory = command
                               .add_option("--save-library", arguments.contentDirectory,
                                           "Content directory to save the morphs into")
                               ->type_name("DIR");
    set.vendor = command.add_option("--vendor", arguments.vendor, "Vendor folder of the saved morphs")
                     ->type_name("TEXT");
    set.product = command.add_option("--product", arguments.product, "Product folder of the saved morphs")
                      ->type_name("TEXT");
    set.author = command
                     .add_option("--author", arguments.author,
                                 "Author whom the saved morphs name; the vendor without it")
                     ->type_name("TEXT");
    set.compress = command.add_flag("--compress", arguments.compress, "Compress the saved morphs");
    set.overwrite =
        command.add_flag("--overwrite", arguments.overwrite, "Replace saved morphs that have the same name");
    return set;
}

GntSaveOptions MakeSaveOptions(const SaveArguments& arguments)
{
    CheckFolderName(OptionWord("--vendor"), arguments.vendor);
    CheckFolderName(OptionWord("--product"), arguments.product);
    CheckAuthor(OptionWord("--author"), arguments.author);
    return {arguments.contentDirectory, arguments.vendor, arguments.product, arguments.compress};
}

GntSaveOptions WithWholeFolder(GntSaveOptions options)
{
    options.contentDirectory = FileText(std::filesystem::absolute(options.contentDirectory));
    return options;
}

GntSaveOptions PrepareToSave(GntSaveOptions options)
{
    options = WithWholeFolder(std::move(options));
    base::MakeFolders(options.contentDirectory);
    return options;
}

} // namespace cli
