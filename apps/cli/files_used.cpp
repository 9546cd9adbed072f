// Which files of the content libraries a figure is made of.
// SPDX-License-Identifier: MIT

#include "files_used.h"

#include "dials.h"
#include "dson/uri.h"
#include "dzapp.h"
#include "dzcontentmgr.h"
#include "dzmorph.h"
#include "dznode.h"
#include "dznumericproperty.h"
#include "dzobject.h"
#include "dzshape.h"
#include "openhost/asset_uri.h"

namespace cli {

namespace fs = std::filesystem;

namespace {

/// What was made in the scene, or by files of users, has none.
void Add(const DzUri& uri, FilesUsed& files)
{
    const std::string path = dson::ParseUri(uri.toString().toStdString()).path;
    if (path.empty())
        return;
    const QString found = dzApp->getContentMgr()->getAbsolutePath(QString::fromStdString(path), true);
    if (found.isEmpty())
        return;
    fs::path file = found.toStdString();
    files.insert(file);
    std::error_code error;
    if (fs::exists(file.replace_extension(".dhdm"), error))
        files.insert(file);
}

} // namespace

void AddFilesOf(const DzNode& figure, FilesUsed& files)
{
    Add(figure.getAssetUri(), files);
    if (const DzObject* const object = figure.getObject()) {
        Add(openhost::AssetUriOf(*object), files);
        if (const DzShape* const shape = object->getCurrentShape())
            Add(openhost::AssetUriOf(*shape), files);
    }
    for (const ShapeDial& dial : ShapeDialsOf(figure))
        if (dial.dial->getDoubleValue() != 0.0)
            AddFilesOf(dial, files);
}

void AddFilesOf(const ShapeDial& dial, FilesUsed& files)
{
    Add(dial.morph ? dial.morph->getAssetUri() : openhost::AssetUriOf(*dial.dial), files);
    for (const DzMorph* const driven : DrivenMorphs(*dial.dial))
        Add(driven->getAssetUri(), files);
}

} // namespace cli
