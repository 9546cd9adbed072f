// The order in which a file's nodes are made.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/reader.h"
#include "dson/uri.h"

#include <algorithm>
#include <functional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace openhost {

/// The instances of a file, parents before children, otherwise in the file's order.
class InstanceOrder {
public:
    /// @param isBone  bones stay where they are when a figure is below one of its own
    InstanceOrder(const dson::Document& document,
                  const std::function<bool(const dson::NodeInstance&)>& isBone)
    {
        for (const dson::NodeInstance& instance : document.nodeInstances)
            _byId.emplace(instance.id, &instance);
        for (const dson::NodeInstance& instance : document.nodeInstances)
            addWithParents(instance, isBone);
    }

    const std::vector<const dson::NodeInstance*>& instances() const { return _ordered; }
    /// Those that are their own ancestors, of each circle one: its parent counts for nothing.
    const std::vector<const dson::NodeInstance*>& circular() const { return _circular; }
    /// Another instance before this one has its id.
    bool isRepeated(const dson::NodeInstance& instance) const
    {
        return !instance.id.empty() && _byId.at(instance.id) != &instance;
    }

private:
    void addWithParents(const dson::NodeInstance& instance,
                        const std::function<bool(const dson::NodeInstance&)>& isBone)
    {
        std::vector<const dson::NodeInstance*> line;
        for (const dson::NodeInstance* next = &instance; next && !_seen.count(next); next = parentOf(*next)) {
            _seen.insert(next);
            line.push_back(next);
        }
        const dson::NodeInstance* const above = line.empty() ? nullptr : parentOf(*line.back());
        const auto circle = std::find(line.begin(), line.end(), above);
        if (circle != line.end()) {
            // From the last on they are parents before children, beginning with what is cut.
            auto cut =
                std::find_if_not(circle, line.end(), [&isBone](const auto* one) { return isBone(*one); });
            cut = cut == line.end() ? circle : cut;
            _circular.push_back(*cut);
            std::rotate(circle, std::next(cut), line.end());
        }
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
    std::vector<const dson::NodeInstance*> _ordered, _circular;
};

} // namespace openhost
