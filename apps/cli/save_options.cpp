// Where the command line saves morphs to.
// SPDX-License-Identifier: MIT

#include "save_options.h"

#include "base/folders.h"
#include "command.h"
#include "name_checks.h"
#include "option_words.h"
#include "output_name.h"

#include <algorithm>
#include <filesystem>

#include <QString>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

namespace cli {

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

void CheckSaveLibrary(const std::string& contentDirectory)
{
    CheckContentName(std::filesystem::absolute(contentDirectory));
    CheckFolder(contentDirectory);
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
