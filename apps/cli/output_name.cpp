// Names of files to be written.
// SPDX-License-Identifier: MIT

#include "output_name.h"

#include "base/atomic_file.h"
#include "base/folders.h"
#include "base/reason.h"
#include "command.h"
#include "standard_streams.h"

#include <cerrno>

#include <fmt/format.h>
#include <unistd.h>

namespace cli {

namespace fs = std::filesystem;

namespace {

/// Why the folder can neither be used nor made; zero when it can.
int FolderError(fs::path folder)
{
    std::error_code error;
    folder = fs::absolute(folder, error);
    while (!error && !fs::exists(folder, error) && folder.has_relative_path())
        folder = folder.parent_path();
    // Below a file there is nothing to look for, which the system tells as an error.
    if (error)
        return error.value();
    if (!fs::is_directory(folder, error))
        return ENOTDIR;
    return access(folder.c_str(), W_OK | X_OK) == 0 ? 0 : errno;
}

} // namespace

void CheckOutput(const fs::path& file, const std::vector<fs::path>& inputs)
{
    if (IsStandardStream(file))
        throw UsageError("standard output cannot have this file; ./- is a file of that name");
    const fs::path folder = file.has_parent_path() ? file.parent_path() : fs::path(".");
    const long most = pathconf(folder.c_str(), _PC_NAME_MAX); // negative where that is open
    if (most > 0 && file.filename().native().size() > static_cast<std::size_t>(most))
        throw std::runtime_error(
            fmt::format("cannot write {}: {}", FileText(file), base::ReasonOf(ENAMETOOLONG)));
    base::CheckReplaceable(file);
    std::error_code error;
    for (const fs::path& input : inputs)
        if (fs::equivalent(file, input, error))
            throw std::runtime_error(fmt::format("cannot write {}: it is the same file as the input {}",
                                                 FileText(file), FileText(input)));
}

void CheckFolder(const fs::path& folder)
{
    if (IsStandardStream(folder))
        throw UsageError("standard output is no folder; ./- is one of that name");
    std::string reason = base::DescribeLostLink(folder);
    if (const int error = FolderError(folder); error && reason.empty())
        reason = base::ReasonOf(error);
    if (reason.empty())
        return;
    std::error_code error;
    throw std::runtime_error(fmt::format("cannot {} folder {}: {}",
                                         fs::is_directory(folder, error) ? "write" : "create",
                                         FileText(folder), reason));
}

} // namespace cli
