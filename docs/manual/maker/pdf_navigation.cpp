// Bookmarks, links and the author's name in a PDF, which the toolkit's writer leaves out.
// SPDX-License-Identifier: MIT

#include "docs/manual/maker/pdf_navigation.h"

#include <QRegularExpression>

#include <map>
#include <stdexcept>

namespace manual {

namespace {

void Require(bool isSo, const char* what)
{
    if (!isSo)
        throw std::runtime_error(std::string("the PDF is not as it should be: ") + what);
}

QByteArray Number(double value)
{
    return QByteArray::number(value, 'f', 2);
}

QByteArray Reference(int object)
{
    return QByteArray::number(object) + " 0 R";
}

/// Two bytes for each character, so that no letter is beyond it.
QByteArray Text(const QString& text)
{
    QByteArray hex = "<FEFF";
    for (const QChar letter : text)
        hex += QByteArray::number(letter.unicode(), 16).rightJustified(4, '0').toUpper();
    return hex + '>';
}

int FirstNumber(const QByteArray& text, const char* pattern)
{
    const auto found =
        QRegularExpression(QLatin1String(pattern)).match(QString::fromLatin1(text)).captured(1);
    Require(!found.isEmpty(), pattern);
    return found.toInt();
}

/// A file is changed by what is appended to it: objects anew or for the first time, and a table of them.
class Appendix {
public:
    explicit Appendix(const QByteArray& pdf) : _pdf(pdf)
    {
        _oldTable = FirstNumber(pdf.right(100), "startxref\\s+(\\d+)");
        _trailer = pdf.mid(pdf.lastIndexOf("trailer"));
        _count = FirstNumber(_trailer, "/Size\\s+(\\d+)");
    }

    /// @param key  such as "/Root"
    int objectInTrailer(const char* key) const
    {
        return FirstNumber(_trailer, (QByteArray(key) + "\\s+(\\d+) 0 R").constData());
    }
    QByteArray object(int number) const
    {
        const int entry = _pdf.indexOf('\n', _pdf.indexOf('\n', _oldTable) + 1) + 1 + number * kEntryLength;
        const int begin = _pdf.indexOf("obj", _pdf.mid(entry, kOffsetLength).toInt());
        const int end = _pdf.indexOf("endobj", begin);
        Require(begin >= 0 && end > begin, "an object is missing");
        return _pdf.mid(begin + 3, end - begin - 3).trimmed();
    }
    int newObject() { return _count++; }
    void write(int number, const QByteArray& content) { _objects[number] = content; }
    /// Of an object that is a dictionary, at whose end they are put.
    void addEntries(int number, const QByteArray& entries)
    {
        QByteArray content = object(number);
        Require(content.endsWith(">>"), "a dictionary has no end");
        content.chop(2);
        write(number, content + entries + "\n>>");
    }
    QByteArray whole() const
    {
        QByteArray pdf = _pdf + '\n', table = "xref\n";
        for (const auto& [number, content] : _objects) {
            table += QByteArray::number(number) + " 1\n" +
                     QByteArray::number(pdf.size()).rightJustified(kOffsetLength, '0') + " 00000 n \n";
            pdf += QByteArray::number(number) + " 0 obj\n" + content + "\nendobj\n";
        }
        const int tableAt = pdf.size();
        return pdf + table + "trailer\n<<\n/Size " + QByteArray::number(_count) + "\n/Root " +
               Reference(objectInTrailer("/Root")) + "\n/Info " + Reference(objectInTrailer("/Info")) +
               "\n/Prev " + QByteArray::number(_oldTable) + "\n>>\nstartxref\n" +
               QByteArray::number(tableAt) + "\n%%EOF\n";
    }

private:
    static constexpr int kEntryLength = 20;
    static constexpr int kOffsetLength = 10;

    QByteArray _pdf;
    QByteArray _trailer;
    int _oldTable;
    int _count;
    std::map<int, QByteArray> _objects;
};

std::vector<int> PageObjects(const Appendix& appendix)
{
    const QByteArray catalog = appendix.object(appendix.objectInTrailer("/Root"));
    const QByteArray tree = appendix.object(FirstNumber(catalog, "/Pages\\s+(\\d+) 0 R"));
    const QString kids = QRegularExpression(QStringLiteral("/Kids\\s*\\[([^\\]]*)\\]"))
                             .match(QString::fromLatin1(tree))
                             .captured(1);
    std::vector<int> pages;
    for (auto page = QRegularExpression(QStringLiteral("(\\d+) 0 R")).globalMatch(kids); page.hasNext();)
        pages.push_back(page.next().captured(1).toInt());
    Require(!pages.empty(), "there are no pages");
    return pages;
}

int PageObject(const std::vector<int>& pages, int page)
{
    Require(page >= 0 && page < static_cast<int>(pages.size()), "there is no such page");
    return pages[page];
}

QByteArray Destination(const std::vector<int>& pages, const PdfPlace& place)
{
    return "/Dest [" + Reference(PageObject(pages, place.page)) + " /XYZ null " + Number(place.top) +
           " null]";
}

void AddLinks(Appendix& appendix, const std::vector<int>& pages, const std::vector<PdfLink>& links)
{
    std::map<int, QByteArray> byPage;
    for (const PdfLink& link : links)
        byPage[PageObject(pages, link.page)] += "<< /Type /Annot /Subtype /Link /Border [0 0 0] /Rect [" +
                                                Number(link.box.left()) + ' ' + Number(link.box.top()) + ' ' +
                                                Number(link.box.right()) + ' ' + Number(link.box.bottom()) +
                                                "] " + Destination(pages, link.target) + " >>\n";
    for (const auto& [page, annotations] : byPage) {
        const int list = FirstNumber(appendix.object(page), "/Annots\\s+(\\d+) 0 R");
        appendix.write(list, "[\n" + annotations + ']');
    }
}

/// The bookmarks as a tree; 0 is what holds the outermost ones, and the n-th bookmark is n + 1.
struct Branch {
    int parent = 0;
    std::vector<int> children;
};

std::vector<Branch> Grow(const std::vector<PdfBookmark>& bookmarks)
{
    std::vector<Branch> branches(bookmarks.size() + 1);
    for (std::size_t i = 0; i < bookmarks.size(); ++i) {
        int parent = static_cast<int>(i);
        while (parent > 0 && bookmarks[parent - 1].level >= bookmarks[i].level)
            parent = branches[parent].parent;
        branches[i + 1].parent = parent;
        branches[parent].children.push_back(static_cast<int>(i) + 1);
    }
    return branches;
}

/// @return the object that holds them
int AddBookmarks(Appendix& appendix, const std::vector<int>& pages, const std::vector<PdfBookmark>& bookmarks)
{
    const std::vector<Branch> branches = Grow(bookmarks);
    std::vector<int> objects;
    for (std::size_t i = 0; i < branches.size(); ++i)
        objects.push_back(appendix.newObject());
    std::vector<QByteArray> contents(branches.size());
    contents[0] = "/Type /Outlines";
    for (std::size_t i = 0; i < bookmarks.size(); ++i)
        contents[i + 1] = "/Title " + Text(bookmarks[i].text) + " /Parent " +
                          Reference(objects[branches[i + 1].parent]) + ' ' +
                          Destination(pages, bookmarks[i].place);
    for (std::size_t i = 0; i < branches.size(); ++i) {
        const std::vector<int>& children = branches[i].children;
        if (children.empty())
            continue;
        const int count = static_cast<int>(children.size());
        contents[i] += " /First " + Reference(objects[children.front()]) + " /Last " +
                       Reference(objects[children.back()]) + " /Count " +
                       QByteArray::number(i == 0 ? count : -count); // less than nothing: folded
        for (int child = 0; child + 1 < count; ++child) {
            contents[children[child]] += " /Next " + Reference(objects[children[child + 1]]);
            contents[children[child + 1]] += " /Prev " + Reference(objects[children[child]]);
        }
    }
    for (std::size_t i = 0; i < branches.size(); ++i)
        appendix.write(objects[i], "<< " + contents[i] + " >>");
    return objects[0];
}

} // namespace

QByteArray WithNavigation(const QByteArray& pdf, const PdfNavigation& navigation)
{
    Appendix appendix(pdf);
    const std::vector<int> pages = PageObjects(appendix);
    AddLinks(appendix, pages, navigation.links);
    const int bookmarks = AddBookmarks(appendix, pages, navigation.bookmarks);
    appendix.addEntries(appendix.objectInTrailer("/Root"),
                        "/Outlines " + Reference(bookmarks) + "\n/PageMode /UseOutlines\n/Lang (" +
                            navigation.language + ")\n/ViewerPreferences << /DisplayDocTitle true >>");
    appendix.addEntries(appendix.objectInTrailer("/Info"), "/Author " + Text(navigation.author));
    return appendix.whole();
}

} // namespace manual
