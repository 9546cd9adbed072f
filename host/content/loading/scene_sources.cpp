// Where the references of a file that is being loaded lead.
// SPDX-License-Identifier: MIT

#include "scene_sources.h"

#include "base/errors.h"
#include "openhost/diagnostics.h"

#include <algorithm>

namespace openhost {

namespace {

/// Files that users save may be overwritten while the scene still needs the morphs in them.
std::shared_ptr<const dson::Document> WithOwnDeltas(std::shared_ptr<const dson::Document> document)
{
    const bool hasMorphs = std::any_of(document->modifiers.begin(), document->modifiers.end(),
                                       [](const dson::Modifier& modifier) { return bool(modifier.morph); });
    if (!hasMorphs)
        return document;
    auto whole = std::make_shared<const dson::Document>(dson::ReadDocument(document->file));
    for (const base::Diagnostic& met : whole->diagnostics) {
        const auto& told = document->diagnostics;
        if (std::find(told.begin(), told.end(), met) == told.end())
            Report(met);
    }
    return whole;
}

} // namespace

SceneSources::SceneSources(AssetLibrary& library, std::shared_ptr<const dson::Document> document,
                           LoadReport& report)
    : _library(library), _document(WithOwnDeltas(std::move(document))), _definitions(*_document),
      _report(report)
{
}

std::string SceneSources::pathOf(const dson::Uri& uri) const
{
    return uri.path.empty() ? _library.paths().relativePath(_document->file)
                            : _library.addressOf(uri.path, _document->file);
}

dson::Uri SceneSources::uriOf(const dson::ModifierInstance& instance) const
{
    dson::Uri url = dson::ParseUri(instance.url);
    url.path = pathOf(url);
    return url;
}

bool SceneSources::isThisFile(const dson::Uri& url) const
{
    return PathKey(url.path) == PathKey(pathOf(dson::Uri()));
}

bool SceneSources::isDefinedHere(const dson::Uri& url) const
{
    return isThisFile(url) && _definitions.hasModifier(url.id);
}

std::shared_ptr<const dson::Document> SceneSources::documentOf(const dson::Uri& uri)
{
    if (uri.path.empty())
        return _document;
    const std::filesystem::path file = find(uri.path);
    if (file.empty()) {
        _report.addMissing(uri.path);
        return nullptr;
    }
    return _library.read(file);
}

std::shared_ptr<const DefinitionTree> SceneSources::treeOf(const dson::Uri& uri)
{
    const std::shared_ptr<const dson::Document> document = documentOf(uri);
    if (!document)
        return nullptr;
    std::shared_ptr<const DefinitionTree>& tree = _trees[document.get()];
    if (!tree)
        tree = std::make_shared<DefinitionTree>(document);
    return tree;
}

std::filesystem::path SceneSources::find(const std::string& path) const
{
    return _library.find(path, _document->file);
}

std::optional<base::Diagnostic> SceneSources::whyMissing(const dson::Uri& url)
{
    return _library.whyMissing(url, _document->file);
}

void SceneSources::addMorphs(FigureAssembly& assembly)
{
    assembly.addMorphsOnDisk(_library);
}

} // namespace openhost
