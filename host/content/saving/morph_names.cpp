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

TakenNames::TakenNames(const DzNode& figure)
    : _figure(figure), _listings(std::make_unique<FolderListings>(FolderListings::Keeping::ForGood))
{
    const DzObject* const object = figure.getObject();
    for (int i = 0; object && i < object->getNumModifiers(); ++i)
        _modifiers.emplace(MorphNameKey(object->getModifier(i)->getName()), object->getModifier(i));
    for (int i = 0; i < figure.getNumProperties(); ++i)
        _properties.insert(MorphNameKey(figure.getProperty(i)->getName()));
}

TakenNames::~TakenNames() = default;

std::optional<NameConflict> TakenNames::findConflict(const QString& name, const MorphFolder* folder) const
{
    NameConflict conflict;
    conflict.name = name.toStdString();
    const std::string key = MorphNameKey(name);
    const std::string address = folder ? MorphAddress(_figure, folder->vendor.toStdString(),
                                                      folder->product.toStdString(), conflict.name)
                                       : std::string();
    const std::filesystem::path present =
        folder ? PresentFile(*_listings, folder->contentDirectory, address) : std::filesystem::path();
    const auto found = _modifiers.find(key);
    DzModifier* const modifier = found == _modifiers.end() ? nullptr : found->second;
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
    if (modifier || _properties.count(key))
        return conflict;
    return std::nullopt;
}

QString TakenNames::fileFor(const QString& name, const MorphFolder& folder) const
{
    const std::string address =
        MorphAddress(_figure, folder.vendor.toStdString(), folder.product.toStdString(), name.toStdString());
    return folder.contentDirectory +
           QString::fromStdString(AsOnDisk(*_listings, folder.contentDirectory.toStdString(), address));
}

std::optional<NameConflict> FindNameConflict(const DzNode& figure, const QString& name,
                                             const MorphFolder* folder)
{
    return TakenNames(figure).findConflict(name, folder);
}

} // namespace openhost
