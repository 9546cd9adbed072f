// Names for new morphs of a figure.
// SPDX-License-Identifier: MIT

#include "openhost/morph_names.h"

#include "dson/uri.h"
#include "dzmorph.h"
#include "dznode.h"
#include "dzobject.h"
#include "dzproperty.h"
#include "library/content_paths.h"
#include "morph_export.h"
#include "saving/file_names.h"

#include <fmt/format.h>

namespace openhost {

namespace {

DzModifier* FindModifier(const DzNode& figure, const std::string& key)
{
    const DzObject* const object = figure.getObject();
    for (int i = 0; object && i < object->getNumModifiers(); ++i)
        if (MorphNameKey(object->getModifier(i)->getName()) == key)
            return object->getModifier(i);
    return nullptr;
}

bool HasProperty(const DzNode& figure, const std::string& key)
{
    for (int i = 0; i < figure.getNumProperties(); ++i)
        if (MorphNameKey(figure.getProperty(i)->getName()) == key)
            return true;
    return false;
}

} // namespace

std::string MorphNameKey(const QString& name)
{
    return FoldCase(FileName(name.toStdString()));
}

std::string NameConflict::text() const
{
    if (!morph && file.isEmpty())
        return fmt::format("\"{}\" is the name of a part of the figure", name);
    const std::string place = file.isEmpty() ? std::string() : ", in " + file.toStdString();
    return fmt::format("there is a morph \"{}\" already{}", name, place);
}

std::optional<NameConflict> FindNameConflict(const DzNode& figure, const QString& name,
                                             const MorphFolder* folder)
{
    NameConflict conflict;
    conflict.name = name.toStdString();
    const std::string key = MorphNameKey(name);
    const std::string address = folder ? MorphAddress(figure, folder->vendor.toStdString(),
                                                      folder->product.toStdString(), conflict.name)
                                       : std::string();
    const std::filesystem::path present =
        folder ? PresentFile(folder->contentDirectory, address) : std::filesystem::path();
    DzModifier* const modifier = FindModifier(figure, key);
    conflict.morph = qobject_cast<DzMorph*>(modifier);
    if (conflict.morph)
        conflict.file = QString::fromStdString(
            dson::ParseUri(conflict.morph->getAssetUri().toString().toStdString()).path);
    const bool isSameFile = folder && PathKey(conflict.file.toStdString()) == PathKey(address);
    if (!present.empty() && (!modifier || isSameFile)) {
        conflict.file = QString::fromStdString(present.u8string());
        conflict.isOwnFile = present.stem().u8string() == FileName(conflict.name);
        return conflict;
    }
    if (modifier || HasProperty(figure, key))
        return conflict;
    return std::nullopt;
}

} // namespace openhost
