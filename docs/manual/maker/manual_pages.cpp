// The manual's pages: title, contents and text.
// SPDX-License-Identifier: MIT

#include "manual_pages.h"

#include "manual_text.h"
#include "pdf_navigation.h"

#include <QAbstractTextDocumentLayout>
#include <QBuffer>
#include <QFile>
#include <QPainter>
#include <QPalette>
#include <QPdfWriter>
#include <QTextBlock>

#include <stdexcept>
#include <string>
#include <vector>

namespace manual {

namespace {

constexpr int kDotsPerInch = 600;
constexpr double kSideMillimetres = 21.0;
constexpr double kTopMillimetres = 19.0;
constexpr double kFootMillimetres = 12.0;    ///< of the page number above the page's end
constexpr double kContentsLine = 4.6;        ///< millimetres
constexpr double kContentsGap = 1.6;         ///< millimetres above a chapter
constexpr int kFirstTextPage = 3;            ///< behind the title and the contents
constexpr double kHeadroomMillimetres = 3.0; ///< above what a jump leads to
const QString kTitle = QStringLiteral("Gantrel for Genesis 9");
const QString kAuthor = QStringLiteral("Kestrom");
const QString kTitlePicture = QStringLiteral("/pictures/source-and-result.png");
const QString kTitleCaption =
    QStringLiteral("Left: Vera, a Genesis 8 Female of the sample library. Right: a Genesis 9 figure with "
                   "the morph that was made of her shape, at 100 %.");
const QColor kAccent(0x1f, 0x4e, 0x79);
const QColor kGrey(0x60, 0x68, 0x70);

double Millimetres(double value)
{
    return value * kDotsPerInch / 25.4;
}

struct Entry {
    QString text;
    int level;
    int page;   ///< of the text, from 0
    double top; ///< of its letters on that page, in pixels
};

std::vector<Entry> ListHeadings(const QTextDocument& document)
{
    std::vector<Entry> entries;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        const int level = HeadingLevel(block);
        if (level > 0) {
            const int page = PageOf(document, block);
            const double top = LineBox(document, block, 0).top() - page * document.pageSize().height();
            entries.push_back({block.text().simplified(), level, page, top});
        }
    }
    return entries;
}

/// Those that the contents show; the bookmarks have all.
std::vector<Entry> OfContents(const std::vector<Entry>& entries)
{
    std::vector<Entry> shown;
    for (const Entry& entry : entries)
        if (entry.level <= 2)
            shown.push_back(entry);
    return shown;
}

/// Paints page after page; the first is there from the start.
class Pages {
public:
    Pages(QPdfWriter& writer, QPainter& painter)
        : _writer(writer), _painter(painter), _sheet(0, 0, writer.width(), writer.height()),
          _room(_sheet.adjusted(Millimetres(kSideMillimetres), Millimetres(kTopMillimetres),
                                -Millimetres(kSideMillimetres), -Millimetres(kTopMillimetres + 6)))
    {
    }

    const QRectF& room() const { return _room; }

    void paintTitle(const QString& version, const QImage& picture);
    /// On one page, in two columns.
    /// @throws std::runtime_error  they do not fit
    void paintContents(const std::vector<Entry>& entries, int firstTextPage);
    void paintText(QTextDocument& document);
    /// Makes the chapters' numbers in the text lead there.
    void linkText(const QTextDocument& document, const std::vector<Entry>& entries, int firstTextPage);

    PdfPlace placeOf(const Entry& entry, int firstTextPage) const;
    const std::vector<PdfLink>& links() const { return _links; }

private:
    void next();
    void paintFoot();
    /// @return where it stands
    QRectF paintLine(const Entry& entry, int page, QRectF line);
    QRectF inPoints(const QRectF& box) const;

    QPdfWriter& _writer;
    QPainter& _painter;
    QRectF _sheet;
    QRectF _room;
    std::vector<PdfLink> _links;
    int _number = 1;
};

/// The file's own measure, which begins at the page's lower edge.
QRectF Pages::inPoints(const QRectF& box) const
{
    const double point = kDotsPerInch / 72.0;
    return QRectF(box.left() / point, (_sheet.height() - box.bottom()) / point, box.width() / point,
                  box.height() / point);
}

PdfPlace Pages::placeOf(const Entry& entry, int firstTextPage) const
{
    const double top = _room.top() + entry.top - Millimetres(kHeadroomMillimetres);
    return {firstTextPage - 1 + entry.page, inPoints(QRectF(0, top, 0, 0)).top()};
}

void Pages::linkText(const QTextDocument& document, const std::vector<Entry>& entries, int firstTextPage)
{
    std::vector<PdfPlace> chapters;
    for (const Entry& entry : entries)
        if (entry.level == 1)
            chapters.push_back(placeOf(entry, firstTextPage));
    const double height = document.pageSize().height();
    for (const Mention& mention : FindMentions(document)) {
        if (mention.chapter < 1 || mention.chapter > static_cast<int>(chapters.size()))
            throw std::runtime_error("there is no chapter " + std::to_string(mention.chapter));
        const int page = static_cast<int>(mention.box.center().y() / height);
        const QRectF box = mention.box.translated(_room.left(), _room.top() - page * height);
        _links.push_back({firstTextPage - 1 + page, inPoints(box), chapters[mention.chapter - 1]});
    }
}

void Pages::next()
{
    if (!_writer.newPage())
        throw std::runtime_error("cannot write the next page");
    ++_number;
    paintFoot();
}

void Pages::paintFoot()
{
    _painter.setFont(Letters(8));
    _painter.setPen(kGrey);
    const QRectF foot(_room.left(), _sheet.bottom() - Millimetres(kFootMillimetres + 5), _room.width(),
                      Millimetres(5));
    _painter.drawText(foot, Qt::AlignLeft | Qt::AlignVCenter, kTitle);
    _painter.drawText(foot, Qt::AlignRight | Qt::AlignVCenter, QString::number(_number));
}

void Pages::paintTitle(const QString& version, const QImage& picture)
{
    const double third = _sheet.height() / 5;
    _painter.setPen(kAccent);
    _painter.setFont(Letters(30, QFont::Bold));
    _painter.drawText(QRectF(_room.left(), third, _room.width(), Millimetres(16)), Qt::AlignLeft, kTitle);
    _painter.fillRect(QRectF(_room.left(), third + Millimetres(19), _room.width(), Millimetres(0.8)),
                      kAccent);
    _painter.setPen(Qt::black);
    _painter.setFont(Letters(15));
    _painter.drawText(QRectF(_room.left(), third + Millimetres(25), _room.width(), Millimetres(9)),
                      Qt::AlignLeft, QStringLiteral("User manual"));
    _painter.setPen(kGrey);
    _painter.setFont(Letters(10));
    _painter.drawText(QRectF(_room.left(), third + Millimetres(36), _room.width(), Millimetres(7)),
                      Qt::AlignLeft,
                      QStringLiteral("Kestrom\u2019s Gantrel %1. First edition.").arg(version));
    const double top = third + Millimetres(50), captionHeight = Millimetres(12);
    const QRectF free(_room.left(), top, _room.width(), _room.bottom() - top - captionHeight);
    const QSizeF size = QSizeF(picture.size()).scaled(free.size(), Qt::KeepAspectRatio);
    const double left = free.left() + (free.width() - size.width()) / 2;
    _painter.drawImage(QRectF(QPointF(left, top), size), picture);
    _painter.setFont(Letters(9));
    _painter.drawText(QRectF(free.left(), top + size.height() + Millimetres(3), free.width(), captionHeight),
                      Qt::AlignHCenter | Qt::TextWordWrap, kTitleCaption);
}

void Pages::paintContents(const std::vector<Entry>& entries, int firstTextPage)
{
    next();
    _painter.setFont(Letters(21, QFont::Bold));
    _painter.setPen(kAccent);
    _painter.drawText(QRectF(_room.left(), _room.top(), _room.width(), Millimetres(11)), Qt::AlignLeft,
                      QStringLiteral("Contents"));
    const double gap = Millimetres(8), height = Millimetres(kContentsLine);
    QRectF column(_room.left(), _room.top() + Millimetres(15), (_room.width() - gap) / 2, 0);
    column.setBottom(_room.bottom());
    double y = column.top();
    std::size_t painted = 0;
    for (const Entry& entry : entries) {
        if (entry.level == 1 && y > column.top())
            y += Millimetres(kContentsGap);
        // A chapter begins the second column, where about half is painted.
        if (entry.level == 1 && 2 * painted >= entries.size() && column.left() == _room.left()) {
            column.moveLeft(column.right() + gap);
            y = column.top();
        }
        if (y + height > column.bottom())
            throw std::runtime_error("the contents do not fit on their page");
        const QRectF line =
            paintLine(entry, firstTextPage + entry.page, QRectF(column.left(), y, column.width(), height));
        _links.push_back({_number - 1, inPoints(line), placeOf(entry, firstTextPage)});
        y += height;
        ++painted;
    }
}

QRectF Pages::paintLine(const Entry& entry, int page, QRectF line)
{
    line.setLeft(line.left() + Millimetres(entry.level == 1 ? 0 : 6));
    _painter.setPen(Qt::black);
    _painter.setFont(Letters(9, entry.level == 1 ? QFont::Bold : QFont::Normal));
    const QString number = QString::number(page);
    const QFontMetricsF metrics(_painter.font(), &_writer);
    _painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter, entry.text);
    _painter.drawText(line, Qt::AlignRight | Qt::AlignVCenter, number);
    const double from = line.left() + metrics.horizontalAdvance(entry.text) + Millimetres(2);
    const double to = line.right() - metrics.horizontalAdvance(number) - Millimetres(2);
    QPen dots(kGrey, Millimetres(0.25), Qt::DotLine);
    dots.setDashPattern({1, 6});
    _painter.setPen(dots);
    const double base = line.top() + 0.66 * line.height();
    if (entry.level > 1 && to > from)
        _painter.drawLine(QPointF(from, base), QPointF(to, base));
    return line;
}

void Pages::paintText(QTextDocument& document)
{
    QAbstractTextDocumentLayout::PaintContext context;
    context.palette.setColor(QPalette::Text, Qt::black);
    const QSizeF page = document.pageSize();
    for (int i = 0; i < document.pageCount(); ++i) {
        next();
        // What begins on the next page can do so a hair early, and would be on both.
        const QRectF shown(0, i * page.height(), page.width(), page.height() - Millimetres(0.2));
        _painter.save();
        _painter.translate(_room.left(), _room.top() - shown.top());
        // Lists' numbers stand out on the left.
        _painter.setClipRect(shown.adjusted(-Millimetres(5), 0, Millimetres(5), 0));
        context.clip = shown;
        document.documentLayout()->draw(&_painter, context);
        _painter.restore();
    }
}

void Save(const QByteArray& bytes, const QString& name)
{
    QFile file(name);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush())
        throw std::runtime_error("cannot write " + name.toStdString());
}

} // namespace

void WriteManual(const QString& file, const ManualParts& parts)
{
    QBuffer bytes;
    bytes.open(QIODevice::WriteOnly);
    QPdfWriter writer(&bytes);
    writer.setResolution(kDotsPerInch);
    writer.setPageSize(QPageSize(QPageSize::A4));
    writer.setPageMargins(QMarginsF(0, 0, 0, 0));
    writer.setTitle(kTitle + QStringLiteral(" Manual"));
    writer.setCreator(QStringLiteral("Gantrel ") + parts.version);
    QPainter painter(&writer);
    // Letters in pictures of windows would be blurred.
    painter.setRenderHint(QPainter::LosslessImageRendering);
    Pages pages(writer, painter);
    const std::unique_ptr<QTextDocument> text =
        MakeDocument(parts.chapters, QDir(parts.pictures), writer, pages.room().size());
    KeepTogether(*text);
    const std::vector<Entry> headings = ListHeadings(*text);
    const std::vector<Entry> contents = OfContents(headings);
    pages.paintTitle(parts.version, ReadPicture(parts.pictures + kTitlePicture));
    pages.paintContents(contents, kFirstTextPage);
    pages.paintText(*text);
    pages.linkText(*text, headings, kFirstTextPage);
    painter.end();
    PdfNavigation navigation{kAuthor, "en", {}, pages.links()};
    for (const Entry& entry : headings)
        navigation.bookmarks.push_back({entry.text, entry.level, pages.placeOf(entry, kFirstTextPage)});
    Save(WithNavigation(bytes.data(), navigation), file);
}

} // namespace manual
