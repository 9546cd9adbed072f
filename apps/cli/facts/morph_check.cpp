// Reading all morphs of a figure, to find what cannot be used.
// SPDX-License-Identifier: MIT

#include "facts/morph_check.h"

#include "base/cancellation.h"
#include "base/counted.h"
#include "base/errors.h"
#include "base/file_failure.h"
#include "dson/dhdm.h"
#include "dson/file_text.h"
#include "dson/reader.h"
#include "dson/uri.h"
#include "figure_scene.h"

#include <algorithm>
#include <map>
#include <memory>
#include <mutex>
#include <optional>

#include <fmt/format.h>
#include <tbb/parallel_for.h>

namespace cli {

namespace fs = std::filesystem;

namespace {

/// Figures' files, each read once by whichever thread asks first.
class Figures {
public:
    explicit Figures(const ContentFiles& content) : _content(content) {}

    /// Null where it cannot be had: what is for it cannot be compared then.
    std::shared_ptr<const geometry::Topology> meshOf(const std::string& parentUri)
    {
        const dson::Uri parent = dson::ParseUri(parentUri);
        const std::lock_guard lock(_mutex);
        const auto [place, isNew] = _documents.try_emplace(parent.path);
        if (isNew)
            place->second = read(_content.find(parent.path));
        const dson::Geometry* const geometry = GeometryOf(place->second, parent.id);
        return geometry ? geometry->mesh.topology : nullptr;
    }

private:
    static dson::Document read(const fs::path& file)
    {
        try {
            return file.empty() ? dson::Document() : dson::ReadDocument(file, {false});
        } catch (const base::Error&) {
            return {};
        }
    }

    const ContentFiles& _content;
    std::mutex _mutex;
    std::map<std::string, dson::Document> _documents;
};

/// One morph file.
class FileSurvey {
public:
    FileSurvey(const fs::path& file, const ContentFiles& content, Figures& figures,
               const SurveyOptions& options)
        : _file(file), _content(content), _figures(figures), _options(options)
    {
    }

    MorphSurvey run()
    {
        try {
            read();
        } catch (const base::Error& error) {
            _survey.unusable.push_back({_file, ReasonOf(_file, error)});
        }
        return std::move(_survey);
    }

private:
    static std::string ReasonOf(const fs::path& file, const base::Error& error)
    {
        return base::FailureOfFile(base::Severity::Error, file.string(), error.what()).what;
    }

    void read()
    {
        dson::Document document = dson::ReadDocument(_file, {_options.checks});
        // A folder may hold figures as well.
        if (document.modifiers.empty() && (!document.nodes.empty() || !document.geometries.empty()))
            return;
        if (document.modifiers.empty())
            throw base::FormatError("defines no morph or controller");
        for (const dson::Modifier& modifier : document.modifiers) {
            const bool isAlias = modifier.channel.type == "alias";
            _survey.morphs.push_back({_file, modifier.name, modifier.channel.label, modifier.group,
                                      isAlias          ? "alias"
                                      : modifier.morph ? "morph"
                                                       : "controller",
                                      modifier.morph ? modifier.morph->hdUrl : std::string()});
            if (_options.checks && modifier.morph)
                check(modifier);
        }
        base::Diagnostics& told = _survey.diagnostics;
        told.insert(told.begin(), document.diagnostics.begin(), document.diagnostics.end());
        if (!_survey.unusable.empty())
            told.clear();
    }

    void check(const dson::Modifier& modifier)
    {
        const auto mesh = _figures.meshOf(modifier.parent);
        const dson::MorphData& morph = *modifier.morph;
        if (mesh && morph.vertexCount > 0 && morph.vertexCount != mesh->vertexCount)
            throw base::FormatError("is for a mesh of {} but the figure has {}",
                                    base::Counted(morph.vertexCount, "vertex", "vertices"),
                                    mesh->vertexCount);
        if (mesh)
            checkDeltas(modifier.id, morph.deltas.vertices, mesh->vertexCount);
        if (!morph.hdUrl.empty())
            checkDetail(morph, mesh.get());
    }

    /// Those of vertices that are not there are left out when the shape is worn.
    void checkDeltas(const std::string& id, const std::vector<std::uint32_t>& vertices,
                     std::size_t vertexCount)
    {
        if (vertices.empty() || vertices.back() < vertexCount)
            return;
        if (vertices.front() >= vertexCount)
            throw base::FormatError("moves vertex {} but the figure has {}", vertices.back(), vertexCount);
        const auto beyond = std::lower_bound(vertices.begin(), vertices.end(), vertexCount);
        _survey.diagnostics.push_back(
            {base::Severity::Warning, _file.string(), id,
             base::Counted(static_cast<std::size_t>(vertices.end() - beyond),
                           "delta is of a vertex that the figure does not have and is left out",
                           "deltas are of vertices that the figure does not have and are left out")});
    }

    /// The file where the morph says, else beside it.
    void checkDetail(const dson::MorphData& morph, const geometry::Topology* mesh)
    {
        fs::path file = _content.find(dson::ParseUri(morph.hdUrl).path);
        if (file.empty())
            file = fs::path(_file).replace_extension(".dhdm");
        try {
            const std::string bytes = dson::ReadBytes(file);
            if (!dson::FitsChecksum(bytes, morph.hdChecksum))
                _survey.diagnostics.push_back(
                    {base::Severity::Warning, file.string(), {}, dson::otherDetail});
            if (mesh)
                dson::DecodeDhdm(bytes, *mesh, file.string());
            else
                dson::DescribeDhdm(bytes, file.string());
        } catch (const base::Error& error) {
            _survey.unusable.push_back({file, ReasonOf(file, error)});
        }
    }

    const fs::path& _file;
    const ContentFiles& _content;
    Figures& _figures;
    const SurveyOptions& _options;
    MorphSurvey _survey;
};

template <class T>
void MoveBehind(std::vector<T>& all, std::vector<T>& more)
{
    all.insert(all.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
}

} // namespace

MorphSurvey SurveyMorphs(const std::vector<fs::path>& files, const ContentFiles& content,
                         const SurveyOptions& options)
{
    Figures figures(content);
    std::vector<MorphSurvey> surveys(files.size());
    tbb::parallel_for(std::size_t{0}, files.size(), [&](std::size_t i) {
        base::ThrowIfCancelled();
        surveys[i] = FileSurvey(files[i], content, figures, options).run();
    });
    MorphSurvey all;
    all.fileCount = files.size();
    for (MorphSurvey& survey : surveys) {
        MoveBehind(all.morphs, survey.morphs);
        MoveBehind(all.unusable, survey.unusable);
        MoveBehind(all.diagnostics, survey.diagnostics);
    }
    return all;
}

} // namespace cli
