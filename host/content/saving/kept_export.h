// Parts of loaded files that nothing in the scene stands for, in the file to be written.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/scene.h"
#include "loading/kept_parts.h"

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

class DzNode;
class QObject;

namespace openhost {

class FileIds;

/// Collects what the nodes of the file have of it while they are described, and adds it when all ids are
/// known: each part once, with an id of its own, and referring to what it has always referred to.
class KeptExport {
public:
    /// @param type  of the file to be written: what loaded files hold beside their nodes goes into a scene,
    /// or
    ///              into a file of their own kind
    KeptExport(FileIds& ids, std::string type) : _ids(ids), _type(std::move(type)) {}

    /// @param index    of the node in the file's scene
    /// @param isWhole  the file defines it, too
    void enterNode(const DzNode& node, std::size_t index, const std::string& id, bool isWhole);
    /// @param index  of the definition in the file
    void enterDefinition(const DzNode& node, std::size_t index);
    void enterGeometryDefinition(const DzNode& node, std::size_t index);
    /// @param owner  what the scene has of the modifier or the skin
    void enterModifierDefinition(const QObject& owner, std::size_t index);
    void enterSkinDefinition(const QObject& owner, std::size_t index);
    /// Those that it does not show get ids of their own.
    /// @param id  of the one that it shows; empty for none
    void enterGeometry(const DzNode& node, const std::string& id);
    /// @param index  of the modifier in the file's scene
    void enterModifier(const QObject& owner, std::size_t index, const std::string& id);

    void addTo(dson::SceneAsset& asset);

private:
    /// What of one load gets into the file.
    struct Source {
        std::shared_ptr<const KeptLoad> load;
        std::map<std::string, std::string> written; ///< new ids by those of the loaded file
        std::vector<std::string> texts;             ///< of what may refer to its parts

        void enter(const std::string& old, const std::string& id);
        /// It is a node or a geometry that is not in the file to be written.
        bool lacks(const std::string& id) const;
    };
    struct OfNode {
        const DzNode* node;
        const KeptNode* kept;
        std::size_t index;
        bool isWhole;
    };
    using Part = const dson::KeptPart*;
    struct Animation {
        std::string text;
        bool hasNewIds = false;
    };
    struct Chosen {
        std::vector<Part> materials, uvs;
        std::vector<Animation> animations;
    };
    struct OfModifier {
        const KeptModifier* kept;
        std::size_t index;
    };

    Source& sourceOf(const std::shared_ptr<const KeptLoad>& load);
    bool isOfFile(const Source& source) const;
    bool isWritten(const Source& source, const std::string& owner) const;
    /// @param without  ids of materials and UV sets that are not written
    bool isWrittenUrl(const Source& source, const std::string& url,
                      const std::set<std::string>& without) const;
    std::vector<Part> chooseOwned(const Source& source, const std::vector<dson::KeptPart>& parts,
                                  std::set<std::string>& without) const;
    /// As the file is to have it; nothing where what it moves is not in there or has been changed.
    Animation describe(const Source& source, const KeptAnimation& entry,
                       const std::set<std::string>& without);
    Chosen choose(const Source& source);
    void collectTexts(Source& source, const Chosen& chosen) const;
    void addWanted(Source& source, dson::KeptContent& all);
    void addDefinitions(Source& source, const std::set<std::string>& wanted,
                        const std::vector<dson::KeptPart>& parts, std::vector<dson::KeptPart>& all);
    void addInstances(Source& source, const std::vector<Part>& parts, std::vector<dson::KeptPart>& all);
    void addMembers(const Source& source, dson::KeptContent& all);
    void mergeInto(dson::KeptMembers& all, const dson::KeptMembers& kept, const Source& source);
    dson::KeptMembers rewritten(const dson::KeptMembers& kept, const Source& source) const;
    void addMissing(const Source& source, dson::SceneAsset& asset);
    void keepGeometry(const OfNode& node, const Source& source, dson::SceneGeometry& first) const;
    void addFurtherGeometries(const OfNode& node, const Source& source, dson::SceneNode& instance) const;
    void addToElements(dson::SceneAsset& asset);
    void addToDefinitions(dson::SceneAsset& asset);
    void enterDefinition(const QObject& owner, std::size_t index, std::vector<OfModifier>& all);
    void report() const;

    FileIds& _ids;
    std::string _type;
    std::vector<Source> _sources;
    std::map<const KeptLoad*, std::size_t> _bySource;
    std::vector<OfNode> _nodes;
    std::map<const DzNode*, std::vector<std::string>> _furtherGeometries; ///< new ids of each node's
    std::map<const DzNode*, std::string> _nodeIds;
    std::vector<OfModifier> _modifiers;
    std::vector<OfNode> _definitions, _geometryDefinitions;
    std::vector<OfModifier> _modifierDefinitions, _skinDefinitions;
    std::set<std::string> _ownUvSets;          ///< ids that the file's geometries have given to theirs
    std::map<std::string, std::string> _parts; ///< new ids by kind, id and text
    std::size_t _renamed = 0, _differing = 0, _stopped = 0, _remade = 0;
};

} // namespace openhost
