// DSON URIs: taking them apart, putting them together, percent-encoding.
// SPDX-License-Identifier: MIT

#include "dson/uri.h"

#include "base/ascii.h"

#include <algorithm>
#include <vector>

namespace dson {

namespace {

bool StartsWith(std::string_view text, std::string_view prefix)
{
    return text.substr(0, prefix.size()) == prefix;
}

int HexValue(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    const char lower = base::ToLowerAscii(c);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

std::string Encode(std::string_view text, bool keepSlash)
{
    static const char* const digits = "0123456789ABCDEF";
    std::string result;
    result.reserve(text.size() + 12); // a few characters, or none, take three places
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        const bool plain = base::IsLetterOrDigitAscii(c) || c == '-' || c == '_' || c == '.' || c == '~' ||
                           (keepSlash && c == '/');
        if (plain) {
            result += c;
        } else {
            result += '%';
            result += digits[byte >> 4];
            result += digits[byte & 15];
        }
    }
    return result;
}

/// Calls visit(step) for each text between slashes, also for empty ones.
template <class Visit>
void ForEachStep(std::string_view path, const Visit& visit)
{
    std::size_t at = 0;
    while (at <= path.size()) {
        const std::size_t end = std::min(path.find('/', at), path.size());
        visit(path.substr(at, end - at));
        at = end + 1;
    }
}

/// Nearly all paths are; no step of them is empty or begins with a dot, but for the one before a leading
/// slash.
bool IsNormal(std::string_view path)
{
    return path.empty() || (path.front() != '.' && path.find("//") == path.npos &&
                            path.find("/.") == path.npos && (path.size() == 1 || path.back() != '/'));
}

} // namespace

Uri ParseUri(std::string_view text)
{
    Uri uri;
    if (const std::size_t at = text.rfind('?'); at != std::string_view::npos) {
        uri.property = PercentDecode(text.substr(at + 1));
        text = text.substr(0, at);
    }
    if (const std::size_t at = text.find('#'); at != std::string_view::npos) {
        std::string_view fragment = text.substr(at + 1);
        if (!fragment.empty() && fragment.back() == ':')
            fragment.remove_suffix(1);
        uri.id = PercentDecode(fragment);
        text = text.substr(0, at);
    }
    for (const std::string_view scheme : {"name", "id"}) {
        if (StartsWith(text, scheme) && StartsWith(text.substr(scheme.size()), ":/")) {
            uri.scheme = scheme;
            text = text.substr(scheme.size() + 1);
            break;
        }
    }
    if (const std::size_t at = text.find(':'); at != std::string_view::npos) {
        uri.node = PercentDecode(text.substr(0, at));
        text = text.substr(at + 1);
    } else if (StartsWith(text, "//@selection")) {
        uri.node = PercentDecode(text);
        text = {};
    }
    uri.path = NormalPath(PercentDecode(text));
    return uri;
}

std::string MakeUri(const std::string& decodedPath, const std::string& id)
{
    return EncodePath(decodedPath) + "#" + EncodeFragment(id);
}

std::string MakePropertyUri(const std::string& node, const std::string& decodedPath, const std::string& id,
                            const std::string& property)
{
    return EncodeFragment(node) + ":" + MakeUri(decodedPath, id) + "?" + EncodePath(property);
}

std::string EncodePath(std::string_view text)
{
    return Encode(text, true);
}

std::string EncodeFragment(std::string_view text)
{
    return Encode(text, false);
}

std::string PercentDecode(std::string_view text)
{
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const int high = text[i] == '%' && i + 2 < text.size() ? HexValue(text[i + 1]) : -1;
        const int low = high >= 0 ? HexValue(text[i + 2]) : -1;
        if (low >= 0) {
            result += static_cast<char>(high * 16 + low);
            i += 2;
        } else {
            result += text[i];
        }
    }
    return result;
}

std::string NormalPath(std::string_view decodedPath)
{
    std::string path(decodedPath);
    std::replace(path.begin(), path.end(), '\\', '/');
    if (IsNormal(path))
        return path;
    std::vector<std::string_view> steps;
    ForEachStep(path, [&steps](std::string_view step) {
        if (step.empty() || step == ".")
            return;
        if (step == ".." && !steps.empty() && steps.back() != "..")
            steps.pop_back();
        else
            steps.push_back(step);
    });
    std::string normal(path.front() == '/' ? "/" : "");
    for (const std::string_view step : steps) {
        if (!normal.empty() && normal.back() != '/')
            normal += '/';
        normal += step;
    }
    return normal;
}

bool LeavesFolder(std::string_view decodedPath)
{
    if (decodedPath.find('\0') != std::string_view::npos)
        return true;
    // A backslash separates folders too, on some systems.
    std::string path(decodedPath);
    std::replace(path.begin(), path.end(), '\\', '/');
    bool leaves = false;
    ForEachStep(path, [&leaves](std::string_view step) { leaves = leaves || step == ".."; });
    return leaves;
}

} // namespace dson
