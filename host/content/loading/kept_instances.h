// Handing nodes and modifiers what their instances say beyond what can be set.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/reader.h"
#include "loading/kept_parts.h"

#include <memory>
#include <string>

namespace openhost {

/// Of one load.
class KeptInstances {
public:
    explicit KeptInstances(const dson::Document& document);

    void enter(const dson::NodeInstance& instance, DzNode& node) const;
    /// @param owner  the dial or the modifier that the instance is about
    void enter(const dson::ModifierInstance& instance, QObject& owner) const;
    /// @param property  which has the value now; null for what the scene does not have
    /// @param figure    that is meant where the entry speaks of the selection
    void enter(const dson::AnimatedValue& entry, DzNumericProperty* property, DzNode& figure);
    /// "3 materials, 1 UV set"; empty for none.
    std::string idleParts() const;

private:
    void note(const std::string& id);

    std::shared_ptr<KeptLoad> _load;
    bool _isNeeded; ///< by what may refer to nodes and modifiers of the file
};

} // namespace openhost
