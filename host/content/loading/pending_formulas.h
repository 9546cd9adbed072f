// Formulas that wait until everything that they name is there.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/reader.h"
#include "formula_links.h"

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

namespace openhost {

class PendingFormulas {
public:
    /// @param owner  keeps the formula alive
    void add(const dson::Formula& formula, const std::shared_ptr<const dson::Document>& owner);
    /// Unless an equal one waits already.
    void addOnce(const dson::Formula& formula, const std::shared_ptr<const dson::Document>& owner);

    /// The properties that two and more of them drive in just the same way.
    std::set<std::string> duplicateOutputs() const;

    struct LeftOut {
        std::vector<std::string> missing;       ///< for each, an address of a property that is not there
        std::vector<std::string> notUnderstood; ///< what each drives
    };
    /// Makes the links of all, in the order of adding. None waits any longer.
    /// @param tellHomeless  called with each formula whose output is not there
    LeftOut connect(const PropertyResolver& resolve,
                    const std::function<void(const dson::Formula&)>& tellHomeless);

private:
    struct Pending {
        const dson::Formula* formula;
        std::shared_ptr<const dson::Document> owner;
    };
    bool hasEqual(std::size_t hash, const dson::Formula& formula) const;

    std::vector<Pending> _formulas;
    std::unordered_multimap<std::size_t, const dson::Formula*> _byHash; ///< of those that differ
    std::set<std::string> _duplicateOutputs;
};

} // namespace openhost
