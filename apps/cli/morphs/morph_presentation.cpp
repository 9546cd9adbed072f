// How libraries show a morph.
// SPDX-License-Identifier: MIT

#include "morphs/morph_presentation.h"

#include "base/errors.h"
#include "dson/file_text.h"
#include "dson/uri.h"
#include "dzapp.h"
#include "dzcontentmgr.h"
#include "dzmorph.h"
#include "dznumericproperty.h"
#include "openhost/asset_uri.h"

#include <nlohmann/json.hpp>

namespace cli {

namespace {

using Json = nlohmann::ordered_json;

const char* const iconMember = "icon_large";

/// Most files name none, and a whole file of displacements is not read for that.
bool NamesIcon(const std::string& text)
{
    for (std::size_t at = text.find(iconMember); at != text.npos; at = text.find(iconMember, at + 1)) {
        const std::size_t colon = text.find(':', at), quote = text.find('"', colon);
        if (quote != text.npos && text.compare(quote, 2, "\"\"") != 0)
            return true;
    }
    return false;
}

QString FileOfAddress(const std::string& address)
{
    const std::string path = dson::ParseUri(address).path;
    return path.empty() ? QString()
                        : dzApp->getContentMgr()->getAbsolutePath(QString::fromStdString(path), true);
}

std::string TextOf(const QString& file)
{
    try {
        return file.isEmpty() ? std::string() : dson::ReadText(file.toStdString());
    } catch (const base::Error&) {
        return std::string(); // told where the shape is read
    }
}

/// Discarded for none.
Json PresentationIn(const Json& file, const std::string& id)
{
    const Json none(Json::value_t::discarded);
    const auto modifiers = file.is_object() ? file.find("modifier_library") : file.end();
    if (modifiers == file.end() || !modifiers->is_array())
        return none;
    for (const Json& modifier : *modifiers) {
        const bool isIt = modifier.is_object() && modifier.contains("id") && modifier["id"] == id;
        if (isIt && modifier.contains("presentation") && modifier["presentation"].is_object())
            return modifier["presentation"];
    }
    return none;
}

std::string Member(const Json& object, const char* name)
{
    const auto member = object.find(name);
    return member != object.end() && member->is_string() ? member->get<std::string>() : std::string();
}

} // namespace

std::optional<MorphPresentation> ReadPresentation(const ShapeDial& dial)
{
    const DzUri uri = dial.morph ? dial.morph->getAssetUri() : openhost::AssetUriOf(*dial.dial);
    const dson::Uri parsed = dson::ParseUri(uri.toString().toStdString());
    const std::string text = TextOf(FileOfAddress(uri.toString().toStdString()));
    if (!NamesIcon(text))
        return std::nullopt;
    Json object = PresentationIn(Json::parse(text, nullptr, false), parsed.id);
    if (object.is_discarded())
        return std::nullopt;
    MorphPresentation presentation;
    presentation.type = Member(object, "type");
    presentation.icon = Member(object, iconMember);
    if (presentation.icon.empty() || presentation.type.empty())
        return std::nullopt;
    presentation.isIconThere = !FileOfAddress(presentation.icon).isEmpty();
    if (!presentation.isIconThere)
        object[iconMember] = "";
    presentation.json = object.dump(-1, ' ', false, Json::error_handler_t::replace);
    return presentation;
}

} // namespace cli
