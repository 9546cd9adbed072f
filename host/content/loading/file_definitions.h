// What a file defines, by id.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/reader.h"

#include <string>
#include <unordered_map>

namespace openhost {

/// Of equal ids the first counts. URLs of other files name nothing.
class FileDefinitions {
public:
    /// @param document  must outlive this
    explicit FileDefinitions(const dson::Document& document);

    const dson::Node* node(const std::string& url) const { return find(_nodes, url); }
    const dson::Geometry* geometry(const std::string& url) const { return find(_geometries, url); }
    const dson::Modifier* modifier(const std::string& url) const { return find(_modifiers, url); }
    const dson::SkinDefinition* skin(const std::string& url) const { return find(_skins, url); }
    bool hasModifier(const std::string& id) const { return _modifiers.count(id) > 0; }

private:
    template <class Definition>
    using ById = std::unordered_map<std::string, const Definition*>;
    template <class Definition>
    static const Definition* find(const ById<Definition>& all, const std::string& url);

    ById<dson::Node> _nodes;
    ById<dson::Geometry> _geometries;
    ById<dson::Modifier> _modifiers;
    ById<dson::SkinDefinition> _skins;
};

} // namespace openhost
