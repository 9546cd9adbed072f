// Names of files to be written.
// SPDX-License-Identifier: MIT

#include "output_name.h"

#include "base/atomic_file.h"
#include "base/reason.h"
#include "command.h"

#include <cerrno>

#include <fmt/format.h>
#include <unistd.h>

namespace cli {

namespace fs = std::filesystem;

void CheckOutput(const fs::path& file, const std::vector<fs::path>& inputs)
{
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

} // namespace cli
