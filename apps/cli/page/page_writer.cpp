// Reports as single pages that any browser shows from disk.
// SPDX-License-Identifier: MIT

#include "page/page_writer.h"

#include "base/atomic_file.h"
#include "base/reason.h"
#include "command.h"
#include "mesh_files.h"
#include "output_name.h"

#include <cerrno>
#include <stdexcept>
#include <utility>

#include <QCryptographicHash>
#include <QDateTime>
#include <QFile>
#include <QString>
#include <fmt/format.h>
#include <unistd.h>

namespace cli {

namespace {

namespace fs = std::filesystem;

std::string Asset(const std::string& name)
{
    QFile file(QString::fromStdString(":/page/" + name));
    if (!file.open(QIODevice::ReadOnly))
        throw std::logic_error("there is no asset " + name);
    return file.readAll().toStdString();
}

/// By which a browser knows a script or style that may take effect: those of the page and no others.
std::string SourceHash(const std::string& text)
{
    const QByteArray hash =
        QCryptographicHash::hash(QByteArray::fromStdString(text), QCryptographicHash::Sha256);
    return fmt::format("'sha256-{}'", hash.toBase64().toStdString());
}

/// As the content of an element; letters beyond ASCII do not depend on how the page is read.
std::string HtmlText(const std::string& text)
{
    std::string html;
    for (const uint point : QString::fromStdString(text).toUcs4()) {
        const bool isPlain = point >= 0x20 && point < 0x7f && point != '<' && point != '>' && point != '&' &&
                             point != '"' && point != '\'';
        html += isPlain ? std::string(1, static_cast<char>(point)) : fmt::format("&#{};", point);
    }
    return html;
}

/// JSON that no browser takes for markup, whatever names are in it.
std::string DataText(const Json& data)
{
    std::string text;
    for (const char c : data.dump(-1, ' ', true, Json::error_handler_t::replace)) {
        if (c == '<' || c == '>' || c == '&')
            text += fmt::format("\\u{:04x}", static_cast<unsigned>(c));
        else
            text += c;
    }
    return text;
}

struct Parts {
    std::string text, hashes;

    void addScript(const std::string& script) { add("script", script); }
    void addStyle(const std::string& style) { add("style", style); }

private:
    void add(const char* element, const std::string& content)
    {
        text += fmt::format("<{0}>{1}</{0}>\n", element, content);
        hashes += ' ' + SourceHash(content);
    }
};

Parts ScriptsOf(const Page& page)
{
    Parts scripts;
    scripts.addScript(Asset("page.js"));
    scripts.addScript(Asset("table.js"));
    if (page.hasFigures) {
        scripts.addScript("/*\n" + Asset("three-license.txt") + "*/\n" + Asset("three.min.js"));
        scripts.addScript(Asset("OrbitControls.js"));
        scripts.addScript(Asset("viewer.js"));
    }
    for (const std::string& name : page.scripts)
        scripts.addScript(Asset(name));
    return scripts;
}

/// Whatever stands for @NAME@; what is put in is not looked into again.
std::string Fill(const std::string& page, const std::vector<std::pair<std::string, std::string>>& places)
{
    std::string filled;
    std::size_t done = 0;
    for (const auto& [name, text] : places) {
        const std::size_t at = page.find('@' + name + '@', done);
        if (at == page.npos)
            throw std::logic_error("the page has no place for " + name);
        filled += page.substr(done, at - done) + text;
        done = at + name.size() + 2;
    }
    return filled + page.substr(done);
}

} // namespace

std::string PageText(const Page& page)
{
    Json data = page.data;
    data["version"] = GANTREL_VERSION;
    data["date"] = QDateTime::currentDateTime().toString(QLatin1String("yyyy-MM-dd HH:mm t")).toStdString();
    const Parts scripts = ScriptsOf(page);
    Parts styles;
    styles.addStyle(Asset("page.css"));
    for (const std::string& name : page.styles)
        styles.addStyle(Asset(name));
    const std::string policy = fmt::format("default-src 'none'; img-src data:; style-src{}; script-src{}; "
                                           "base-uri 'none'; form-action 'none'",
                                           styles.hashes, scripts.hashes);
    return Fill(Asset("page.html"), {{"POLICY", policy},
                                     {"GENERATOR", "Gantrel " GANTREL_VERSION},
                                     {"TITLE", HtmlText(page.title)},
                                     {"STYLES", styles.text},
                                     {"DATA", DataText(data)},
                                     {"SCRIPTS", scripts.text}});
}

void WritePage(const fs::path& file, const Page& page)
{
    base::WriteFileAtomically(file, PageText(page));
}

void CheckPageFile(const fs::path& file, const std::vector<fs::path>& inputs)
{
    if (!HasExtension(file, ".html") && !HasExtension(file, ".htm"))
        throw UsageError(fmt::format("cannot write {}: a report is an .html file", FileText(file)));
    std::error_code error;
    const fs::path folder = file.has_parent_path() ? file.parent_path() : fs::path(".");
    if (!fs::is_directory(folder, error))
        throw std::runtime_error(
            fmt::format("cannot write {}: there is no folder {}", FileText(file), FileText(folder)));
    CheckOutput(file, inputs);
    // It is made beside its place, and where a link leads that is the place.
    const fs::path place = fs::weakly_canonical(fs::absolute(file), error).parent_path();
    if (!error && access(place.c_str(), W_OK | X_OK) != 0)
        throw std::runtime_error(fmt::format("cannot write {}: {}", FileText(file), base::ReasonOf(errno)));
}

} // namespace cli
