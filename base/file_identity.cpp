// Which file bears a name.
// SPDX-License-Identifier: MIT

#include "file_identity.h"

#include "base/errors.h"
#include "base/reason.h"

#include <cerrno>

#include <sys/stat.h>

namespace base {

const char* const noFile = "-";

std::string IdentityOf(const std::filesystem::path& file)
{
    struct stat found {};
    if (lstat(file.c_str(), &found) == 0)
        return fmt::format("{}.{}.{}", found.st_ino, found.st_size, found.st_mtim.tv_sec);
    if (errno == ENOENT || errno == ENOTDIR)
        return noFile;
    throw IoError("cannot read {}: {}", file.string(), ReasonOf(errno));
}

} // namespace base
