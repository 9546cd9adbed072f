// Addresses of content.
// SPDX-License-Identifier: MIT

#include "dson/uri.h"

#include "fuzz/target.h"

namespace {

std::vector<std::string> Seeds()
{
    return {dson::MakeUri("/data/A B/\xC3\x96l.dsf", "Up/Down"),
            dson::MakePropertyUri("hip", "/data/A.dsf", "hip", "rotation/x"),
            "name://@selection/hip:?rotation/x/value",
            "id://node:/a/../b/./c.duf#id?value",
            "C:\\data\\x.dsf#%zz%2",
            "//a//%2e%2e/..#",
            "..\\x"};
}

void Feed(std::string_view bytes)
{
    const std::string text(bytes);
    fuzz::Demand(dson::PercentDecode(dson::EncodePath(text)) == text, "an encoded path comes back");
    fuzz::Demand(dson::PercentDecode(dson::EncodeFragment(text)) == text, "an encoded id comes back");
    const dson::Uri uri = dson::ParseUri(text);
    fuzz::Demand(dson::NormalPath(uri.path) == uri.path, "a parsed path is a normal one");
    const std::string normal = dson::NormalPath(text);
    fuzz::Demand(dson::NormalPath(normal) == normal, "a normal path stays as it is");
    fuzz::Demand(dson::LeavesFolder(text) || !dson::LeavesFolder(normal),
                 "no spelling of a path hides that it leaves");
    const dson::Uri back = dson::ParseUri(dson::MakeUri(uri.path, uri.id));
    fuzz::Demand(back.path == uri.path, "an address keeps its path");
    fuzz::Demand(back.id == uri.id, "an address keeps its id");
}

const fuzz::Registration registration({"uri", Seeds, Feed});

} // namespace
