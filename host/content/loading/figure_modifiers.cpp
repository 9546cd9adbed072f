// Which morphs, controls and aliases a figure gets, and which it lacks.
// SPDX-License-Identifier: MIT

#include "figure_modifiers.h"

#include "app/current_attendant.h"
#include "base/counted.h"
#include "definition_morphs.h"
#include "dzmorph.h"
#include "dzobject.h"
#include "load_report.h"
#include "loading/channel_properties.h"

#include <utility>

#include <fmt/format.h>

namespace openhost {

namespace {

dson::Uri UriOf(const std::string& decodedPath, const std::string& id)
{
    dson::Uri uri;
    uri.path = decodedPath;
    uri.id = id;
    return uri;
}

/// Calls visit(text) for each address in a modifier's formulas.
template <class Modifier, class Visit>
void ForEachAddress(Modifier& modifier, const Visit& visit)
{
    for (auto& formula : modifier.formulas) {
        visit(formula.output);
        for (auto& operation : formula.operations)
            visit(operation.url);
    }
}

/// Files may be read again while a figure is put together, so the address says nothing.
std::string PlaceOf(const dson::Modifier& modifier, const dson::Document& file)
{
    const auto number = &modifier - file.modifiers.data();
    return number == 0 ? file.file.native() : file.file.native() + '\n' + std::to_string(number);
}

bool IsAlias(const dson::Modifier& modifier)
{
    return modifier.channel.type == "alias";
}

} // namespace

FigureModifiers::FigureModifiers(const FigureFile& figure, const FigureMesh& mesh, FigureNodes& nodes,
                                 FigureDials& dials, PendingFormulas& formulas)
    : _figure(figure), _mesh(mesh), _nodes(nodes), _dials(dials), _formulas(formulas),
      _effects(figure, nodes, dials)
{
}

void FigureModifiers::addThoseOf(const std::shared_ptr<const dson::Document>& file, const std::string& path)
{
    for (const dson::Modifier& modifier : file->modifiers)
        addIfOurs(modifier, file, path);
}

void FigureModifiers::addThoseOnDisk(AssetLibrary& library)
{
    _library = &library;
    std::vector<std::filesystem::path> duplicates;
    std::vector<std::string> files;
    for (const std::string& folder : _figure.morphFolders())
        for (std::string& file : library.paths().filesBelow(folder, ".dsf", &duplicates))
            files.push_back(std::move(file));
    tellDuplicates(duplicates, files);
    _added.reserve(_added.size() + files.size());
    _dials.expectMorphs(files.size());
    auto documents = library.readAll(files);
    std::string folder, relativeFolder;
    for (std::size_t i = 0; i < files.size(); ++i) {
        CurrentAttendant().beforeReading();
        const std::size_t slash = files[i].rfind('/');
        if (files[i].compare(0, slash, folder) != 0) {
            folder = files[i].substr(0, slash);
            relativeFolder = library.paths().relativePath(folder);
        }
        const std::string path = relativeFolder + files[i].substr(slash);
        // Let go of at once: there may be a hundred thousand.
        if (const auto document = std::exchange(documents[i], nullptr))
            addThoseOf(document, path);
        else
            _dials.loseFile(path);
    }
}

void FigureModifiers::tellDuplicates(const std::vector<std::filesystem::path>& leftOut,
                                     const std::vector<std::string>& files) const
{
    if (leftOut.empty())
        return;
    std::unordered_set<std::string> places;
    for (const std::string& file : files)
        places.insert(FoldCase(file));
    std::vector<std::string> inOtherCase, elsewhere;
    for (const std::filesystem::path& file : leftOut)
        (places.count(FoldCase(file.native())) ? inOtherCase : elsewhere).push_back(file.string());
    if (!elsewhere.empty())
        _figure.warn(base::Counted(elsewhere.size(), "morph file is", "morph files are") +
                     " in more than one content library; the first is used instead of " + elsewhere.front() +
                     (elsewhere.size() > 1 ? ", and so on" : ""));
    if (!inOtherCase.empty())
        _figure.warn(
            base::Counted(inOtherCase.size(),
                          "morph file differs in case alone from another beside it and is left out",
                          "morph files differ in case alone from others beside them and are left out") +
            Examples({inOtherCase.front()}));
}

void FigureModifiers::addIfOurs(const dson::Modifier& modifier,
                                const std::shared_ptr<const dson::Document>& file, const std::string& path)
{
    const dson::Uri parent = dson::ParseUri(modifier.parent);
    if (_figure.isOfSharedFigure(parent.path))
        _nodes.addId(parent.id, _nodes.root()); // formulas call the root as its own figure does
    if (isOurs(modifier, parent, *file))
        add(modifier, file, path);
    else if (file != _figure.definition() && _added.insert(PlaceOf(modifier, *file)).second)
        _forOtherFigures.add(file->file.string());
}

bool FigureModifiers::isOurs(const dson::Modifier& modifier, const dson::Uri& parent,
                             const dson::Document& file) const
{
    const bool isPart = parent.id == _mesh.geometryId() || _nodes.find(parent.id);
    // Presets may lie anywhere, so one that is named as a parent says nothing.
    const bool namesFile = !parent.path.empty() && !IsPresetFile(parent.path);
    if (namesFile && _figure.isOfSharedFigure(parent.path))
        return isPart || !modifier.morph || _mesh.fits(*modifier.morph);
    if (namesFile && !_figure.isAt(parent.path))
        return false;
    // A file with definitions of its own may hold several figures of one size.
    const bool hasRightSize = &file != _figure.definition().get() && modifier.morph &&
                              modifier.morph->vertexCount == _mesh.vertexCount();
    return isPart || hasRightSize;
}

void FigureModifiers::add(const dson::Modifier& modifier, const std::shared_ptr<const dson::Document>& file,
                          const std::string& path)
{
    if (modifier.name.empty() || !_added.insert(PlaceOf(modifier, *file)).second)
        return;
    // An effect has no name among the dials.
    const bool isTaken = !IsAlias(modifier) && !modifier.effect && _dials.isNameTaken(modifier);
    if (isTaken && isDefined(modifier, path))
        return;
    if (!make(modifier, isTaken ? _dials.freeName(modifier) : modifier.name, *file, path))
        return;
    if (isTaken)
        _ofEqualNames.add(file->file.string());
    const auto owner = unmistaken(modifier, isTaken, file, path);
    for (const dson::Formula& formula : owner == file ? modifier.formulas : owner->modifiers.front().formulas)
        _formulas.add(formula, owner);
}

std::shared_ptr<const dson::Document>
FigureModifiers::unmistaken(const dson::Modifier& modifier, bool isTaken,
                            const std::shared_ptr<const dson::Document>& file, const std::string& path) const
{
    const DzNode& owner = _dials.ownerOf(modifier);
    const auto isMistakable = [&](const std::string& text) {
        const dson::Uri uri = dson::ParseUri(text);
        if (!uri.path.empty() || (uri.id != modifier.id && uri.id != modifier.name))
            return false;
        // A node's own dial comes before those of others, but for what has been given another name.
        const DzNode* const node = _nodes.find(uri.node);
        return isTaken ? !node || node == &owner : !node && &owner != &_nodes.root();
    };
    bool isAny = false;
    ForEachAddress(modifier, [&](const std::string& text) { isAny = isAny || isMistakable(text); });
    if (!isAny)
        return file;
    auto copy = std::make_shared<dson::Document>();
    copy->file = file->file;
    copy->modifiers.push_back(modifier);
    ForEachAddress(copy->modifiers.front(), [&](std::string& text) {
        if (const std::size_t mark = text.find('#'); mark != text.npos && isMistakable(text))
            text.insert(mark, dson::EncodePath(path));
    });
    return copy;
}

/// The figure's own shapes stand for those of the figure that it shares others with; of equal ids in a file
/// the first counts.
bool FigureModifiers::isDefined(const dson::Modifier& modifier, const std::string& path) const
{
    return _figure.isOfSharedFigure(dson::ParseUri(modifier.parent).path) ||
           _dials.index().has(path, modifier.id);
}

bool FigureModifiers::make(const dson::Modifier& modifier, const std::string& name,
                           const dson::Document& file, const std::string& path)
{
    if (IsAlias(modifier)) {
        _dials.addAlias(modifier, file, path);
        return true;
    }
    if (modifier.effect)
        return _effects.add(modifier, file, path);
    if (!modifier.hasChannel && !modifier.morph)
        return true; // its formulas are all that it is
    if (modifier.morph && _nodes.root().getObject())
        return addMorph(modifier, name, file, path);
    const bool isMade = _dials.addControl(modifier, name, file, path);
    noteChannel(modifier, file, isMade);
    return isMade;
}

void FigureModifiers::noteChannel(const dson::Modifier& modifier, const dson::Document& file, bool isMade)
{
    const std::string example = file.file.string();
    if (!isMade)
        _withoutNumbers.add(example);
    else if (!IsOfKnownType(modifier.channel))
        _ofUnknownTypes.add(example);
    if (isMade && HasLimitsBeyondFloat(modifier.channel))
        _beyondLimits.add(example);
}

void FigureModifiers::applyEffect(const dson::ModifierInstance& instance, const std::string& path)
{
    _effects.apply(instance, path);
}

DzModifier* FigureModifiers::findEffect(const dson::Uri& url) const
{
    return _effects.find(url, url.path);
}

bool FigureModifiers::addMorph(const dson::Modifier& modifier, const std::string& name,
                               const dson::Document& file, const std::string& path)
{
    if (!_mesh.fits(*modifier.morph)) {
        loseForItsMesh(modifier, file, path);
        return false;
    }
    std::unique_ptr<DzMorph> made = MakeMorph(modifier, name, file, path, _mesh.topology());
    if (_nodes.root().getObject()->addModifier(made.get()) != DZ_NO_ERROR)
        return false;
    _dials.addOfMorph(*made.release(), modifier, file, path);
    noteChannel(modifier, file, true);
    return true;
}

void FigureModifiers::loseForItsMesh(const dson::Modifier& modifier, const dson::Document& file,
                                     const std::string& path)
{
    _forOtherMeshes.add(file.file.string());
    _dials.lose(modifier, path);
    _lost.add({UriOf(path, modifier.id), modifier.name,
               base::Diagnostic{base::Severity::Warning, file.file.string(), modifier.name,
                                fmt::format("is for a mesh of {} vertices instead of {}",
                                            modifier.morph->vertexCount, _mesh.vertexCount())},
               modifier.channel});
}

void FigureModifiers::lose(const dson::Uri& uri, const std::optional<base::Diagnostic>& why, double value)
{
    LostShape* shape = _lost.find(uri);
    if (!shape && why)
        shape = &_lost.add({uri, uri.id, *why});
    if (shape)
        shape->set(value);
}

void FigureModifiers::driveLost(const dson::Formula& formula, const PropertyResolver& resolve)
{
    const dson::Uri output = dson::ParseUri(formula.output);
    if (output.property.compare(0, 5, "value") != 0)
        return;
    LostShape* shape = _lost.find(output);
    if (!shape && _library && _figure.isHome(output.path))
        if (const auto why = _library->whyMissing(output, _figure.definition()->file))
            shape = &_lost.add({output, output.id, *why});
    if (shape)
        shape->drive(formula, resolve);
}

void FigureModifiers::attachLost()
{
    if (!_lost.empty())
        LostShapes::Attach(_nodes.root(), std::move(_lost));
}

void FigureModifiers::reportOmissions()
{
    const auto report = [this](Omission& omission, const char* one, const char* many) {
        if (omission.count > 0)
            _figure.warn(base::Counted(omission.count, one, many) + Examples({omission.example}));
        omission = {};
    };
    report(_forOtherMeshes, "morph is for a mesh of another size and is left out",
           "morphs are for a mesh of another size and are left out");
    report(_forOtherFigures, "morph belongs to another figure and is left out",
           "morphs belong to other figures and are left out");
    report(_ofUnknownTypes, "morph has a channel of an unknown type and is shown as a number",
           "morphs have channels of unknown types and are shown as numbers");
    report(_withoutNumbers, "morph has a channel that holds no number and is left out",
           "morphs have channels that hold no number and are left out");
    report(_beyondLimits, "morph has limits beyond single precision and gets the nearest",
           "morphs have limits beyond single precision and get the nearest");
    report(_ofEqualNames, "morph has a name that is taken and gets another",
           "morphs have names that are taken and get others");
    if (const std::vector<std::string>& aliases = _dials.renamedAliases(); !aliases.empty())
        _figure.note(base::Counted(aliases.size(), "alias has the name of a dial beside it and gets another",
                                   "aliases have the names of dials beside them and get others") +
                     Examples(aliases));
    if (const std::vector<std::string>& cut = _dials.cutPaths(); !cut.empty())
        _figure.warn(TellCutPaths(cut));
    _effects.report();
}

} // namespace openhost
