// The manual's pages: title, contents and text.
// SPDX-License-Identifier: MIT

#include "docs/manual/maker/manual_pages.h"

#include "docs/manual/maker/manual_text.h"

#include <QAbstractTextDocumentLayout>
#include <QPainter>
#include <QPalette>
#include <QPdfWriter>
#include <QTextBlock>

#include <stdexcept>
#include <vector>

namespace manual {

namespace {

constexpr int kDotsPerInch = 600;
constexpr double kSideMillimetres = 21.0;
constexpr double kTopMillimetres = 19.0;
constexpr double kFootMillimetres = 12.0; ///< of the page number above the page's end
const QString kTitle = QStringLiteral("Gantrel for Genesis 9");
const QString kTitlePicture = QStringLiteral("/pictures/head-and-body.png");
const QColor kAccent(0x1f, 0x4e, 0x79);
const QColor kGrey(0x60, 0x68, 0x70);

double Millimetres(double value)
{
    return value * kDotsPerInch / 25.4;
}

struct Entry {
    QString text;
    int level;
    int page; ///< of the text, from 0
};

std::vector<Entry> ListContents(const QTextDocument& document)
{
    std::vector<Entry> entries;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        const int level = HeadingLevel(block);
        if (level == 1 || level == 2)
            entries.push_back({block.text(), level, PageOf(document, block)});
    }
    return entries;
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
    /// @return how many pages they take; painted only when wanted
    int paintContents(const std::vector<Entry>& entries, int firstTextPage, bool isPainted);
    void paintText(QTextDocument& document);

private:
    void next();
    void paintFoot();
    void paintLine(const Entry& entry, int page, double y, double height);

    QPdfWriter& _writer;
    QPainter& _painter;
    QRectF _sheet;
    QRectF _room;
    int _number = 1;
};

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
    const QSizeF size = QSizeF(picture.size()).scaled(_room.size(), Qt::KeepAspectRatio);
    _painter.drawImage(QRectF(QPointF(_room.left(), third + Millimetres(55)), size), picture);
}

int Pages::paintContents(const std::vector<Entry>& entries, int firstTextPage, bool isPainted)
{
    int pages = 1;
    double y = _room.top();
    if (isPainted) {
        next();
        _painter.setFont(Letters(21, QFont::Bold));
        _painter.setPen(kAccent);
        _painter.drawText(QRectF(_room.left(), y, _room.width(), Millimetres(11)), Qt::AlignLeft,
                          QStringLiteral("Contents"));
    }
    y += Millimetres(13);
    for (const Entry& entry : entries) {
        const double gap = Millimetres(entry.level == 1 ? 1.0 : 0.0);
        const double height = Millimetres(4.2);
        if (y + gap + height > _room.bottom()) {
            ++pages;
            y = _room.top();
            if (isPainted)
                next();
        }
        y += gap;
        if (isPainted)
            paintLine(entry, firstTextPage + entry.page, y, height);
        y += height;
    }
    return pages;
}

void Pages::paintLine(const Entry& entry, int page, double y, double height)
{
    _painter.setPen(Qt::black);
    _painter.setFont(Letters(9, entry.level == 1 ? QFont::Bold : QFont::Normal));
    const QString number = QString::number(page);
    const QFontMetricsF metrics(_painter.font(), &_writer);
    const QRectF line(_room.left() + Millimetres(entry.level == 1 ? 0 : 6), y,
                      _room.width() - Millimetres(entry.level == 1 ? 0 : 6), height);
    _painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter, entry.text);
    _painter.drawText(line, Qt::AlignRight | Qt::AlignVCenter, number);
    const double from = line.left() + metrics.horizontalAdvance(entry.text) + Millimetres(2);
    const double to = line.right() - metrics.horizontalAdvance(number) - Millimetres(2);
    QPen dots(kGrey, Millimetres(0.25), Qt::DotLine);
    dots.setDashPattern({1, 6});
    _painter.setPen(dots);
    const double base = y + 0.66 * height;
    if (entry.level > 1 && to > from)
        _painter.drawLine(QPointF(from, base), QPointF(to, base));
}

void Pages::paintText(QTextDocument& document)
{
    QAbstractTextDocumentLayout::PaintContext context;
    context.palette.setColor(QPalette::Text, Qt::black);
    const QSizeF page = document.pageSize();
    for (int i = 0; i < document.pageCount(); ++i) {
        next();
        const QRectF shown(0, i * page.height(), page.width(), page.height());
        _painter.save();
        _painter.translate(_room.left(), _room.top() - shown.top());
        // Lists' numbers stand out on the left, and what begins on the next page can do so a hair early.
        _painter.setClipRect(shown.adjusted(-Millimetres(5), 0, Millimetres(5), -Millimetres(0.2)));
        context.clip = shown;
        document.documentLayout()->draw(&_painter, context);
        _painter.restore();
    }
}

} // namespace

void WriteManual(const QString& file, const ManualParts& parts)
{
    QPdfWriter writer(file);
    writer.setResolution(kDotsPerInch);
    writer.setPageSize(QPageSize(QPageSize::A4));
    writer.setPageMargins(QMarginsF(0, 0, 0, 0));
    writer.setTitle(kTitle + QStringLiteral(" Manual"));
    writer.setCreator(QStringLiteral("Gantrel ") + parts.version);
    QPainter painter(&writer);
    if (!painter.isActive())
        throw std::runtime_error("cannot write " + file.toStdString());
    Pages pages(writer, painter);
    const std::unique_ptr<QTextDocument> text =
        MakeDocument(parts.chapters, QDir(parts.pictures), writer, pages.room().size());
    KeepTogether(*text);
    const std::vector<Entry> entries = ListContents(*text);
    const int firstTextPage = 2 + pages.paintContents(entries, 0, false);
    pages.paintTitle(parts.version, ReadPicture(parts.pictures + kTitlePicture));
    pages.paintContents(entries, firstTextPage, true);
    pages.paintText(*text);
    if (!painter.end())
        throw std::runtime_error("cannot write " + file.toStdString());
}

} // namespace manual
