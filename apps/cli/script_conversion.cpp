// Conversions that scripts ask for.
// SPDX-License-Identifier: MIT

#include "script_conversion.h"

#include "base/cancellation.h"
#include "command.h"
#include "conversions/conversion_json.h"
#include "conversions/convert_options.h"
#include "dznode.h"
#include "error_sentence.h"
#include "host_session.h"
#include "openhost/script_function.h"
#include "option_words.h"
#include "progress.h"
#include "wrong_use.h"

#include <QScriptValueIterator>

#include <algorithm>
#include <cctype>
#include <regex>
#include <stdexcept>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace cli {

namespace {

HostSession* g_session = nullptr;
bool g_mayOverwrite = false;

/// `--adjust-rig` for adjustRig.
std::string OptionOf(const std::string& key)
{
    std::string option = "--";
    for (const char letter : key) {
        if (std::isupper(static_cast<unsigned char>(letter)))
            option += '-';
        option += static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
    }
    return option;
}

/// adjustRig for `--adjust-rig`; a flag with what turns it on.
std::string KeyOf(const std::string& option)
{
    std::string key;
    bool isCapital = false;
    for (const char letter : option.substr(2)) {
        if (letter != '-')
            key += static_cast<char>(isCapital ? std::toupper(static_cast<unsigned char>(letter)) : letter);
        isCapital = letter == '-';
    }
    const bool isFlag = option == "--accept-missing" || option == "--overwrite";
    return isFlag ? key + ": true" : key;
}

/// What the parser says, of keys.
std::string WithKeys(const std::string& text)
{
    static const std::regex option("--[a-z]+(-[a-z]+)*");
    std::string told;
    auto end = text.begin();
    for (std::sregex_iterator found(text.begin(), text.end(), option), none; found != none; ++found) {
        told.append(end, text.begin() + found->position());
        told += KeyOf(found->str());
        end = text.begin() + found->position() + found->length();
    }
    return told.append(end, text.end());
}

/// While it lives, texts name options as scripts do.
class ScriptWords {
public:
    ScriptWords() { SetOptionWords(&KeyOf); }
    ~ScriptWords() { SetOptionWords(nullptr); }
    ScriptWords(const ScriptWords&) = delete;
    ScriptWords& operator=(const ScriptWords&) = delete;
};

/// A flag, a list with commas, "NAME=VALUE" of each member, or the value.
void Append(std::vector<std::string>& words, const std::string& option, const QScriptValue& value)
{
    if (value.isFunction())
        throw UsageError(KeyOf(option) + " is a function, which is no value of an option");
    if (value.isBool()) {
        if (value.toBool())
            words.push_back(option);
    } else if (value.isArray()) {
        words.push_back(option + "=" + value.toVariant().toStringList().join(QLatin1Char(',')).toStdString());
    } else if (value.isObject()) {
        for (QScriptValueIterator member(value); member.hasNext();) {
            member.next();
            words.push_back(fmt::format("{}={}={}", option, member.name().toStdString(),
                                        member.value().toString().toStdString()));
        }
    } else if (!value.isUndefined() && !value.isNull()) {
        words.push_back(option + "=" + value.toString().toStdString());
    }
}

/// The options are those of the subcommand `convert`, which checks them.
/// @throws UsageError  they cannot be meant
ConversionRequest RequestOf(const DzNode& source, const DzNode& target, const QScriptValue& options)
{
    std::vector<std::string> words{"--source=" + source.getLabel().toStdString(),
                                   "--target=" + target.getLabel().toStdString()};
    for (QScriptValueIterator option(options); option.hasNext();) {
        option.next();
        const std::string name = OptionOf(option.name().toStdString());
        for (const char* const own : {"--source", "--target", "--content", "--dial", "--keep-temp"})
            if (name == own)
                throw UsageError(KeyOf(name) + " is no option for figures of a scene");
        Append(words, name, option.value());
    }
    CLI::App parser("", "convert");
    ConvertArguments arguments;
    AddConvertOptions(parser, arguments, OptionUse::Whole);
    std::reverse(words.begin(), words.end());
    try {
        parser.parse(words);
    } catch (const CLI::ParseError& error) {
        throw UsageError(WithKeys(DescribeWrongUse(parser, error)));
    }
    ConversionRequest request = MakeRequest(arguments);
    request.contentDirectories.clear();
    request.mayOverwrite = request.mayOverwrite || g_mayOverwrite;
    return request;
}

/// A conversion sets what the session may overwrite for itself.
class SessionsOverwriting {
public:
    SessionsOverwriting() = default;
    ~SessionsOverwriting() { g_session->allowOverwriting(g_mayOverwrite); }
    SessionsOverwriting(const SessionsOverwriting&) = delete;
    SessionsOverwriting& operator=(const SessionsOverwriting&) = delete;
};

QScriptValue FromJson(QScriptEngine& engine, const Json& json)
{
    QScriptValue parser = engine.globalObject().property(QStringLiteral("JSON"));
    return parser.property(QStringLiteral("parse"))
        .call(parser, QScriptValueList{QScriptValue(QString::fromStdString(json.dump()))});
}

QScriptValue Convert(QScriptContext* context, QScriptEngine* engine)
{
    auto* const source = qobject_cast<DzNode*>(context->argument(0).toQObject());
    auto* const target = qobject_cast<DzNode*>(context->argument(1).toQObject());
    const QScriptValue options = context->argument(2);
    const ScriptWords words;
    try {
        if (!source || !target || !(options.isObject() || options.isUndefined()))
            throw UsageError(
                "convert: it takes two figures of the scene, and options such as {name: \"Vera\"}");
        const ConversionRequest request = RequestOf(*source, *target, options);
        Progress progress(false);
        const SessionsOverwriting restored;
        const ConversionReport report = ConvertFigures(*g_session, *source, *target, request, progress);
        return FromJson(*engine, DescribeConversion(report, progress, true));
    } catch (const base::Cancelled&) {
        return context->throwError(QStringLiteral("the conversion was interrupted")); // and so is the script
    } catch (const std::exception& error) {
        return context->throwError(QString::fromStdString(error.what()));
    }
}

} // namespace

ScriptConversions::ScriptConversions(HostSession& session, bool mayOverwrite)
{
    g_session = &session;
    g_mayOverwrite = mayOverwrite;
    openhost::RegisterScriptFunction(
        {"convert", "source, target, options = {}",
         "Converts a figure of the scene, as it is dialed, to morphs on a Genesis 9 figure of the scene, "
         "which "
         "wears them afterwards. The options are called as those of `gantrel convert`, with capitals for "
         "hyphens: jobs, name, path, base, resolution, subd, adjustRig, register, saveLibrary, vendor, "
         "product, "
         "compress, overwrite, exportObj, pictures, report, acceptMissing. The result is what that prints "
         "with "
         "--json. Only `gantrel script` has this function.",
         Convert});
}

ScriptConversions::~ScriptConversions()
{
    g_session = nullptr;
}

} // namespace cli
