// Bookmarks, links and the author's name in a PDF, which the toolkit's writer leaves out.
// SPDX-License-Identifier: MIT

#include "pdf_navigation.h"

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFWriter.hh>

#include <stdexcept>

namespace manual {

namespace {

using Object = QPDFObjectHandle;
using Pages = std::vector<Object>;

std::string Utf8(const QString& text)
{
    return text.toStdString();
}

Object Real(double points)
{
    return Object::newReal(points, 2);
}

const Object& PageAt(const Pages& pages, int page)
{
    if (page < 0 || page >= static_cast<int>(pages.size()))
        throw std::runtime_error("the PDF has no page " + std::to_string(page + 1));
    return pages[page];
}

/// The page from this height down, as large as the reader has it.
Object Destination(const Pages& pages, const PdfPlace& place)
{
    return Object::newArray({PageAt(pages, place.page), Object::newName("/XYZ"), Object::newNull(),
                             Real(place.top), Object::newNull()});
}

void AddLink(const Pages& pages, const PdfLink& link)
{
    Object annotation = Object::newDictionary();
    annotation.replaceKey("/Type", Object::newName("/Annot"));
    annotation.replaceKey("/Subtype", Object::newName("/Link"));
    annotation.replaceKey("/Border", Object::newArray({Real(0), Real(0), Real(0)}));
    annotation.replaceKey("/Rect", Object::newArray({Real(link.box.left()), Real(link.box.top()),
                                                     Real(link.box.right()), Real(link.box.bottom())}));
    annotation.replaceKey("/Dest", Destination(pages, link.target));
    Object page = PageAt(pages, link.page);
    if (!page.getKey("/Annots").isArray())
        page.replaceKey("/Annots", Object::newArray());
    page.getKey("/Annots").appendItem(annotation);
}

void SetCount(Object& item, int count)
{
    item.replaceKey("/Count", Object::newInteger(count));
}

/// Puts the child behind those that the parent has.
void Append(Object& parent, Object& child)
{
    Object last = parent.getKey("/Last");
    child.replaceKey("/Parent", parent);
    if (last.isNull()) {
        parent.replaceKey("/First", child);
    } else {
        last.replaceKey("/Next", child);
        child.replaceKey("/Prev", last);
    }
    parent.replaceKey("/Last", child);
}

/// @return the outline, which holds them
Object MakeOutline(QPDF& pdf, const Pages& pages, const std::vector<PdfBookmark>& bookmarks)
{
    struct Branch {
        Object item;
        int level;
        int children;
    };
    Object outline = pdf.makeIndirectObject(Object::newDictionary());
    outline.replaceKey("/Type", Object::newName("/Outlines"));
    std::vector<Branch> path{{outline, 0, 0}}; // from the outline to the last bookmark
    for (const PdfBookmark& bookmark : bookmarks) {
        while (path.size() > 1 && path.back().level >= bookmark.level)
            path.pop_back();
        Object item = pdf.makeIndirectObject(Object::newDictionary());
        item.replaceKey("/Title", Object::newUnicodeString(Utf8(bookmark.text)));
        item.replaceKey("/Dest", Destination(pages, bookmark.place));
        Branch& parent = path.back();
        Append(parent.item, item);
        ++parent.children;
        SetCount(parent.item, path.size() == 1 ? parent.children : -parent.children); // less than 0: folded
        path.push_back({item, bookmark.level, 0});
    }
    return outline;
}

QByteArray Written(QPDF& pdf)
{
    QPDFWriter writer(pdf);
    writer.setOutputMemory();
    writer.setDeterministicID(true);
    writer.write();
    const std::shared_ptr<Buffer> bytes = writer.getBufferSharedPointer();
    return QByteArray(reinterpret_cast<const char*>(bytes->getBuffer()), int(bytes->getSize()));
}

} // namespace

QByteArray WithNavigation(const QByteArray& bytes, const PdfNavigation& navigation)
{
    QPDF pdf;
    pdf.setSuppressWarnings(true); // they are no error, and would be printed
    pdf.processMemoryFile("the manual", bytes.constData(), std::size_t(bytes.size()));
    const Pages pages = pdf.getAllPages();
    for (const PdfLink& link : navigation.links)
        AddLink(pages, link);
    Object root = pdf.getRoot();
    root.replaceKey("/Outlines", MakeOutline(pdf, pages, navigation.bookmarks));
    root.replaceKey("/PageMode", Object::newName("/UseOutlines"));
    root.replaceKey("/Lang", Object::newString(navigation.language.toStdString()));
    Object preferences = Object::newDictionary();
    preferences.replaceKey("/DisplayDocTitle", Object::newBool(true));
    root.replaceKey("/ViewerPreferences", preferences);
    pdf.getTrailer().getKey("/Info").replaceKey("/Author", Object::newUnicodeString(Utf8(navigation.author)));
    return Written(pdf);
}

} // namespace manual
