// Morphs of the scene as file content.
// SPDX-License-Identifier: MIT

#include "morph_export.h"

#include "dson/uri.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dzmorphdeltas.h"
#include "dznode.h"
#include "figure/deltas_access.h"

namespace openhost {

dson::Modifier DescribeMorph(const DzMorph& morph, const DzNode& figure, const std::string& name)
{
    const DzFloatProperty& dial = *morph.getValueControl();
    const std::string group = dial.getPath().toStdString();
    dson::Modifier modifier = dson::MakeMorph(name, group.empty() ? "/" : group);
    modifier.parent = figure.getAssetUri().toString().toStdString();
    modifier.region = dial.getRegion().toStdString();
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

std::string FileName(const std::string& name)
{
    std::string result;
    for (const char c : name) {
        const bool isSafe = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                            c == '_' || c == '-';
        result += isSafe ? c : '_';
    }
    if (result.empty() || (result[0] >= '0' && result[0] <= '9'))
        result.insert(0, 1, '_');
    // Other systems' file names end at 255 bytes, and the path has to stay short as well.
    constexpr std::size_t longest = 100;
    return result.substr(0, longest);
}

std::string AssetFolder(const DzNode& figure)
{
    const std::string path = dson::ParseUri(figure.getAssetUri().toString().toStdString()).path;
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash);
}

} // namespace openhost
