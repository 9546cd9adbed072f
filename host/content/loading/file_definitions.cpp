// What a file defines, by id.
// SPDX-License-Identifier: MIT

#include "file_definitions.h"

#include "dson/uri.h"

namespace openhost {

FileDefinitions::FileDefinitions(const dson::Document& document)
{
    for (const dson::Node& node : document.nodes)
        _nodes.emplace(node.id, &node);
    for (const dson::Geometry& geometry : document.geometries)
        _geometries.emplace(geometry.id, &geometry);
    for (const dson::Modifier& modifier : document.modifiers)
        _modifiers.emplace(modifier.id, &modifier);
    for (const dson::SkinDefinition& skin : document.skins)
        _skins.emplace(skin.binding.id, &skin);
}

template <class Definition>
const Definition* FileDefinitions::find(const ById<Definition>& all, const std::string& url)
{
    const dson::Uri uri = dson::ParseUri(url);
    const auto found = uri.path.empty() ? all.find(uri.id) : all.end();
    return found == all.end() ? nullptr : found->second;
}

template const dson::Node* FileDefinitions::find(const ById<dson::Node>&, const std::string&);
template const dson::Geometry* FileDefinitions::find(const ById<dson::Geometry>&, const std::string&);
template const dson::Modifier* FileDefinitions::find(const ById<dson::Modifier>&, const std::string&);
template const dson::SkinDefinition* FileDefinitions::find(const ById<dson::SkinDefinition>&,
                                                           const std::string&);

} // namespace openhost
