// Morphs of the scene as file content.
// SPDX-License-Identifier: MIT

#include "morph_export.h"

#include "channel_export.h"
#include "dson/uri.h"
#include "dzbone.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dzmorphdeltas.h"
#include "dznumericcontroller.h"
#include "dzpresentation.h"
#include "dzskeleton.h"
#include "figure/deltas_access.h"
#include "library/asset_origin.h"
#include "library/content_paths.h"
#include "link_export.h"
#include "loading/channel_properties.h"
#include "loading/kept_parts.h"
#include "saving/file_names.h"

#include <fmt/format.h>

namespace openhost {

namespace {

/// Adds those of one channel, such as "center_point/x".
void AppendLinks(const DzBone& bone, const std::string& channel, const DzMorph& morph,
                 const std::string& dial, JointLinks& found)
{
    const DzNumericProperty& property = *FindNodeChannel(bone, channel);
    const dson::Uri asset = dson::ParseUri(bone.getAssetUri().toString().toStdString());
    const std::string output = dson::MakePropertyUri(asset.id, asset.path, asset.id, channel);
    for (int i = 0; i < property.getNumControllers(); ++i) {
        auto* const link = qobject_cast<DzNumericController*>(property.getController(i));
        const bool isTheMorphsOwn =
            link && link->getNumInputs() == 1 && link->getInput(0) == morph.getValueControl();
        if (!isTheMorphsOwn || IsFromDataFile(*link))
            continue;
        const auto formula = asset.id.empty()
                                 ? std::optional<dson::Formula>()
                                 : DescribeLink(*link, output, [&dial](const DzProperty&) { return dial; });
        if (!formula) {
            ++found.lost;
            continue;
        }
        found.formulas.push_back(*formula);
        found.links.push_back(link);
    }
}

/// What libraries show, such as an icon, where a file or a program has said so.
void KeepPresentation(const DzMorph& morph, dson::Modifier& modifier)
{
    const KeptModifier* const kept = KeptOfModifier(morph);
    const DzPresentation* const presentation = morph.getPresentation();
    if (!kept || !presentation)
        return;
    for (const auto& member : kept->definition.members)
        if (member.first == "presentation") {
            modifier.presentationType = presentation->getType().toStdString();
            modifier.kept.members.push_back(member);
        }
}

} // namespace

JointLinks DescribeJointLinks(const DzMorph& morph, const DzNode& figure, const std::string& dial)
{
    JointLinks found;
    const auto* const skeleton = qobject_cast<const DzSkeleton*>(&figure);
    // Of hundreds of joints few morphs drive any.
    if (!skeleton || !morph.getValueControl()->hasSlaveControllers())
        return found;
    for (const DzBone* const bone : skeleton->bones()) {
        for (const char* const member :
             {"center_point", "end_point", "orientation", "rotation", "translation", "scale"})
            for (const char* const axis : axisIds)
                AppendLinks(*bone, std::string(member) + "/" + axis, morph, dial, found);
        AppendLinks(*bone, "scale/general", morph, dial, found);
    }
    return found;
}

DialLinks DescribeDialLinks(const DzMorph& morph, const std::string& dial,
                            const std::function<std::string(const DzProperty&)>& uriOf)
{
    DialLinks found;
    const DzFloatProperty& property = *morph.getValueControl();
    for (int i = 0; i < property.getNumControllers(); ++i) {
        auto* const link = qobject_cast<DzNumericController*>(property.getController(i));
        if (!link || IsFromDataFile(*link))
            continue;
        if (const auto formula = DescribeLink(*link, dial, uriOf)) {
            found.formulas.push_back(*formula);
            found.links.push_back(link);
        }
    }
    return found;
}

dson::Modifier DescribeMorph(const DzMorph& morph, const DzNode& figure, const std::string& name)
{
    const DzFloatProperty& dial = *morph.getValueControl();
    const std::string group = dial.getPath().toStdString();
    dson::Modifier modifier = dson::MakeMorph(name, group.empty() ? "/" : group);
    modifier.parent = figure.getAssetUri().toString().toStdString();
    modifier.region = dial.getRegion().toStdString();
    KeepPresentation(morph, modifier);
    dson::Channel& channel = modifier.channel;
    channel.label = dial.getLabel().toStdString();
    channel.min = dial.getMin();
    channel.max = dial.getMax();
    channel.clamped = dial.isClamped();
    channel.displayAsPercent = dial.getDisplayAsPercent();
    channel.stepSize = dial.getSensitivity();
    channel.visible = !dial.isHidden();
    channel.autoFollow = true;
    modifier.morph->vertexCount = morph.getDeltas()->getTargetVertexCount();
    modifier.morph->deltas = DeltasAccess::deltas(*morph.getDeltas());
    return modifier;
}

std::string AssetFolder(const DzNode& figure)
{
    const std::string path = dson::ParseUri(figure.getAssetUri().toString().toStdString()).path;
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash);
}

std::string MorphAddress(const DzNode& figure, const std::string& vendor, const std::string& product,
                         const std::string& name)
{
    return fmt::format("{}/Morphs/{}/{}/{}.dsf", AssetFolder(figure), vendor, product, FileName(name));
}

std::string AsOnDisk(FolderListings& listings, const std::filesystem::path& contentDirectory,
                     const std::string& address)
{
    const std::filesystem::path wanted = address.substr(1);
    std::filesystem::path at = contentDirectory, spelled = "/";
    for (const std::filesystem::path& part : wanted.parent_path()) {
        const std::filesystem::path present = FindIgnoringCase(listings, at, part.string());
        at = present.empty() ? at / part : present;
        spelled /= at.filename();
    }
    return (spelled / wanted.filename()).generic_string();
}

std::filesystem::path PresentFile(FolderListings& listings, const QString& contentDirectory,
                                  const std::string& address)
{
    const std::filesystem::path present =
        FindIgnoringCase(listings, contentDirectory.toStdString(), address.substr(1));
    std::error_code ignored;
    return std::filesystem::is_directory(present, ignored) ? std::filesystem::path() : present;
}

} // namespace openhost
