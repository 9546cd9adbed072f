// Where the command line saves morphs to.
// SPDX-License-Identifier: MIT

#pragma once

#include "gnt_outcome.h"

#include <string>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace cli {

/// As they stand on the command line.
struct SaveArguments {
    std::string contentDirectory, vendor, product, author;
    bool compress = false, overwrite = false;
};

struct SaveOptionSet {
    CLI::Option *contentDirectory, *vendor, *product, *author, *compress, *overwrite;
};

SaveOptionSet AddSaveOptions(CLI::App& command, SaveArguments& arguments);

/// @throws UsageError  author, vendor or product cannot be meant, the latter as they cannot be the name of a
/// folder
GntSaveOptions MakeSaveOptions(const SaveArguments& arguments);

/// That morphs can be saved below the folder, which may have to be made; makes none.
/// @throws std::exception  they cannot
void CheckSaveLibrary(const std::string& contentDirectory);

/// With the content directory's whole path.
GntSaveOptions WithWholeFolder(GntSaveOptions options);
/// Makes the content directory and its address absolute: the host saves into libraries that are there only.
GntSaveOptions PrepareToSave(GntSaveOptions options);

} // namespace cli
