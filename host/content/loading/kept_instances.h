// Handing nodes and modifiers what their instances say beyond what can be set.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/reader.h"
#include "file_definitions.h"
#include "loading/kept_parts.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace openhost {

/// Of one load.
class KeptInstances {
public:
    /// @param document  must outlive this
    explicit KeptInstances(const dson::Document& document);

    void enter(const dson::NodeInstance& instance, DzNode& node) { _nodes.emplace_back(&instance, &node); }
    /// @param owner  the dial or the modifier that the instance is about
    void enter(const dson::ModifierInstance& instance, QObject& owner)
    {
        _modifiers.emplace_back(&instance, &owner);
    }
    /// Of what is not there.
    void enterMissing(const dson::ModifierInstance& instance) { _load->modifiers.push_back(instance); }
    /// @param property  which has the value now; null for what the scene does not have
    /// @param figure    that is meant where the entry speaks of the selection
    void enter(const dson::AnimatedValue& entry, DzNumericProperty* property, DzNode& figure);
    /// Gives all of them what is theirs; nothing where the file says nothing beyond what has been set.
    /// Tells what of definitions nothing has.
    void handOver() const;

    /// "3 materials, 1 UV set"; empty for none.
    std::string idleParts() const;

private:
    void note(const std::string& id);
    KeptNode keptOf(const dson::NodeInstance& instance, const DzNode& node) const;
    static void keepGeometries(const std::vector<dson::GeometryInstance>& geometries, const DzNode& node,
                               KeptNode& kept);
    KeptModifier keptOf(const dson::ModifierInstance& instance, const QObject& owner) const;
    void tellUnclaimed() const;

    const dson::Document& _document;
    FileDefinitions _definitions;
    std::shared_ptr<KeptLoad> _load;
    std::vector<std::pair<const dson::NodeInstance*, QPointer<DzNode>>> _nodes;
    std::vector<std::pair<const dson::ModifierInstance*, QPointer<QObject>>> _modifiers;
};

} // namespace openhost
