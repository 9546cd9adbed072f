// Saving morphs as support assets.
// SPDX-License-Identifier: MIT

// Before Qt, whose keyword emit names a function there.
#include <tbb/parallel_for.h>

#include "saving/morph_asset_filter.h"

#include "app/current_attendant.h"
#include "app/guard.h"
#include "base/cancellation.h"
#include "base/counted.h"
#include "base/device_name.h"
#include "base/errors.h"
#include "base/file_set.h"
#include "dson/dhdm.h"
#include "dson/reader.h"
#include "dson/uri.h"
#include "dson/writer.h"
#include "dzapp.h"
#include "dzauthor.h"
#include "dzfileiosettings.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dzmorphdeltas.h"
#include "dznode.h"
#include "dznumericcontroller.h"
#include "dzobject.h"
#include "dzscene.h"
#include "figure/deltas_access.h"
#include "figure/pipeline.h"
#include "library/asset_origin.h"
#include "library/content_paths.h"
#include "morph_export.h"
#include "openhost/attendant.h"
#include "openhost/diagnostics.h"
#include "saving/file_names.h"

#include <QFileInfo>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <set>
#include <utility>
#include <vector>

#include <fmt/format.h>

namespace {

namespace fs = std::filesystem;

struct Wanted {
    DzNode* node;
    DzMorph* morph;
    std::string fileName;
    std::string address;          ///< of the file, below the content directory
    fs::path folder;              ///< that the file lies in
    bool replacesAnother() const; ///< should there be a file
};

const char* const vendorKey = "VendorName";
const char* const productKey = "ProductName";

std::string FolderName(const DzFileIOSettings& options, const char* key)
{
    return options.getStringValue(QLatin1String(key)).trimmed().toStdString();
}

/// Folders are named by the user; what would lead elsewhere is no folder name.
bool CanNameFolder(const std::string& name)
{
    // Libraries move between systems; some refuse these characters, drop a full stop at the end, and keep
    // names for devices.
    const bool hasBadCharacter = std::any_of(name.begin(), name.end(), [](char c) {
        return static_cast<unsigned char>(c) < 0x20 || std::strchr("/\\:*?\"<>|", c);
    });
    return !name.empty() && name.back() != '.' && !hasBadCharacter && !base::IsDeviceName(name);
}

DzError Refuse(DzError error, const std::string& reason)
{
    openhost::Report({base::Severity::Error, {}, {}, reason});
    return error;
}

/// Whether the options say where to save; no folder is made for those that do not.
DzError CheckPlace(const DzFileIOSettings& options)
{
    const QString library = options.getStringValue(QLatin1String("BaseDataPath"));
    if (library.isEmpty())
        return Refuse(DZ_OPERATION_FAILED_ERROR, "no content folder to save into is given");
    // Made anew, it would hide what is on a disk that is not there now.
    if (!QFileInfo(library).isDir())
        return Refuse(DZ_CONTENT_FOLDER_NOT_FOUND_ERROR,
                      fmt::format("there is no folder {} to save into", library.toStdString()));
    const std::pair<const char*, DzError> names[] = {{vendorKey, DZ_INVALID_VENDOR_NAME_ERROR},
                                                     {productKey, DZ_INVALID_PRODUCT_NAME_ERROR}};
    for (const auto& [key, error] : names) {
        const std::string name = FolderName(options, key);
        if (!CanNameFolder(name))
            return Refuse(error, fmt::format("\"{}\" cannot be the name of a {} folder", name, key));
    }
    return DZ_NO_ERROR;
}

DzMorph* FindMorph(const DzNode& node, const QString& name)
{
    const DzObject* const object = node.getObject();
    return object ? qobject_cast<DzMorph*>(object->findModifier(name)) : nullptr;
}

std::vector<Wanted> CollectWanted(const DzFileIOSettings& options)
{
    std::vector<Wanted> all;
    std::set<std::string> addresses;
    const fs::path library = options.getStringValue(QLatin1String("BaseDataPath")).toStdString();
    openhost::FolderListings listings(openhost::FolderListings::Keeping::ForGood);
    const DzSettings* const nodes = options.getSettingsValue(QLatin1String("NodeNames"));
    for (int n = 0; nodes && n < nodes->getNumValues(); ++n) {
        const QString nodeName = nodes->getKey(n);
        const DzSettings* const names = nodes->getSettingsValue(nodeName);
        DzNode* const node = dzScene->findNode(nodeName);
        if (!node || !names)
            throw base::FormatError("there is no node {} to save morphs of", nodeName.toStdString());
        for (int i = 0; i < names->getNumValues(); ++i) {
            const QString name = names->getStringValue(QString::number(i));
            DzMorph* const morph = FindMorph(*node, name);
            if (!morph)
                throw base::FormatError("{} has no morph {}", node->getLabel().toStdString(),
                                        name.toStdString());
            const std::string fileName = openhost::FileName(morph->getName().toStdString());
            const std::string address = openhost::AsOnDisk(
                listings, library,
                openhost::MorphAddress(*node, FolderName(options, vendorKey), FolderName(options, productKey),
                                       morph->getName().toStdString()));
            // Two names that differ in case are one file on many disks.
            if (!addresses.insert(openhost::PathKey(address)).second)
                throw base::FormatError("two morphs would be saved as {}", fileName);
            all.push_back({node, morph, fileName, address, (library / address.substr(1)).parent_path()});
        }
    }
    return all;
}

bool Wanted::replacesAnother() const
{
    const std::string origin = dson::ParseUri(morph->getAssetUri().toString().toStdString()).path;
    return openhost::PathKey(origin) != openhost::PathKey(address);
}

/// What is about to come into place in their folders counts as there.
void FinishLeftSaves(const std::vector<Wanted>& all)
{
    std::set<fs::path> folders;
    for (const Wanted& wanted : all)
        folders.insert(wanted.folder);
    std::error_code error;
    for (const fs::path& folder : folders)
        if (fs::exists(folder / base::fileSetJournal, error))
            openhost::FinishLeftSave(folder);
}

/// Files that hold other morphs than those to be saved there.
QStringList OthersFiles(const std::vector<Wanted>& all, const DzFileIOSettings& options)
{
    const QString library = options.getStringValue(QLatin1String("BaseDataPath"));
    openhost::FolderListings listings(openhost::FolderListings::Keeping::ForGood);
    QStringList files;
    for (const Wanted& wanted : all) {
        const fs::path present = openhost::PresentFile(listings, library, wanted.address);
        if (!present.empty() && present.stem().u8string() != wanted.fileName)
            throw base::FormatError("there is a file {} already, and many disks take {}.dsf for the same",
                                    present.u8string(), wanted.fileName);
        if (!present.empty() && wanted.replacesAnother())
            files.append(QString::fromStdString(present.u8string()));
    }
    return files;
}

[[noreturn]] void ThrowNotReplaceable(const QStringList& files)
{
    throw base::FormatError("{} already, and would be lost: {}",
                            files.size() == 1 ? "there is a morph of this name"
                                              : "there are morphs of these names",
                            files.join(QLatin1String(", ")).toStdString());
}

/// @return false when the user does not want them replaced
bool MayReplace(const QStringList& files)
{
    if (files.isEmpty())
        return true;
    const std::optional<bool> answer = openhost::CurrentAttendant().mayReplaceFiles(files);
    if (!answer)
        ThrowNotReplaceable(files);
    return *answer;
}

/// Of the morph's companion file; empty without detail.
std::string DetailBytes(const Wanted& wanted)
{
    const geometry::MultiresDetail& detail = openhost::DeltasAccess::detail(*wanted.morph->getDeltas());
    if (detail.empty())
        return std::string();
    std::size_t leftOut = 0;
    std::string bytes =
        dson::EncodeDhdm(detail, *wanted.node->getObject()->pipeline().base().topology, &leftOut);
    if (leftOut > 0)
        openhost::Report({base::Severity::Warning,
                          {},
                          wanted.morph->getName().toStdString(),
                          fmt::format("{} behind the fourth corner of a face, where files have no place for "
                                      "them, left out",
                                      base::Counted(leftOut, "displacement", "displacements"))});
    return bytes;
}

/// The URI of a dial of one of the figure's morphs, where a file has it or will have it; otherwise empty.
std::string DialUri(const DzProperty& dial, const DzNode& figure, const std::vector<Wanted>& all)
{
    const auto* const morph = qobject_cast<const DzMorph*>(dial.getOwner());
    if (!morph || dial.getOwner()->getElementParent() != figure.getObject())
        return std::string();
    const std::string node = figure.getAssetId().toStdString();
    for (const Wanted& wanted : all)
        if (wanted.morph == morph)
            return dson::MakePropertyUri(node, wanted.address, wanted.fileName, "value");
    const dson::Uri uri = dson::ParseUri(morph->getAssetUri().toString().toStdString());
    return uri.path.empty() ? std::string() : dson::MakePropertyUri(node, uri.path, uri.id, "value");
}

/// A morph as its file is to have it.
struct Draft {
    DzMorph* morph;
    dson::AssetInfo info;
    dson::Modifier modifier;
    std::vector<DzNumericController*> links; ///< that the file holds as formulas
    std::string detail;                      ///< bytes of the companion file
    bool replacesAnother;
};

dson::AssetInfo InfoOf(const Wanted& wanted, const DzFileIOSettings& options)
{
    dson::AssetInfo info;
    info.id = wanted.address;
    info.type = "modifier";
    const DzAuthor author = dzApp->getCurrentAuthor();
    info.author = author.getName().toStdString();
    // Readers want an author; who has set none is known by the vendor name.
    if (info.author.empty())
        info.author = FolderName(options, vendorKey);
    info.email = author.getEmail().toStdString();
    info.website = author.getURL().toStdString();
    return info;
}

/// Puts what drives the morph, and what it drives, into the draft.
void AddLinks(Draft& draft, const Wanted& wanted, const std::vector<Wanted>& all)
{
    const std::string dial = DialUri(*wanted.morph->getValueControl(), *wanted.node, all);
    const openhost::JointLinks joints = openhost::DescribeJointLinks(*wanted.morph, *wanted.node, dial);
    const openhost::DialLinks drivers = openhost::DescribeDialLinks(
        *wanted.morph, dial, [&](const DzProperty& input) { return DialUri(input, *wanted.node, all); });
    draft.modifier.formulas = joints.formulas;
    draft.modifier.formulas.insert(draft.modifier.formulas.end(), drivers.formulas.begin(),
                                   drivers.formulas.end());
    draft.links = joints.links;
    draft.links.insert(draft.links.end(), drivers.links.begin(), drivers.links.end());
    if (joints.lost > 0)
        openhost::Report({base::Severity::Warning,
                          {},
                          wanted.morph->getName().toStdString(),
                          fmt::format("{} cannot be kept in a file",
                                      base::Counted(joints.lost, "link to a joint", "links to joints"))});
}

Draft Describe(const Wanted& wanted, const std::vector<Wanted>& all, const DzFileIOSettings& options)
{
    if (openhost::AssetFolder(*wanted.node).empty())
        throw base::FormatError("{} comes from no asset file", wanted.node->getLabel().toStdString());
    const std::string name = wanted.morph->getName().toStdString();
    // A file that could not be read must not be replaced by one without its content.
    if (!wanted.morph->getDeltas()->loadDeltas())
        throw base::FormatError("the deltas of {} cannot be read", name);
    Draft draft{wanted.morph,
                InfoOf(wanted, options),
                openhost::DescribeMorph(*wanted.morph, *wanted.node, wanted.fileName),
                {},
                DetailBytes(wanted),
                wanted.replacesAnother()};
    AddLinks(draft, wanted, all);
    if (wanted.fileName != name)
        openhost::Report(
            {base::Severity::Warning,
             {},
             name,
             fmt::format("no name for a file; the morph is named {} in its own", wanted.fileName)});
    return draft;
}

/// Side by side: printing numbers and waiting for the disk take most of a save.
void Write(const std::vector<Draft>& drafts, const DzFileIOSettings& options, base::FileSet& set)
{
    const fs::path library = options.getStringValue(QLatin1String("BaseDataPath")).toStdString();
    dson::WriteOptions write;
    write.compress = options.getBoolValue(QLatin1String("CompressOutput"));
    write.set = &set;
    tbb::parallel_for(std::size_t{0}, drafts.size(), [&](std::size_t i) {
        dson::WriteOptions own = write;
        own.isReplacement = drafts[i].replacesAnother;
        dson::WriteMorph(drafts[i].info, drafts[i].modifier, library, own, drafts[i].detail);
    });
}

/// @param replaced  files that may be
void Save(const std::vector<Wanted>& all, const DzFileIOSettings& options, const QStringList& replaced)
{
    std::vector<fs::path> folders;
    for (const Wanted& wanted : all)
        folders.push_back(wanted.folder);
    base::FileSet set(folders);
    for (const base::Diagnostic& one : set.diagnostics())
        openhost::Report(one);
    // Until the folders were locked, another program may have saved under the names.
    for (const QString& file : OthersFiles(all, options))
        if (!replaced.contains(file))
            throw base::FormatError(
                "another program has saved a morph of this name meanwhile, which would be "
                "lost: {}",
                file.toStdString());
    std::vector<Draft> drafts;
    for (const Wanted& wanted : all)
        drafts.push_back(Describe(wanted, all, options));
    Write(drafts, options, set);
    base::ThrowIfCancelled(); // for the last time: they are saved all together
    set.commit();
    for (const Draft& saved : drafts) {
        const DzUri uri(QString::fromStdString(dson::MakeUri(saved.info.id, saved.modifier.id)));
        saved.morph->setAssetUri(uri);
        saved.morph->getDeltas()->setUri(uri);
        // A scene that is saved from now on leaves them to the morph's file.
        for (DzNumericController* const link : saved.links)
            openhost::SetFromDataFile(*link);
    }
}

} // namespace

QString DzMorphSupportAssetFilter::getDescription() const
{
    return QLatin1String("Morph Support Asset(s)");
}

DzError DzMorphSupportAssetFilter::doSave(DzFileIOSettings* options, const QString&, const QString&)
{
    if (!options)
        return DZ_ILLEGAL_ARGUMENT_ERROR;
    if (const DzError error = CheckPlace(*options))
        return error;
    const auto save = [options] {
        const std::vector<Wanted> all = CollectWanted(*options);
        if (all.empty())
            throw base::FormatError("no morphs to save are given");
        FinishLeftSaves(all);
        const QStringList replaced = OthersFiles(all, *options);
        if (!MayReplace(replaced))
            return DzError(DZ_USER_CANCELLED_OPERATION);
        Save(all, *options, replaced);
        return DzError(DZ_NO_ERROR);
    };
    return openhost::GuardHostCall(
        {}, save, openhost::ErrorCodes{DZ_OPERATION_FAILED_ERROR, DZ_OPERATION_FAILED_ERROR});
}
