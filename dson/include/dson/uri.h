// DSON URIs: taking them apart, putting them together, percent-encoding.
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>

namespace dson {

/// `[name:/|id:/][node:][path][#id][?property]`; every part percent-decoded, empty when absent.
struct Uri {
    std::string scheme;   ///< "name", "id" or empty
    std::string node;     ///< node path
    std::string path;     ///< file, relative to a content directory, as NormalPath gives it
    std::string id;       ///< fragment
    std::string property; ///< such as "value" or "rotation/x"
};

/// Never fails: what cannot be told apart stays in the path. Parts are decoded after splitting, once.
Uri ParseUri(std::string_view text);

/// The URI text of an asset: percent-encoded path, '#', percent-encoded id.
std::string MakeUri(const std::string& decodedPath, const std::string& id);
/// As MakeUri, with `node:` in front and `?property` behind.
std::string MakePropertyUri(const std::string& node, const std::string& decodedPath, const std::string& id,
                            const std::string& property);

/// Encodes everything but letters, digits and - _ . ~ and /.
std::string EncodePath(std::string_view text);
/// The same, and / too.
std::string EncodeFragment(std::string_view text);
/// Sequences that are no valid encoding stay as they are.
std::string PercentDecode(std::string_view text);

/// A decoded path in the one spelling of all that lead the same way: '/' between folders, none of them empty
/// or
/// ".", and ".." only where it climbs out of the folder that the path begins in. A '/' in front stays, and
/// none is added.
std::string NormalPath(std::string_view decodedPath);

/// True for a relative path that climbs out of the folder it is resolved in, or cannot name a file.
bool LeavesFolder(std::string_view decodedPath);

} // namespace dson
