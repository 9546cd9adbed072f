// Content paths, as the host's content manager resolves them.
// SPDX-License-Identifier: MIT

#include "ks_daz-helpers.h"

#include "ks_daz-adaptation.h"
#include "ks_daz-managers.h"
#include "ks_string.h"

#include <dzcontentmgr.h>

namespace kst {
namespace daz {

std::string GetAbsolutePath_X(std::string_view relativePath)
{
    return str::ToStd(GetAbsolutePathQ_X(str::ToQ(relativePath)));
}

QString GetAbsolutePathQ_X(const QString& relativePath)
{
    return GetContentMgr_X().getAbsolutePath(relativePath, true);
}

std::string GetDazRelativePath_X(std::string_view absolutePath)
{
    const DzContentMgr& manager = GetContentMgr_X();
    return absolutePath.empty() ? std::string()
                                : str::ToStd(manager.getRelativePath(str::ToQ(absolutePath), true));
}

std::string GetBaseDirectory_X(std::string_view path)
{
    const DzContentFolder* const folder = GetContentMgr_X().findBaseDirectory(str::ToQ(path), true);
    return folder ? str::ToStd(KsHelpersDaz::GetFullPath(*folder)) : std::string();
}

} // namespace daz
} // namespace kst
