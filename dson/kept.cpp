// What files hold beyond what is read of them, on its way from one file to the next.
// SPDX-License-Identifier: MIT

#include "dson/kept.h"

#include "dson/uri.h"
#include "json_view.h"
#include "kept_parts.h"

#include <algorithm>

namespace dson {

namespace {

/// A text of one value, with a parser of its own.
class ParsedValue {
public:
    explicit ParsedValue(const std::string& json) { _isRead = !_parser.parse(json).get(_root); }

    /// Null for what is no JSON.
    const Element* root() const { return _isRead ? &_root : nullptr; }

private:
    simdjson::dom::parser _parser;
    Element _root;
    bool _isRead = false;
};

std::string Quoted(std::string_view text)
{
    return Json(std::string(text)).dump(-1, ' ', false, Json::error_handler_t::replace);
}

/// Writes a value with some of it replaced.
/// @param replace  given an element and where to append, tells whether it has written the element
template <class Replace>
void AppendWith(std::string& text, const Element& element, const Replace& replace)
{
    if (replace(element, text))
        return;
    const char* comma = "";
    if (element.is_array()) {
        text += '[';
        for (const Element item : Items(element)) {
            text += std::exchange(comma, ",");
            AppendWith(text, item, replace);
        }
        text += ']';
    } else if (element.is_object()) {
        text += '{';
        for (const auto member : Members(element)) {
            text += std::exchange(comma, ",") + Quoted(member.key) + ':';
            AppendWith(text, member.value, replace);
        }
        text += '}';
    } else {
        text += simdjson::minify(element);
    }
}

template <class Visit>
void ForEachText(const Element& element, const Visit& visit)
{
    if (element.is_string())
        visit(element.get_string().value_unsafe());
    else if (element.is_array())
        for (const Element item : Items(element))
            ForEachText(item, visit);
    else if (element.is_object())
        for (const auto member : Members(element))
            ForEachText(member.value, visit);
}

/// `[node:]#id[?property]`, taken apart without a change.
struct Reference {
    std::string_view node, id, rest;
};

/// Nothing for what refers to another file or to nothing.
std::optional<Reference> ReferenceIn(std::string_view text)
{
    const std::size_t hash = text.find('#');
    if (hash == text.npos)
        return std::nullopt;
    Reference reference;
    reference.node = text.substr(0, hash);
    if (!reference.node.empty()) {
        if (reference.node.back() != ':' || reference.node.find('/') != text.npos)
            return std::nullopt;
        reference.node.remove_suffix(1);
    }
    const std::size_t end = std::min(text.find('?', hash), text.size());
    reference.id = text.substr(hash + 1, end - hash - 1);
    reference.rest = text.substr(end);
    return reference;
}

std::string Renamed(std::string_view encoded, const std::map<std::string, std::string>& ids)
{
    const auto found = ids.find(PercentDecode(encoded));
    return found == ids.end() ? std::string(encoded) : EncodeFragment(found->second);
}

std::string Renamed(const Reference& reference, const std::map<std::string, std::string>& ids)
{
    const std::string node = reference.node.empty() ? std::string() : Renamed(reference.node, ids) + ':';
    return node + '#' + Renamed(reference.id, ids) + std::string(reference.rest);
}

/// What the entry of a known channel holds besides; empty for nothing.
std::string RestOfEntry(const Element& entry)
{
    const Element channel = *Find(entry, "channel");
    std::string rest = RestOfChannel(channel), others;
    for (const auto member : Members(entry))
        if (member.key != "channel" && member.key != "group")
            others += ',' + Quoted(member.key) + ':' + simdjson::minify(member.value);
    if (rest.empty() && others.empty())
        return {};
    if (rest.empty())
        rest = "{\"id\":" + Quoted(Text(channel, "id")) + '}';
    return "{\"channel\":" + rest + others + '}';
}

/// The entry without what is known of channels; nothing if it holds nothing else.
std::string WithoutChannels(const std::string& extra,
                            const std::function<bool(const std::string& id)>& isKnown)
{
    const ParsedValue parsed(extra);
    const auto list = parsed.root() ? Find(*parsed.root(), "channels") : std::nullopt;
    if (!list)
        return extra;
    const auto isRead = [&](const Element& entry) {
        const auto channel = Find(entry, "channel");
        return channel && isKnown(Text(*channel, "id"));
    };
    std::string others;
    bool isChanged = false;
    ForEach(*parsed.root(), "channels", [&](const Element& entry) {
        const bool isKnownEntry = isRead(entry);
        const std::string kept = isKnownEntry ? RestOfEntry(entry) : simdjson::minify(entry);
        isChanged = isChanged || isKnownEntry;
        if (!kept.empty())
            others += (others.empty() ? "" : ",") + kept;
    });
    if (!isChanged)
        return extra;
    std::string rest;
    bool saysMore = !others.empty();
    for (const auto member : Members(*parsed.root())) {
        const bool isList = member.key == "channels";
        if (isList && others.empty())
            continue;
        saysMore = saysMore || (!isList && member.key != "type" && member.key != "version");
        rest += (rest.empty() ? "{" : ",") + Quoted(member.key) + ':' +
                (isList ? '[' + others + ']' : simdjson::minify(member.value));
    }
    return saysMore ? rest + '}' : std::string();
}

/// @param channel  text of an object with members
std::string WithRest(std::string channel, const Element& other)
{
    const ParsedValue rest(RestOfChannel(other));
    if (!rest.root())
        return channel;
    channel.pop_back();
    for (const auto member : Members(*rest.root()))
        if (member.key != "id")
            channel += ',' + Quoted(member.key) + ':' + simdjson::minify(member.value);
    return channel + '}';
}

} // namespace

std::string TextMember(const std::string& json, const std::string& name)
{
    const ParsedValue parsed(json);
    return parsed.root() ? Text(*parsed.root(), name) : std::string();
}

std::string WithTextMember(const std::string& json, const std::string& name, const std::string& value)
{
    const ParsedValue parsed(json);
    if (!parsed.root() || !parsed.root()->is_object())
        return json;
    std::string text = "{";
    bool isSet = false;
    for (const auto member : Members(*parsed.root())) {
        const bool isWanted = member.key == name && !isSet;
        isSet = isSet || isWanted;
        text += (text.size() > 1 ? "," : "") + Quoted(member.key) + ':' +
                (isWanted ? Quoted(value) : simdjson::minify(member.value));
    }
    if (!isSet)
        text += (text.size() > 1 ? "," : "") + Quoted(name) + ':' + Quoted(value);
    return text + '}';
}

std::set<std::string> ReferencesIn(const std::string& json)
{
    std::set<std::string> ids;
    if (json.find('#') == json.npos)
        return ids;
    const ParsedValue parsed(json);
    if (parsed.root())
        ForEachText(*parsed.root(), [&ids](std::string_view text) {
            if (const auto reference = ReferenceIn(text)) {
                ids.insert(PercentDecode(reference->id));
                ids.insert(PercentDecode(reference->node));
            }
        });
    return ids;
}

std::string WithReferences(const std::string& json, const std::map<std::string, std::string>& ids)
{
    if (ids.empty() || json.find('#') == json.npos)
        return json;
    const ParsedValue parsed(json);
    if (!parsed.root())
        return json;
    std::string text;
    AppendWith(text, *parsed.root(), [&ids](const Element& element, std::string& written) {
        const auto reference =
            element.is_string() ? ReferenceIn(element.get_string().value_unsafe()) : std::nullopt;
        if (reference)
            written += Quoted(Renamed(*reference, ids));
        return reference.has_value();
    });
    return text;
}

std::string RestOfChannels(const std::string& json)
{
    const ParsedValue parsed(json);
    return parsed.root() ? RestOfChannels(*parsed.root()) : std::string();
}

std::string WithChannels(const std::string& channels, const std::string& others)
{
    const ParsedValue present(channels), kept(others);
    if (!present.root() || !kept.root() || !present.root()->is_array())
        return channels;
    std::string list;
    for (const Element channel : Items(*present.root())) {
        std::string text = simdjson::minify(channel);
        if (kept.root()->is_array())
            for (const Element other : Items(*kept.root()))
                if (Text(other, "id") == Text(channel, "id"))
                    text = WithRest(text, other);
        list += (list.empty() ? "[" : ",") + text;
    }
    return list + ']';
}

void DropChannels(KeptMembers& kept, const std::function<bool(const std::string& id)>& isKnown)
{
    for (std::string& extra : kept.extras)
        extra = WithoutChannels(extra, isKnown);
    kept.extras.erase(std::remove(kept.extras.begin(), kept.extras.end(), std::string()), kept.extras.end());
}

} // namespace dson
