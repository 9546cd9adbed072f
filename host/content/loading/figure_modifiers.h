// Which morphs, controls and aliases a figure gets, and which it lacks.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/reader.h"
#include "dson/uri.h"
#include "figure_dials.h"
#include "figure_effects.h"
#include "figure_file.h"
#include "figure_mesh.h"
#include "figure_nodes.h"
#include "library/asset_library.h"
#include "lost_shapes.h"
#include "pending_formulas.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace openhost {

class FigureModifiers {
public:
    /// All must outlive it; nodes, dials and formulas receive what the modifiers bring.
    FigureModifiers(const FigureFile& figure, const FigureMesh& mesh, FigureNodes& nodes, FigureDials& dials,
                    PendingFormulas& formulas);

    /// Adds those of the file that belong to the figure and are not there yet.
    /// @param path  decoded path of the file
    void addThoseOf(const std::shared_ptr<const dson::Document>& file, const std::string& path);
    /// Likewise of every file in the figure's folders for morphs. Lost shapes are looked for there, too.
    void addThoseOnDisk(AssetLibrary& library);
    /// Adds one, whatever it says about its parent; a morph for another mesh is left out.
    void add(const dson::Modifier& modifier, const std::shared_ptr<const dson::Document>& file,
             const std::string& path);

    /// Makes an instance's values those of the modifier that is neither morph nor dial; what no file defines
    /// is made from the instance.
    void applyEffect(const dson::ModifierInstance& instance, const std::string& path);
    DzModifier* findEffect(const dson::Uri& url) const; ///< null for none

    /// Notes that a shape, which is not there, is dialled in.
    /// @param why  nothing for what its file has and is no shape of this figure
    void lose(const dson::Uri& uri, const std::optional<base::Diagnostic>& why, double value);
    /// Notes a formula that turns what is not there; it may be a shape.
    void driveLost(const dson::Formula& formula, const PropertyResolver& resolve);
    /// Gives the root the lost shapes, if there are any.
    void attachLost();

    /// Tells what was left out or got another name, once.
    void reportOmissions();

private:
    /// What was left out or taken otherwise for one reason, for one diagnostic.
    struct Omission {
        std::size_t count = 0;
        std::string example;

        void add(const std::string& what)
        {
            if (count++ == 0)
                example = what;
        }
    };

    /// @param leftOut  files of whose spellings others were taken
    void tellDuplicates(const std::vector<std::filesystem::path>& leftOut,
                        const std::vector<std::string>& files) const;
    void addIfOurs(const dson::Modifier& modifier, const std::shared_ptr<const dson::Document>& file,
                   const std::string& path);
    /// @param parent  of the modifier, taken apart
    bool isOurs(const dson::Modifier& modifier, const dson::Uri& parent, const dson::Document& file) const;
    bool isDefined(const dson::Modifier& modifier, const std::string& path) const;
    /// The file, its own path in what its formulas say of the modifier without saying which one they mean.
    std::shared_ptr<const dson::Document> unmistaken(const dson::Modifier& modifier, bool isTaken,
                                                     const std::shared_ptr<const dson::Document>& file,
                                                     const std::string& path) const;
    bool make(const dson::Modifier& modifier, const std::string& name, const dson::Document& file,
              const std::string& path);
    bool addMorph(const dson::Modifier& modifier, const std::string& name, const dson::Document& file,
                  const std::string& path);
    void noteChannel(const dson::Modifier& modifier, const dson::Document& file, bool isMade);
    void loseForItsMesh(const dson::Modifier& modifier, const dson::Document& file, const std::string& path);

    const FigureFile& _figure;
    const FigureMesh& _mesh;
    FigureNodes& _nodes;
    FigureDials& _dials;
    PendingFormulas& _formulas;
    std::unordered_set<std::string> _added; ///< also those that were left out
    FigureEffects _effects;
    Omission _forOtherMeshes, _forOtherFigures, _ofEqualNames, _ofUnknownTypes, _withoutNumbers,
        _beyondLimits;
    AssetLibrary* _library = nullptr; ///< where its shapes were looked for
    LostShapes _lost;
};

} // namespace openhost
