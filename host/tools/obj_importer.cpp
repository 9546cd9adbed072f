// The host's OBJ importer.
// SPDX-License-Identifier: MIT

#include "obj_importer.h"

#include "app/current_attendant.h"
#include "app/guard.h"
#include "base/errors.h"
#include "dzfacetmesh.h"
#include "dzfacetshape.h"
#include "dzfileiosettings.h"
#include "dznode.h"
#include "dzobject.h"
#include "dzscene.h"
#include "figure/mesh_access.h"
#include "obj_memory.h"
#include "obj_option_rows.h"
#include "obj_options.h"
#include "openhost/diagnostics.h"

#include <cmath>
#include <memory>

#include <QFileInfo>

namespace {

/// Scales by a power of ten so that the largest side is between 50 and 500 cm, the size of people and
/// furniture.
void AdaptToScene(geometry::PolygonMesh& mesh)
{
    const geometry::Vec3f size = geometry::BoundingBox(mesh.positions).size();
    const float largest = std::max({size.x, size.y, size.z});
    if (!(largest > 0.0f))
        return;
    const float factor = std::pow(10.0f, std::ceil(std::log10(50.0f / largest)));
    for (geometry::Vec3f& position : mesh.positions)
        position *= factor;
}

std::unique_ptr<DzNode> MakeProp(const QString& label, geometry::ObjContent content)
{
    const DzFacetMeshPtr facetMesh(openhost::MeshAccess::create(std::move(content.mesh)));
    openhost::MeshAccess::setExtras(*facetMesh,
                                    std::make_shared<const openhost::MeshExtras>(openhost::MeshExtras{
                                        std::move(content.texCoords), std::move(content.lines), {}, {}}));
    facetMesh->setName(label);
    auto shape = std::make_unique<DzFacetShape>();
    shape->setName(label);
    shape->setFacetMesh(facetMesh);
    auto object = std::make_unique<DzObject>();
    object->setName(label);
    object->addShape(shape.release());
    auto node = std::make_unique<DzNode>();
    node->setName(label);
    node->setLabel(label);
    node->setObject(object.release());
    return node;
}

} // namespace

QString DzObjImporter::getDescription() const
{
    return QLatin1String("Wavefront Object");
}

void DzObjImporter::getDefaultOptions(DzFileIOSettings* options) const
{
    if (!options)
        return;
    openhost::SetDefaultObjSpace(*options);
    for (const char* const key :
         {"IncludeVT", "IncludeF", "IncludeL", "IncludeG", "IncludeUsemtl", "IncludeMtllib"})
        options->setBoolValue(QLatin1String(key), true);
    options->setBoolValue(QLatin1String("AutoAdapt"), false);
}

bool DzObjImporter::getOptions(DzFileIOSettings* options, bool useInterface, const QString& filename)
{
    return DzImporter::getOptions(options, useInterface, filename) &&
           (!useInterface || openhost::CurrentAttendant().chooseFileOptions(
                                 QStringLiteral("OBJ Import Options"), openhost::ObjImportRows(), *options));
}

QString DzObjImporter::getExtension(int) const
{
    return QLatin1String("obj");
}

DzError DzObjImporter::read(const QString& filename, const DzFileIOSettings* options)
{
    DzFileIOSettings all;
    getDefaultOptions(&all);
    const DzFileIOSettings& used = options ? *options : all;
    const auto read = [&] {
        geometry::ObjContent content =
            openhost::ObjsOfThisWork()->read(filename.toStdString(), openhost::ReadObjReadOptions(used));
        for (const base::Diagnostic& diagnostic : content.diagnostics)
            openhost::Report(diagnostic);
        if (content.mesh.positions.empty())
            throw base::FormatError("{}: holds no vertices", filename.toStdString());
        if (used.getBoolValue(QLatin1String("AutoAdapt")))
            AdaptToScene(content.mesh);
        std::unique_ptr<DzNode> made = MakeProp(QFileInfo(filename).completeBaseName(), std::move(content));
        if (!dzScene->addNode(made.get()))
            return DzError(DZ_OPERATION_FAILED_ERROR);
        DzNode* const node = made.release();
        addImportedNode(node);
        dzScene->selectAllNodes(false);
        dzScene->setPrimarySelection(node);
        return DzError(DZ_NO_ERROR);
    };
    return openhost::GuardHostCall({filename.toStdString()}, read,
                                   openhost::ErrorCodes{DZ_UNABLE_TO_OPEN_FILE_ERROR, DZ_INVALID_FILE_ERROR});
}
