// The modifiers of a figure that are neither morphs nor dials.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/reader.h"
#include "dson/uri.h"
#include "dzweightmap.h"
#include "figure_dials.h"
#include "figure_file.h"
#include "figure_mesh.h"
#include "figure_nodes.h"

#include <map>
#include <string>
#include <utility>

class DzModifier;

namespace openhost {

class FileEffect;
class PushModifier;

/// Smoothing, pushing, simulation and what else files bring. Each kind has a class of its own if the host
/// does something with it; the others are kept with their dials, for those who read them and for saving.
class FigureEffects {
public:
    /// All must outlive this.
    FigureEffects(const FigureFile& figure, const FigureMesh& mesh, const FigureNodes& nodes,
                  FigureDials& dials);

    /// Makes a modifier of one that has an effect.
    /// @param path  decoded path of the file that defines it
    /// @return false for a figure without a mesh
    bool add(const dson::Modifier& modifier, const dson::Document& file, const std::string& path);
    /// Sets what an instance says, on a modifier of its own where nothing defines it.
    void apply(const dson::ModifierInstance& instance, const std::string& path);

    /// Tells what is not evaluated, one line a kind.
    void report();

private:
    struct Omission {
        std::size_t count = 0;
        std::string example;
    };

    DzModifier* make(const dson::Effect& effect, const std::string& name, const std::string& id,
                     const std::string& path);
    void addChannel(DzModifier& modifier, FileEffect& file, const dson::EffectChannel& channel);
    DzModifier* find(const dson::Uri& url, const std::string& path) const; ///< null for none
    void setUp(DzModifier& modifier);
    void setUpPush(PushModifier& modifier, const FileEffect& file) const;
    /// Null, and told, when they are not for the figure's mesh.
    DzWeightMapPtr weightsOf(const dson::InfluenceMap& map, const DzModifier& modifier) const;
    void note(const dson::Effect& effect, const std::string& name);
    void omit(const std::string& what, const std::string& name);

    const FigureFile& _figure;
    const FigureMesh& _mesh;
    const FigureNodes& _nodes;
    FigureDials& _dials;
    std::map<std::pair<std::string, std::string>, DzModifier*> _made; ///< by the path's key and id
    std::map<std::string, Omission> _omitted;                         ///< by what is to be told
};

} // namespace openhost
