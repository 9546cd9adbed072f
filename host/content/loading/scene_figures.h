// The figures and props of a file on their way into the scene.
// SPDX-License-Identifier: MIT

#pragma once

#include "alias_values.h"
#include "dson/reader.h"
#include "dson/uri.h"
#include "kept_instances.h"
#include "library/asset_library.h"
#include "load_report.h"
#include "loaded_figures.h"

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <QPointer>

class DzNode;
class DzNumericProperty;

namespace openhost {

/// Of one character or scene file.
class SceneFigures {
public:
    /// @param selected  what references to the selection mean; null for nothing
    SceneFigures(AssetLibrary& library, std::shared_ptr<const dson::Document> document, DzNode* selected);

    /// Makes everything and tells what is missing; the scene is as it was.
    void prepare();
    /// Whether nothing could be made.
    bool isEmpty() const { return _figures.empty(); }
    /// Hands it all to the scene.
    /// @return what is to be selected: what neither hangs on anything nor is worn by what is selected
    std::vector<DzNode*> enter();

private:
    using Place = LoadedFigures::Place;

    /// Path of a URL's file below its content directory; this file's own for "#id".
    std::string pathOf(const dson::Uri& uri) const;
    /// The URL of the definition, with this file's path where it has none.
    dson::Uri uriOf(const dson::ModifierInstance& instance) const;
    std::shared_ptr<const dson::Document> documentOf(const dson::Uri& uri);
    /// Of a file that the URL of an instance names.
    std::shared_ptr<const DefinitionTree> treeOf(const std::shared_ptr<const dson::Document>& document);
    /// What a reference to the selection means in the scene; null for other references.
    DzNode* selectedNode(const std::string& reference) const;

    void placeAll();
    std::string parentOf(const dson::NodeInstance& instance) const; ///< empty where a circle is cut
    bool isBone(const dson::NodeInstance& instance);                ///< a part of a figure
    /// @param isRepeated  another instance has its id
    /// @return false for what hangs on nothing that is there so far, though it should
    bool place(const dson::NodeInstance& instance, bool isRepeated);
    void placeHomeless(const dson::NodeInstance& instance, bool isRepeated);
    /// On the only figure that has such a bone to which no instance belongs.
    void placeStray(const dson::NodeInstance& instance, const dson::Uri& url);
    void make(const dson::NodeInstance& instance, const dson::Uri& url, DzNode* above);
    void fail(const dson::NodeInstance& instance);
    /// True when the instance is a part of a figure that is there already. A root of the same file is another
    /// figure.
    bool overlay(const dson::NodeInstance& instance, const dson::Uri& url, std::size_t figure,
                 bool isRepeated);
    bool instantiate(const dson::NodeInstance& instance, const dson::Uri& url, DzNode* parent);
    void applyInstance(const dson::NodeInstance& instance, DzNode& node, std::size_t figure);

    /// Sets it now, or what it stands for later.
    void setValue(const FigureAssembly& assembly, DzNumericProperty& property, double value);
    /// What the instance is set on; nothing for none.
    std::optional<Place> placeOfParent(const dson::ModifierInstance& instance);
    /// The bone that the parent of a dial means though no instance belongs to it.
    std::optional<Place> boneOf(const dson::Uri& parent, const dson::Uri& dial) const;
    void dial(const dson::ModifierInstance& instance);
    /// What the file sets on the selection rather than on a figure of its own.
    void dialSelection();
    bool isThisFile(const dson::Uri& url) const;
    /// Such a shape is meant, also where the figure has one of its name.
    bool isDefinedHere(const dson::Uri& url) const;
    /// @param node  whose dials come first where the URL's file is not there
    DzNumericProperty* findDial(FigureAssembly& assembly, const dson::Uri& url, const DzNode& node);
    /// What the instance says beyond its dial goes to what it is about.
    void keep(const dson::ModifierInstance& instance, const FigureAssembly& assembly, const dson::Uri& url,
              DzNumericProperty* dial);
    /// A shape that lies outside the figure's own folders, or in this file.
    void addShapeFile(FigureAssembly& assembly, const dson::Uri& url);
    void markFavorites() const;

    std::vector<DzNode*> enterScene();
    DzNode* fitTarget(const std::string& reference) const; ///< null for none
    void fit(const LoadedFigure& figure);
    /// What of a graft does not fit, now that all is fitted.
    void tellGraft(const DzNode& node) const;
    void noteOddValue(const dson::ModifierInstance& instance);
    void noteBeyondLimits(const std::vector<std::string>& labels);
    /// A scene that moves is loaded as it is at its beginning.
    void animate();

    AssetLibrary& _library;
    std::shared_ptr<const dson::Document> _document;
    QPointer<DzNode> _selected; ///< when the load began
    LoadReport _report;
    std::unordered_map<const dson::Document*, std::shared_ptr<const DefinitionTree>> _trees;
    LoadedFigures _figures;
    AliasValues _values;
    KeptInstances _kept;
    std::vector<const dson::ModifierInstance*> _onSelection;
    std::vector<std::string> _beyondLimits; ///< labels of dials
    std::vector<std::string> _numbersInTexts;
    std::set<std::string> _failed;               ///< instances that stand for nothing
    std::set<std::string> _failedFiles;          ///< paths of their definitions
    std::vector<const dson::NodeInstance*> _cut; ///< the parents of which count for nothing
    /// Those whose instances mark dials.
    std::vector<std::pair<const dson::NodeInstance*, Place>> _withFavorites;
};

} // namespace openhost
