// Morphs of the host from the definitions of a file.
// SPDX-License-Identifier: MIT

#include "definition_morphs.h"

#include "app/texts.h"
#include "base/counted.h"
#include "base/errors.h"
#include "definition_nodes.h"
#include "dson/dhdm.h"
#include "dson/file_text.h"
#include "dson/uri.h"
#include "dzapp.h"
#include "dzcontentmgr.h"
#include "dzmorph.h"
#include "dzmorphdeltas.h"
#include "dzpresentation.h"
#include "figure/deltas_access.h"
#include "library/asset_origin.h"
#include "openhost/diagnostics.h"

#include <algorithm>

#include <fmt/format.h>

namespace openhost {

namespace {

/// Without the deltas of vertices that the mesh does not have: files may leave their vertex count open.
/// @param lost  receives what is left out
geometry::SparseDeltas WithinMesh(geometry::SparseDeltas deltas, int vertexCount, const std::string& file,
                                  const std::string& id, base::Diagnostics& lost)
{
    const auto end = std::lower_bound(deltas.vertices.begin(), deltas.vertices.end(),
                                      static_cast<std::uint32_t>(vertexCount));
    const auto kept = static_cast<std::size_t>(end - deltas.vertices.begin());
    if (kept < deltas.size())
        lost.push_back(
            {base::Severity::Warning, file, id,
             base::Counted(deltas.size() - kept,
                           "delta is of a vertex that the figure does not have and is left out",
                           "deltas are of vertices that the figure does not have and are left out")});
    deltas.vertices.resize(kept);
    deltas.deltas.resize(kept);
    return deltas;
}

/// The companion file of a morph: where the morph says, otherwise beside the morph's own file.
std::filesystem::path DetailFile(const std::string& url, const std::filesystem::path& morphFile)
{
    const std::string path = dson::ParseUri(url).path;
    std::filesystem::path file = dzApp->getContentMgr()->getAbsolutePath(ToQ(path), true).toStdString();
    if (!file.empty())
        return file;
    file = std::filesystem::path(morphFile).replace_extension(".dhdm");
    std::error_code error;
    if (!std::filesystem::exists(file, error) && !error)
        throw base::FormatError("cannot read {}: no content directory has it", path);
    return file;
}

geometry::MultiresDetail ReadDetail(const std::filesystem::path& file, const std::string& checksum,
                                    const geometry::Topology& cage, base::Diagnostics& met)
{
    const std::string bytes = dson::ReadBytes(file);
    if (!dson::FitsChecksum(bytes, checksum))
        met.push_back({base::Severity::Warning, file.string(), {}, dson::otherDetail});
    return dson::DecodeDhdm(bytes, cage, file.string());
}

void SetDeltas(DzMorphDeltas& deltas, const dson::Modifier& modifier, const dson::Document& file,
               int baseCount)
{
    if (file.hasDeltas) {
        base::Diagnostics lost;
        geometry::SparseDeltas kept =
            WithinMesh(modifier.morph->deltas, baseCount, file.file.string(), modifier.id, lost);
        Report(lost);
        DeltasAccess::assign(deltas, std::move(kept), std::move(lost));
        return;
    }
    // As texts: a path takes many times as much, and there may be a hundred thousand.
    DeltasAccess::setLoader(
        deltas, [path = file.file.string(), id = modifier.id, baseCount](base::Diagnostics& lost) {
            base::Diagnostics met;
            geometry::SparseDeltas all = dson::ReadDeltas(path, id, &met);
            Report(met);
            return WithinMesh(std::move(all), baseCount, path, id, lost);
        });
}

} // namespace

std::unique_ptr<DzMorph> MakeMorph(const dson::Modifier& modifier, const std::string& name,
                                   const dson::Document& file, const std::string& filePath,
                                   const std::shared_ptr<const geometry::Topology>& cage)
{
    const auto baseCount = static_cast<int>(cage->vertexCount);
    const DzUri uri = AssetUri(filePath, modifier.id);
    auto* const deltas = new DzMorphDeltas;
    deltas->setTargetVertexCount(baseCount);
    deltas->setUri(uri);
    SetDeltas(*deltas, modifier, file, baseCount);
    if (!modifier.morph->hdUrl.empty())
        DeltasAccess::setDetailLoader(*deltas, [cage, url = modifier.morph->hdUrl,
                                                checksum = modifier.morph->hdChecksum,
                                                path = file.file.string()](base::Diagnostics& met) {
            return ReadDetail(DetailFile(url, path), checksum, *cage, met);
        });
    auto morph = std::make_unique<DzMorph>(deltas);
    morph->setName(ToQ(name));
    morph->setAssetUri(uri);
    morph->setPresentation(MakePresentation(modifier.presentationType).release());
    return morph;
}

} // namespace openhost
