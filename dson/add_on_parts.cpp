// Turning the members of a DSON file into values: what is to come after a scene.
// SPDX-License-Identifier: MIT

#include "dson/uri.h"
#include "parts.h"

#include <algorithm>
#include <initializer_list>

namespace dson {

namespace {

bool HasExtension(const std::string& path, std::initializer_list<std::string_view> extensions)
{
    const std::size_t dot = path.rfind('.');
    if (dot == path.npos)
        return false;
    std::string extension = path.substr(dot);
    for (char& c : extension)
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    return std::find(extensions.begin(), extensions.end(), extension) != extensions.end();
}

/// Calls visit(path) for each text below the element that could be a path. No text is nested deeper than
/// recursion goes.
template <class Visit>
void ForEachPath(const Element& element, const Visit& visit)
{
    if (element.is_string())
        visit(ParseUri(element.get_string().value_unsafe()).path);
    else if (element.is_array())
        for (const Element item : Items(element))
            ForEachPath(item, visit);
    else if (element.is_object())
        for (const auto member : Members(element))
            ForEachPath(member.value, visit);
}

bool IsForAfterwards(const Element& extra)
{
    return Text(extra, "type").find("post_load") != std::string::npos || Find(extra, "PostLoadAddons");
}

/// Writers wrap the settings of add-ons and scripts in ever other ways, so any path of the right kind counts.
void AddPaths(const Element& extra, std::initializer_list<std::string_view> extensions,
              std::vector<std::string>& paths)
{
    if (IsForAfterwards(extra))
        ForEachPath(extra, [&](const std::string& path) {
            if (HasExtension(path, extensions) && std::find(paths.begin(), paths.end(), path) == paths.end())
                paths.push_back(path);
        });
}

} // namespace

bool NamesAddOns(const Element& extra)
{
    std::vector<std::string> paths;
    AddPaths(extra, {".duf", ".dsf"}, paths);
    return !paths.empty();
}

std::vector<std::string> CollectAddOns(const Element& scene)
{
    std::vector<std::string> paths;
    ForEach(scene, "extra", [&](const Element& extra) { AddPaths(extra, {".duf", ".dsf"}, paths); });
    return paths;
}

std::vector<std::string> CollectScripts(const Element& scene, bool besideAddOns)
{
    std::vector<std::string> paths;
    ForEach(scene, "extra", [&](const Element& extra) {
        if (NamesAddOns(extra) == besideAddOns)
            AddPaths(extra, {".dsa", ".dse", ".dsb", ".ds", ".js"}, paths);
    });
    return paths;
}

bool HasFollowUps(const Element& scene)
{
    bool has = false;
    ForEach(scene, "extra", [&](const Element& extra) { has = has || IsForAfterwards(extra); });
    return has;
}

} // namespace dson
