// Putting one figure together from its files.
// SPDX-License-Identifier: MIT

#include "figure_assembly.h"

#include "base/counted.h"
#include "dznumericproperty.h"
#include "figure_dials.h"
#include "figure_file.h"
#include "figure_mesh.h"
#include "figure_modifiers.h"
#include "figure_nodes.h"
#include "load_report.h"
#include "loading/channel_properties.h"
#include "pending_formulas.h"
#include "scene/changes_together.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>

namespace openhost {

namespace {

/// The modifiers of the file that was asked for last: a scene may ask its own for each of a hundred thousand.
class LastAsked {
public:
    /// An id counts before a name; where there is but one modifier, it is meant anyway.
    const dson::Modifier* find(const std::shared_ptr<const dson::Document>& file, const std::string& idOrName)
    {
        if (file != _file)
            enter(file);
        for (const ByText* const all : {&_byId, &_byName})
            if (const auto found = all->find(idOrName); found != all->end())
                return found->second;
        return file->modifiers.size() == 1 ? &file->modifiers.front() : nullptr;
    }

private:
    using ByText = std::unordered_map<std::string_view, const dson::Modifier*>;

    void enter(const std::shared_ptr<const dson::Document>& file)
    {
        _file = file;
        _byId.clear();
        _byName.clear();
        for (const dson::Modifier& modifier : file->modifiers) {
            _byId.emplace(modifier.id, &modifier);
            _byName.emplace(modifier.name, &modifier);
        }
    }

    std::shared_ptr<const dson::Document> _file;
    ByText _byId, _byName; ///< of equal ones the first
};

} // namespace

/// The parts in the order in which they are made; each knows those before it only.
struct FigureAssembly::Impl {
    Impl(std::shared_ptr<const DefinitionTree> definition, std::string uriPath, const std::string& nodeId,
         const std::optional<std::string>& geometryId)
        : file(std::move(definition), std::move(uriPath)), nodes(file, nodeId, formulas),
          mesh(file, nodes, geometryId), dials(nodes), modifiers(file, mesh, nodes, dials, formulas)
    {
        modifiers.addThoseOf(file.definition(), file.path());
    }

    /// Here or elsewhere; for an alias what it stands for.
    /// @param asking  an alias that looks for its target
    DzNumericProperty* resolveForLink(const std::string& uri, const PropertyResolver& elsewhere,
                                      const DzNumericProperty* asking = nullptr) const
    {
        DzNumericProperty* property = dials.resolve(uri, asking);
        if (!property)
            property = elsewhere(uri);
        return property ? &AliasEnd(*property) : nullptr;
    }

    void warn(const std::vector<std::string>& which, const char* one, const char* many) const
    {
        if (!which.empty())
            file.warn(base::Counted(which.size(), one, many) + Examples(which));
    }

    void report(const FigureDials::HiddenAliases& hidden) const
    {
        warn(hidden.missing, "alias names what is not installed and is hidden",
             "aliases name what is not installed and are hidden");
        warn(hidden.circular, "alias stands for itself in the end and is hidden",
             "aliases stand for themselves in the end and are hidden");
        warn(hidden.withoutTarget, "alias names no target and is hidden",
             "aliases name no targets and are hidden");
        warn(hidden.ofHidden, "alias stands for one that is hidden and is hidden, too",
             "aliases stand for others that are hidden and are hidden, too");
    }

    void report(const PendingFormulas::LeftOut& formulasLeftOut) const
    {
        warn(formulasLeftOut.missing, "formula names what is not installed and is left out",
             "formulas name what is not installed and are left out");
        warn(formulasLeftOut.notUnderstood, "formula has no result or drives itself and is left out",
             "formulas have no results or drive themselves and are left out");
    }

    FigureFile file;
    PendingFormulas formulas;
    FigureNodes nodes;
    FigureMesh mesh;
    FigureDials dials;
    FigureModifiers modifiers;
    LastAsked lastAsked;
};

FigureAssembly::FigureAssembly(std::shared_ptr<const DefinitionTree> definition, std::string uriPath,
                               const std::string& nodeId, std::optional<std::string> geometryId)
    : _impl(std::make_unique<Impl>(std::move(definition), std::move(uriPath), nodeId, geometryId))
{
}

FigureAssembly::~FigureAssembly() = default;
FigureAssembly::FigureAssembly(FigureAssembly&&) noexcept = default;

void FigureAssembly::addMorphsOnDisk(AssetLibrary& library)
{
    _impl->modifiers.addThoseOnDisk(library);
}

bool FigureAssembly::addModifier(std::shared_ptr<const dson::Document> file, const std::string& uriPath,
                                 const std::string& idOrName)
{
    const dson::Modifier* const modifier = _impl->lastAsked.find(file, idOrName);
    if (modifier)
        _impl->modifiers.add(*modifier, file, uriPath);
    return modifier != nullptr;
}

void FigureAssembly::applyEffect(const dson::ModifierInstance& instance, const std::string& uriPath)
{
    _impl->modifiers.applyEffect(instance, uriPath);
}

DzModifier* FigureAssembly::findEffect(const dson::Uri& uri) const
{
    return _impl->modifiers.findEffect(uri);
}

void FigureAssembly::addFormulas(const std::vector<dson::Formula>& formulas,
                                 const std::shared_ptr<const dson::Document>& owner)
{
    for (const dson::Formula& formula : formulas)
        _impl->formulas.addOnce(formula, owner);
}

void FigureAssembly::addNodeId(const std::string& id, DzNode& node)
{
    _impl->nodes.addId(id, node);
}

std::set<std::string> FigureAssembly::duplicateOutputs() const
{
    return _impl->formulas.duplicateOutputs();
}

void FigureAssembly::loseShape(const dson::Uri& uri, const std::optional<base::Diagnostic>& why, double value)
{
    _impl->modifiers.lose(uri, why, value);
}

void FigureAssembly::connectFormulas(const PropertyResolver& elsewhere)
{
    const PropertyResolver resolve = [&](const std::string& uri) {
        return _impl->resolveForLink(uri, elsewhere);
    };
    std::optional<ChangesTogether> together(std::in_place);
    const FigureDials::HiddenAliases hidden =
        _impl->dials.connectAliases([&](const std::string& uri, const DzNumericProperty& alias) {
            return _impl->resolveForLink(uri, elsewhere, &alias);
        });
    const PendingFormulas::LeftOut leftOut = _impl->formulas.connect(
        resolve, [&](const dson::Formula& formula) { _impl->modifiers.driveLost(formula, resolve); });
    together.reset();
    _impl->modifiers.reportOmissions();
    _impl->nodes.reportOddities();
    const std::set<std::string>& spellings = _impl->dials.index().otherSpellings();
    _impl->warn({spellings.begin(), spellings.end()},
                "name of a dial differs from the figure's in letter case alone and is taken for it",
                "names of dials differ from the figure's in letter case alone and are taken for them");
    _impl->report(hidden);
    _impl->report(leftOut);
    _impl->modifiers.attachLost();
}

std::unique_ptr<DzNode> FigureAssembly::takeRoot()
{
    return _impl->nodes.takeRoot();
}

DzNode& FigureAssembly::root() const
{
    return _impl->nodes.root();
}

const std::string& FigureAssembly::geometryId() const
{
    return _impl->mesh.geometryId();
}

DzNode* FigureAssembly::findNode(const std::string& idOrName) const
{
    return _impl->nodes.find(idOrName);
}

bool FigureAssembly::isAlias(const DzNumericProperty& property) const
{
    return _impl->dials.isAlias(&property);
}

bool FigureAssembly::hasDialOf(const dson::Uri& uri) const
{
    return _impl->dials.index().has(uri.path, uri.id);
}

DzNumericProperty* FigureAssembly::findDial(const dson::Uri& uri, const DzNode* node) const
{
    return _impl->dials.find(uri, node);
}

DzNumericProperty* FigureAssembly::findDial(const std::string& nameOrId, const DzNode& node) const
{
    return _impl->dials.index().find(nameOrId, {&node, nullptr});
}

bool FigureAssembly::hasSkin(const dson::Uri& uri) const
{
    const std::vector<dson::SkinDefinition>& skins = _impl->file.definition()->skins;
    return std::any_of(skins.begin(), skins.end(),
                       [&uri](const dson::SkinDefinition& skin) { return skin.binding.id == uri.id; }) &&
           isNamedBy(uri.path);
}

bool FigureAssembly::isNamedBy(const std::string& uriPath) const
{
    return _impl->file.isAt(uriPath);
}

} // namespace openhost
