// The host's OBJ exporter.
// SPDX-License-Identifier: MIT

#include "obj_exporter.h"

#include "app/current_attendant.h"
#include "app/guard.h"
#include "base/atomic_file.h"
#include "base/errors.h"
#include "dzfacetmesh.h"
#include "dzfacetshape.h"
#include "dzfileiosettings.h"
#include "dznode.h"
#include "dzobject.h"
#include "figure/mesh_access.h"
#include "geometry/mesh_cleanup.h"
#include "geometry/normals.h"
#include "obj_memory.h"
#include "obj_option_rows.h"
#include "obj_options.h"
#include "obj_selection.h"
#include "openhost/shapes.h"

#include <cmath>
#include <deque>
#include <set>

#include <QFileInfo>

namespace {

using openhost::MeshAccess;

/// What the parts to write point into.
struct ExportData {
    std::shared_ptr<const geometry::Topology> firstTopology; ///< of the first part; null without any
    std::deque<geometry::PolygonMesh> cleaned;
    std::deque<std::vector<geometry::Vec3f>> normals;
    std::deque<geometry::TexCoords> texCoords;
    std::vector<geometry::ObjPart> parts;
};

/// Every coordinate in the first tile, 0 to 1.
geometry::TexCoords InFirstTile(geometry::TexCoords texCoords)
{
    for (geometry::TexCoords::Uv& uv : texCoords.coordinates)
        uv = {uv.u - std::floor(uv.u), uv.v - std::floor(uv.v)};
    return texCoords;
}

/// Null where there are none, and where the part's corners are others than the mesh's.
const geometry::TexCoords* TexCoordsOf(ExportData& data, const DzNode& node,
                                       const geometry::Topology* topology, bool collapseTiles)
{
    if (topology != openhost::WorldMesh(node).topology)
        return nullptr;
    geometry::TexCoords found = openhost::WorldTexCoords(node);
    if (found.cornerIndices.empty())
        return nullptr;
    data.texCoords.push_back(collapseTiles ? InFirstTile(std::move(found)) : std::move(found));
    return &data.texCoords.back();
}

/// Lines belong to the cage's own vertex numbers.
void AddExtras(ExportData& data, const DzNode& node, bool withTexCoords, bool collapseTiles,
               geometry::ObjPart& part)
{
    const auto* const shape = qobject_cast<DzFacetShape*>(node.getObject()->getCurrentShape());
    const DzFacetMesh* const cage = shape ? shape->getFacetMesh() : nullptr;
    const openhost::MeshExtras* const extras = cage ? MeshAccess::extras(*cage) : nullptr;
    if (!extras)
        return;
    if (withTexCoords)
        part.texCoords = TexCoordsOf(data, node, part.mesh.topology, collapseTiles);
    if (part.mesh.topology == MeshAccess::mesh(*cage).topology.get())
        part.lines = extras->lines;
}

void AddPart(ExportData& data, const DzNode& node, const DzFileIOSettings& options, bool withTexCoords)
{
    const DzVertexMesh* const evaluated = node.getObject()->getCachedGeom();
    if (!evaluated)
        return;
    const auto isSet = [&options](const char* key) { return options.getBoolValue(QLatin1String(key)); };
    geometry::ObjPart part;
    const geometry::PolygonMesh* mesh = &MeshAccess::mesh(*evaluated);
    const geometry::CleanUpOptions cleaning{isSet("WeldSeams"), isSet("RemoveUnusedVerts")};
    if (cleaning.weld || cleaning.dropUnused) {
        data.cleaned.push_back(geometry::CleanUp(mesh->view(), cleaning));
        mesh = &data.cleaned.back();
    }
    part.mesh = mesh->view();
    if (data.parts.empty())
        data.firstTopology = mesh->topology;
    AddExtras(data, node, withTexCoords, isSet("CollapseUVTiles"), part);
    part.name = isSet("GroupSingle") ? "default" : node.getLabel().toStdString();
    if (isSet("WriteVN")) {
        data.normals.push_back(geometry::VertexNormals(part.mesh));
        part.normals = data.normals.back();
    }
    data.parts.push_back(part);
}

/// A material library that names every surface, so that other programs find them; the scene holds no
/// materials.
void WriteMaterialLibrary(const QString& filename, const std::vector<geometry::ObjPart>& parts)
{
    std::string text;
    std::set<std::string> written;
    for (const geometry::ObjPart& part : parts)
        for (const std::string& surface : part.mesh.topology->surfaceNames)
            if (written.insert(surface).second)
                text += "newmtl " + surface + "\nKd 0.8 0.8 0.8\n";
    base::WriteFileAtomically(filename.toStdString(), text, base::Durability::Temporary);
}

} // namespace

DzObjExporter::DzObjExporter() : DzExporter(QLatin1String("obj")) {}

QString DzObjExporter::getDescription() const
{
    return QLatin1String("Wavefront Object");
}

void DzObjExporter::getDefaultOptions(DzFileIOSettings* options) const
{
    if (!options)
        return;
    openhost::SetDefaultObjSpace(*options);
    options->setIntValue(QLatin1String("FloatPrecision"), 6);
    options->setBoolValue(QLatin1String("IgnoreInvisible"), true);
    for (const char* const key : {"WriteVT", "WriteF", "WriteL", "WriteG", "GroupGeom", "WriteUsemtl"})
        options->setBoolValue(QLatin1String(key), true);
    openhost::SetDefaultMapOptions(*options);
}

bool DzObjExporter::getOptions(DzFileIOSettings* options, bool useInterface, const QString& filename)
{
    return DzExporter::getOptions(options, useInterface, filename) &&
           (!useInterface || openhost::CurrentAttendant().chooseFileOptions(
                                 QStringLiteral("OBJ Export Options"), openhost::ObjExportRows(), *options));
}

DzError DzObjExporter::write(const QString& filename, const DzFileIOSettings* options)
{
    DzFileIOSettings all;
    getDefaultOptions(&all);
    const DzFileIOSettings& used = options ? *options : all;
    openhost::NoteMapOptions(filename, used);
    const auto write = [&] {
        geometry::ObjWriteOptions writeOptions = openhost::ReadObjWriteOptions(used);
        ExportData data;
        for (const DzNode* const node : openhost::NodesToExport(used))
            AddPart(data, *node, used, writeOptions.writeTexCoords);
        if (data.parts.empty())
            throw base::FormatError("{}: there is nothing to export", filename.toStdString());
        if (used.getBoolValue(QLatin1String("WriteMtllib"))) {
            const QFileInfo file(filename);
            const QString library = file.completeBaseName() + QLatin1String(".mtl");
            WriteMaterialLibrary(file.path() + QLatin1Char('/') + library, data.parts);
            writeOptions.materialLibrary = library.toStdString();
        }
        openhost::ObjsOfThisWork()->write(filename.toStdString(), data.parts, data.firstTopology,
                                          writeOptions);
        return DzError(DZ_NO_ERROR);
    };
    return openhost::GuardHostCall(
        {filename.toStdString()}, write,
        openhost::ErrorCodes{DZ_UNABLE_TO_OPEN_FILE_ERROR, DZ_OPERATION_FAILED_ERROR});
}
