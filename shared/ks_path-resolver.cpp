// Finding files of content libraries on disk.
// SPDX-License-Identifier: MIT

#include "ks_path-resolver.h"

#include "ks_daz-managers.h"
#include "ks_string.h"

#include <sys/stat.h>

#include <fmt/format.h>

#include <dzcontentmgr.h>

namespace {

bool Exists(const std::string& path)
{
    struct stat status;
    return stat(path.c_str(), &status) == 0;
}

} // namespace

KsPathResolver::KsPathResolver()
{
    const DzContentMgr& contentMgr = kst::daz::GetContentMgr_X();
    for (int i = 0; i < contentMgr.getNumContentDirectories(); ++i) {
        std::string directory = kst::str::ToStd(contentMgr.getContentDirectoryPath(i));
        if (!kst::str::EndsWith(directory, "/"))
            directory += '/';
        if (Exists(directory))
            _directories.push_back(directory);
    }
}

std::string KsPathResolver::resolve(std::string_view cloudId, std::string_view relativePath,
                                    std::string& out) const
{
    out.clear();
    if (relativePath.empty())
        return out;
    for (const std::string& directory : _directories) {
        out = fmt::format("{}{}", directory, relativePath);
        if (Exists(out))
            return out;
        if (cloudId.empty())
            continue;
        out = fmt::format("{}data/cloud/1_{}/{}", directory, cloudId, relativePath);
        if (Exists(out))
            return out;
    }
    out.clear();
    return out;
}
