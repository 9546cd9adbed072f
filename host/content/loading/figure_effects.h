// The modifiers of a figure that are neither morphs nor dials.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/reader.h"
#include "dson/uri.h"
#include "effect_maker.h"
#include "figure_dials.h"
#include "figure_file.h"
#include "figure_nodes.h"

#include <map>
#include <string>
#include <utility>

class DzModifier;

namespace openhost {

/// Smoothing, pushing, simulation and what else files bring.
class FigureEffects {
public:
    /// All must outlive this.
    /// @param nodes  whose root has the figure's object by now, if there is one
    FigureEffects(const FigureFile& figure, const FigureNodes& nodes, FigureDials& dials);

    /// Makes a modifier of one that has an effect.
    /// @param path  decoded path of the file that defines it
    /// @return false for a figure without a mesh
    bool add(const dson::Modifier& modifier, const dson::Document& file, const std::string& path);
    /// Sets what an instance says, on a modifier of its own where nothing defines it.
    void apply(const dson::ModifierInstance& instance, const std::string& path);

    /// The modifier that a URL means; null for none.
    /// @param path  decoded path of the file that the URL names
    DzModifier* find(const dson::Uri& url, const std::string& path) const;

    /// Tells what is not evaluated, one line a kind.
    void report();

private:
    void enter(DzModifier& modifier, const std::string& id, const std::string& path);

    const FigureNodes& _nodes;
    FigureDials& _dials;
    EffectMaker _maker;
    std::map<std::pair<std::string, std::string>, DzModifier*> _made; ///< by the path's key and id
};

} // namespace openhost
