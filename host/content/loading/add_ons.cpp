// What a character's file wants to be loaded with it.
// SPDX-License-Identifier: MIT

#include "add_ons.h"

#include "base/counted.h"
#include "base/errors.h"
#include "base/file_failure.h"
#include "dson/uri.h"
#include "dzscene.h"
#include "dzskeleton.h"
#include "figure/fitting.h"
#include "load_report.h"
#include "openhost/diagnostics.h"
#include "preset_loader.h"
#include "scene_figures.h"

#include <set>

#include <fmt/format.h>

namespace openhost {

namespace {

/// A figure's own file has no scene; this one has the figure in it.
std::shared_ptr<const dson::Document> SceneWithFigure(const dson::Document& definition,
                                                      const std::string& path)
{
    auto scene = std::make_shared<dson::Document>();
    scene->file = definition.file;
    for (const dson::Node& node : definition.nodes) {
        if (!node.parent.empty())
            continue;
        dson::NodeInstance instance;
        instance.id = node.id;
        instance.url = dson::MakeUri(path, node.id);
        instance.name = node.name;
        instance.label = node.label;
        scene->nodeInstances.push_back(std::move(instance));
    }
    return scene;
}

class AddOns {
public:
    AddOns(AssetLibrary& library, DzSkeleton& figure) : _library(library), _figure(figure) {}

    void loadThoseOf(const dson::Document& document)
    {
        _known.insert(document.file);
        for (const std::string& path : document.addOns) {
            const std::filesystem::path file = _library.find(path, document.file);
            if (file.empty())
                _missing.push_back(path);
            else if (_known.insert(file).second)
                load(file);
        }
    }

    void tell(const std::string& file) const
    {
        if (!_loaded.empty())
            Report({base::Severity::Note,
                    file,
                    {},
                    fmt::format("{} loaded with it{}", base::Counted(_loaded.size(), "file is", "files are"),
                                Examples(_loaded))});
        if (!_missing.empty())
            Report({base::Severity::Warning,
                    file,
                    {},
                    fmt::format("{} to be loaded with it and in no content library{}",
                                base::Counted(_missing.size(), "file is", "files are"), Examples(_missing))});
    }

private:
    void load(const std::filesystem::path& file)
    {
        try {
            const std::shared_ptr<const dson::Document> document = _library.read(file);
            enter(document);
            _loaded.push_back(file.filename().string());
            loadThoseOf(*document);
        } catch (const base::Error& error) {
            Report(base::FailureOfFile(base::Severity::Warning, file.string(), error.what()));
        }
    }

    void enter(const std::shared_ptr<const dson::Document>& document)
    {
        // It may be there for its own add-ons alone.
        if (document->nodeInstances.empty() && document->nodes.empty() && !document->addOns.empty())
            return;
        const bool isFigureFile = document->nodeInstances.empty() && !document->nodes.empty();
        if (!isFigureFile && IsPreset(*document)) {
            dzScene->selectAllNodes(false);
            dzScene->setPrimarySelection(&_figure);
            LoadPreset(*document);
            return;
        }
        SceneFigures figures(
            _library, isFigureFile ? SceneWithFigure(*document, pathOf(*document)) : document, &_figure);
        figures.prepare();
        if (figures.isEmpty())
            throw base::FormatError("{}: none of its figures could be loaded", document->file.string());
        for (DzNode* const top : figures.enter())
            if (auto* const part = qobject_cast<DzSkeleton*>(top))
                FitTo(*part, _figure);
    }

    std::string pathOf(const dson::Document& document) const
    {
        return _library.paths().relativePath(document.file);
    }

    AssetLibrary& _library;
    DzSkeleton& _figure;
    std::set<std::filesystem::path> _known;
    std::vector<std::string> _loaded, _missing;
};

} // namespace

void LoadAddOns(AssetLibrary& library, const dson::Document& document, const std::vector<DzNode*>& roots)
{
    if (document.addOns.empty())
        return;
    DzSkeleton* figure = nullptr;
    for (DzNode* const root : roots)
        figure = figure ? figure : qobject_cast<DzSkeleton*>(root);
    if (!figure) {
        Report({base::Severity::Warning,
                document.file.string(),
                {},
                "files are to be loaded with it, and it has no figure for them"});
        return;
    }
    AddOns addOns(library, *figure);
    addOns.loadThoseOf(document);
    addOns.tell(document.file.string());
}

} // namespace openhost
