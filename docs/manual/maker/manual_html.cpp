// The manual as one page for browsers.
// SPDX-License-Identifier: MIT

#include "manual_html.h"

#include <cmark-gfm-core-extensions.h>
#include <cmark-gfm.h>

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace manual {

namespace {

using Node = std::unique_ptr<cmark_node, decltype(&cmark_node_free)>;
using Parser = std::unique_ptr<cmark_parser, decltype(&cmark_parser_free)>;
using Text = std::unique_ptr<char, decltype(&std::free)>;

QByteArray ReadBytes(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("cannot read " + path.toStdString());
    return file.readAll();
}

Node Parse(const QByteArray& markdown)
{
    const Parser parser(cmark_parser_new(CMARK_OPT_DEFAULT), &cmark_parser_free);
    cmark_syntax_extension* const tables = cmark_find_syntax_extension("table");
    if (!tables || !cmark_parser_attach_syntax_extension(parser.get(), tables))
        throw std::runtime_error("the reader of Markdown knows no tables");
    cmark_parser_feed(parser.get(), markdown.constData(), std::size_t(markdown.size()));
    Node document(cmark_parser_finish(parser.get()), &cmark_node_free);
    cmark_consolidate_text_nodes(document.get());
    return document;
}

std::vector<cmark_node*> NodesOf(cmark_node* root, cmark_node_type type)
{
    std::vector<cmark_node*> nodes;
    cmark_iter* const iterator = cmark_iter_new(root);
    for (cmark_event_type event; (event = cmark_iter_next(iterator)) != CMARK_EVENT_DONE;)
        if (event == CMARK_EVENT_ENTER && cmark_node_get_type(cmark_iter_get_node(iterator)) == type)
            nodes.push_back(cmark_iter_get_node(iterator));
    cmark_iter_free(iterator);
    return nodes;
}

cmark_node* MakeNode(cmark_node_type type, const QByteArray& text)
{
    cmark_node* const node = cmark_node_new(type);
    cmark_node_set_literal(node, text.constData());
    return node;
}

QString PlainText(cmark_node* node)
{
    QString text;
    for (const cmark_node_type type : {CMARK_NODE_TEXT, CMARK_NODE_CODE})
        for (cmark_node* const part : NodesOf(node, type))
            text += QString::fromUtf8(cmark_node_get_literal(part));
    return text;
}

/// Names of chapters stay when others are added before them, so that links from elsewhere do.
QString NameFor(const QString& heading)
{
    QString name = heading.toLower();
    name.replace(QRegularExpression(QStringLiteral("[^a-z0-9]+")), QStringLiteral("-"));
    return name.remove(QRegularExpression(QStringLiteral("^-|-$")));
}

/// The page as it grows.
class Page {
public:
    explicit Page(const PageParts& parts);

    QByteArray contents() const { return _contents; }
    QByteArray text() const { return _text; }

private:
    void nameHeadings(cmark_node* chapter, int number);
    QString uniqueName(const QString& heading);
    void linkMentions(cmark_node* chapter) const;
    void linkMentionsIn(cmark_node* text) const;
    void insertPictures(cmark_node* chapter, const QDir& pictures) const;

    QStringList _names;        ///< of all headings
    QStringList _chapterNames; ///< of those of level 1
    QByteArray _contents, _text;
};

Page::Page(const PageParts& parts)
{
    std::vector<Node> chapters;
    for (const QString& file : parts.chapters) {
        chapters.push_back(Parse(ReadBytes(file)));
        nameHeadings(chapters.back().get(), int(chapters.size()));
    }
    for (const Node& chapter : chapters) {
        linkMentions(chapter.get());
        insertPictures(chapter.get(), QDir(parts.pictures));
        // The manual's own text is trusted with what stands as HTML in it: the names of headings.
        const Text html(cmark_render_html(chapter.get(), CMARK_OPT_UNSAFE, nullptr), &std::free);
        _text += "<section>\n" + QByteArray(html.get()) + "</section>\n";
    }
}

QString Page::uniqueName(const QString& heading)
{
    QString name = NameFor(heading);
    for (int i = 2; _names.contains(name); ++i)
        name = NameFor(heading) + QStringLiteral("-%1").arg(i);
    _names << name;
    return name;
}

void Page::nameHeadings(cmark_node* chapter, int number)
{
    for (cmark_node* const heading : NodesOf(chapter, CMARK_NODE_HEADING)) {
        const int level = cmark_node_get_heading_level(heading);
        const QString text = PlainText(heading), name = uniqueName(text);
        const QByteArray shown =
            (level == 1 ? QStringLiteral("%1 %2").arg(number).arg(text) : text).toHtmlEscaped().toUtf8();
        if (level == 1) {
            _chapterNames << name;
            cmark_node_prepend_child(heading, MakeNode(CMARK_NODE_TEXT, QByteArray::number(number) + ' '));
        }
        const QByteArray anchor = "<a id=\"" + name.toUtf8() + "\"></a>";
        cmark_node_prepend_child(heading, MakeNode(CMARK_NODE_HTML_INLINE, anchor));
        if (level <= 2)
            _contents += "<a class=\"level" + QByteArray::number(level) + "\" href=\"#" + name.toUtf8() +
                         "\">" + shown + "</a>\n";
    }
}

void Page::linkMentions(cmark_node* chapter) const
{
    for (cmark_node* const text : NodesOf(chapter, CMARK_NODE_TEXT))
        if (cmark_node_get_type(cmark_node_parent(text)) != CMARK_NODE_HEADING)
            linkMentionsIn(text);
}

void Page::linkMentionsIn(cmark_node* text) const
{
    static const QRegularExpression mention(QStringLiteral("\\b[Cc]hapter (\\d+)\\b"));
    const QString words = QString::fromUtf8(cmark_node_get_literal(text));
    int done = 0;
    for (auto found = mention.globalMatch(words); found.hasNext();) {
        const auto match = found.next();
        const int number = match.captured(1).toInt();
        if (number < 1 || number > _chapterNames.size())
            throw std::runtime_error("there is no chapter " + std::to_string(number));
        cmark_node_insert_before(
            text, MakeNode(CMARK_NODE_TEXT, words.mid(done, match.capturedStart() - done).toUtf8()));
        cmark_node* const link = cmark_node_new(CMARK_NODE_LINK);
        cmark_node_set_url(link, ('#' + _chapterNames[number - 1]).toUtf8().constData());
        cmark_node_append_child(link, MakeNode(CMARK_NODE_TEXT, match.captured().toUtf8()));
        cmark_node_insert_before(text, link);
        done = match.capturedEnd();
    }
    cmark_node_set_literal(text, words.mid(done).toUtf8().constData());
}

/// Puts the picture itself in the place of its name, and its words below it.
void Page::insertPictures(cmark_node* chapter, const QDir& pictures) const
{
    for (cmark_node* const image : NodesOf(chapter, CMARK_NODE_IMAGE)) {
        const QByteArray picture =
            ReadBytes(pictures.filePath(QString::fromUtf8(cmark_node_get_url(image)))).toBase64();
        cmark_node_set_url(image, ("data:image/png;base64," + picture).constData());
        const QByteArray caption = "<br><em>" + PlainText(image).toHtmlEscaped().toUtf8() + "</em>";
        cmark_node_insert_after(image, MakeNode(CMARK_NODE_HTML_INLINE, caption));
    }
}

} // namespace

void WriteManualPage(const QString& file, const PageParts& parts)
{
    cmark_gfm_core_extensions_ensure_registered();
    const Page page(parts);
    const QDir frame(parts.frame);
    QByteArray html = ReadBytes(frame.filePath(QStringLiteral("manual.html")));
    const std::pair<const char*, QByteArray> places[] = {
        {"@style@", ReadBytes(frame.filePath(QStringLiteral("manual.css")))},
        {"@script@", ReadBytes(frame.filePath(QStringLiteral("manual.js")))},
        {"@version@", parts.version.toUtf8()},
        {"@contents@", page.contents()},
        {"@text@", page.text()}};
    for (const auto& [place, content] : places)
        html.replace(place, content);
    QFile out(file);
    if (!out.open(QIODevice::WriteOnly) || out.write(html) != html.size() || !out.flush())
        throw std::runtime_error("cannot write " + file.toStdString());
}

} // namespace manual
