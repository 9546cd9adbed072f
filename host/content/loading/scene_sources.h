// Where the references of a file that is being loaded lead.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/diagnostic.h"
#include "definition_tree.h"
#include "dson/reader.h"
#include "dson/uri.h"
#include "figure_assembly.h"
#include "file_definitions.h"
#include "library/asset_library.h"
#include "load_report.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>

namespace openhost {

/// The file and those that it names. What is in no content library is told to the report.
class SceneSources {
public:
    SceneSources(AssetLibrary& library, std::shared_ptr<const dson::Document> document, LoadReport& report);

    const dson::Document& document() const { return *_document; }
    const std::shared_ptr<const dson::Document>& sharedDocument() const { return _document; }

    /// Path of a URL's file below its content directory; this file's own for "#id".
    std::string pathOf(const dson::Uri& uri) const;
    /// The URL of the definition, with this file's path where it has none.
    dson::Uri uriOf(const dson::ModifierInstance& instance) const;
    bool isThisFile(const dson::Uri& url) const;
    /// Such a shape is meant, also where the figure has one of its name.
    bool isDefinedHere(const dson::Uri& url) const;
    /// This file for a URL without a path; null for one that is not there.
    std::shared_ptr<const dson::Document> documentOf(const dson::Uri& uri);
    /// Of a file that the URL of an instance names; null likewise.
    std::shared_ptr<const DefinitionTree> treeOf(const dson::Uri& uri);
    std::filesystem::path find(const std::string& path) const; ///< empty where it is not there
    std::optional<base::Diagnostic> whyMissing(const dson::Uri& url);
    /// Those of the figure's own folders.
    void addMorphs(FigureAssembly& assembly);

private:
    AssetLibrary& _library;
    std::shared_ptr<const dson::Document> _document;
    FileDefinitions _definitions;
    LoadReport& _report;
    std::unordered_map<const dson::Document*, std::shared_ptr<const DefinitionTree>> _trees;
};

} // namespace openhost
