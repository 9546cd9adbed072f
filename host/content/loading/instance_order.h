// The order in which a file's nodes are made.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/reader.h"
#include "dson/uri.h"

#include <algorithm>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace openhost {

/// The instances of a file, parents before children, otherwise in the file's order.
class InstanceOrder {
public:
    explicit InstanceOrder(const dson::Document& document)
    {
        for (const dson::NodeInstance& instance : document.nodeInstances)
            _byId.emplace(instance.id, &instance);
        for (const dson::NodeInstance& instance : document.nodeInstances)
            if (instance.id.empty() || _byId.at(instance.id) == &instance)
                addWithParents(instance);
    }

    const std::vector<const dson::NodeInstance*>& instances() const { return _ordered; }
    /// An instance that is its own ancestor; null if there is none.
    const dson::NodeInstance* circular() const { return _circular; }

private:
    void addWithParents(const dson::NodeInstance& instance)
    {
        std::vector<const dson::NodeInstance*> line;
        for (const dson::NodeInstance* next = &instance; next && !_seen.count(next); next = parentOf(*next)) {
            _seen.insert(next);
            line.push_back(next);
        }
        const dson::NodeInstance* const above = line.empty() ? nullptr : parentOf(*line.back());
        if (above && std::find(line.begin(), line.end(), above) != line.end())
            _circular = above;
        _ordered.insert(_ordered.end(), line.rbegin(), line.rend());
    }

    const dson::NodeInstance* parentOf(const dson::NodeInstance& instance) const
    {
        const std::string id = dson::ParseUri(instance.parent).id;
        const auto found = id.empty() ? _byId.end() : _byId.find(id);
        return found == _byId.end() ? nullptr : found->second;
    }

    std::unordered_map<std::string, const dson::NodeInstance*> _byId;
    std::unordered_set<const dson::NodeInstance*> _seen;
    std::vector<const dson::NodeInstance*> _ordered;
    const dson::NodeInstance* _circular = nullptr;
};

} // namespace openhost
