// The manual's text as a formatted document.
// SPDX-License-Identifier: MIT

#include "manual_text.h"

#include <QAbstractTextDocumentLayout>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextList>
#include <QTextTable>
#include <QUrl>

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <vector>

namespace manual {

namespace {

// Sizes without a unit are of the 96th part of an inch, as documents have them.
constexpr double kTextPoints = 9.5;
constexpr double kCodePoints = 8.0;
constexpr double kCaptionPoints = 8.5;
constexpr double kParagraphGap = 7.0;
constexpr double kItemGap = 3.0;
constexpr double kLineHeight = 118.0; ///< percent
constexpr double kTallestPicture = 380.0;
constexpr double kPicturePixel = 0.38;   ///< pictures have two pixels for one, and may be a little smaller
constexpr double kSmallerPicture = 0.55; ///< the least that a picture is made smaller for the rest of a page
constexpr double kLargestGap = 0.25; ///< of a page, that may stay empty for a table to begin on the next one
constexpr int kWholeLines = 4;       ///< paragraphs of no more stay on one page
const QColor kAccent(0x1f, 0x4e, 0x79);
const QColor kCodeGround(0xf1, 0xf3, 0xf5);

struct HeadingLook {
    double points, gapBefore, gapAfter;
};
const HeadingLook kHeadings[] = {{19, 34, 10}, {13, 18, 5}, {10, 11, 3}};

QString ReadText(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("cannot read " + path.toStdString());
    return QString::fromUtf8(file.readAll());
}

QTextCursor Whole(const QTextBlock& block)
{
    QTextCursor cursor(block);
    cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
    return cursor;
}

bool IsCode(const QTextBlock& block)
{
    return block.blockFormat().hasProperty(QTextFormat::BlockCodeFence);
}

bool IsInTable(const QTextBlock& block)
{
    return QTextCursor(block).currentTable() != nullptr;
}

QTextImageFormat ImageOf(const QTextBlock& block)
{
    for (auto it = block.begin(); !it.atEnd(); ++it)
        if (it.fragment().charFormat().isImageFormat())
            return it.fragment().charFormat().toImageFormat();
    return {};
}

std::vector<QTextBlock> BlocksOf(const QTextDocument& document)
{
    std::vector<QTextBlock> blocks;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
        blocks.push_back(block);
    return blocks;
}

void SetFixedLetters(QTextCharFormat& format, double points)
{
    format.setFontFamily(QStringLiteral("DejaVu Sans Mono"));
    format.setFontFamilies({QStringLiteral("DejaVu Sans Mono")});
    format.setFontPointSize(points);
}

void FormatHeading(const QTextBlock& block)
{
    const int level = std::min(HeadingLevel(block), 3);
    const HeadingLook& look = kHeadings[level - 1];
    QTextCursor cursor = Whole(block);
    QTextCharFormat letters;
    letters.setFont(Letters(look.points, QFont::Bold), QTextCharFormat::FontPropertiesAll);
    letters.setForeground(kAccent);
    letters.clearProperty(QTextFormat::FontSizeAdjustment);
    cursor.setCharFormat(letters);
    QTextBlockFormat format = block.blockFormat();
    format.setTopMargin(look.gapBefore);
    format.setBottomMargin(look.gapAfter);
    cursor.setBlockFormat(format);
}

void FormatCode(const QTextBlock& block)
{
    QTextCursor cursor = Whole(block);
    QTextCharFormat letters;
    SetFixedLetters(letters, kCodePoints);
    cursor.mergeCharFormat(letters);
    QTextBlockFormat format = block.blockFormat();
    format.setBackground(kCodeGround);
    format.setLeftMargin(0);
    format.setTopMargin(0);
    const bool isLast = !IsCode(block.next());
    format.setBottomMargin(isLast ? kParagraphGap + 3 : 0);
    format.setTextIndent(6);
    format.setNonBreakableLines(false);
    cursor.setBlockFormat(format);
}

const QRegularExpression& MentionPattern()
{
    static const QRegularExpression pattern(QStringLiteral("\\b[Cc]hapter (\\d+)\\b"));
    return pattern;
}

void ColourMentions(const QTextBlock& block)
{
    for (auto found = MentionPattern().globalMatch(block.text()); found.hasNext();) {
        const auto mention = found.next();
        QTextCursor cursor(block);
        cursor.setPosition(block.position() + mention.capturedStart());
        cursor.setPosition(block.position() + mention.capturedEnd(), QTextCursor::KeepAnchor);
        QTextCharFormat letters;
        letters.setForeground(kAccent);
        cursor.mergeCharFormat(letters);
    }
}

/// Of words in fixed letters within a text, which look larger than those around them.
void FormatWords(const QTextBlock& block)
{
    for (auto it = block.begin(); !it.atEnd(); ++it) {
        // Everything else has the document's own.
        const QTextCharFormat format = it.fragment().charFormat();
        if (!format.hasProperty(QTextFormat::FontFamily) && !format.hasProperty(QTextFormat::FontFamilies))
            continue;
        QTextCursor cursor(block);
        cursor.setPosition(it.fragment().position());
        cursor.setPosition(it.fragment().position() + it.fragment().length(), QTextCursor::KeepAnchor);
        QTextCharFormat letters;
        SetFixedLetters(letters, kTextPoints - 1);
        cursor.mergeCharFormat(letters);
    }
}

void FormatParagraph(const QTextBlock& block)
{
    FormatWords(block);
    ColourMentions(block);
    QTextCursor cursor(block);
    QTextBlockFormat format = block.blockFormat();
    format.setLineHeight(kLineHeight, QTextBlockFormat::ProportionalHeight);
    format.setTopMargin(0);
    const bool isItem = block.textList() && block.next().textList() == block.textList();
    format.setBottomMargin(IsInTable(block) ? 0 : isItem ? kItemGap : kParagraphGap);
    cursor.setBlockFormat(format);
}

/// Centres the picture, as large as it has room, with its name below.
void FormatPicture(const QTextBlock& block, QTextImageFormat image, const QDir& pictures, double width)
{
    const QImage picture = ReadPicture(pictures.filePath(image.name()));
    QTextDocument& document = const_cast<QTextDocument&>(*block.document());
    document.addResource(QTextDocument::ImageResource, QUrl(image.name()), picture);
    const double scale =
        std::min({kPicturePixel, width / picture.width(), kTallestPicture / picture.height()});
    image.setWidth(scale * picture.width());
    image.setHeight(scale * picture.height());
    const QString caption = image.property(QTextFormat::ImageAltText).toString();

    QTextCursor cursor = Whole(block);
    cursor.insertImage(image);
    QTextBlockFormat format;
    format.setAlignment(Qt::AlignHCenter);
    format.setTopMargin(kParagraphGap);
    format.setBottomMargin(kItemGap);
    cursor.setBlockFormat(format);
    format.setTopMargin(0);
    format.setBottomMargin(2 * kParagraphGap);
    QTextCharFormat letters;
    letters.setFontPointSize(kCaptionPoints);
    letters.setFontItalic(true);
    cursor.insertBlock(format, letters);
    cursor.insertText(caption);
}

void FormatTable(QTextTable& table)
{
    QTextTableFormat format = table.format();
    format.setWidth(QTextLength(QTextLength::PercentageLength, 100));
    format.setBorder(0.5);
    format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
    format.setBorderBrush(QColor(0xb0, 0xb8, 0xc0));
    format.setBorderCollapse(true);
    format.setCellPadding(4);
    format.setCellSpacing(0);
    format.setTopMargin(kItemGap);
    format.setBottomMargin(2 * kParagraphGap);
    format.setHeaderRowCount(1);
    format.setColumnWidthConstraints({});
    table.setFormat(format);
    for (int column = 0; column < table.columns(); ++column) {
        QTextTableCell cell = table.cellAt(0, column);
        QTextCharFormat ground = cell.format();
        ground.setBackground(QColor(0xe3, 0xea, 0xf1));
        cell.setFormat(ground);
        QTextCursor words = cell.firstCursorPosition();
        words.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
        QTextCharFormat letters;
        letters.setFontWeight(QFont::Bold);
        words.mergeCharFormat(letters);
    }
}

void NumberChapters(QTextDocument& document)
{
    int number = 0;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
        if (HeadingLevel(block) == 1)
            QTextCursor(block).insertText(QStringLiteral("%1  ").arg(++number));
}

void RemoveEmptyCode(QTextDocument& document)
{
    for (const QTextBlock& block : BlocksOf(document)) {
        if (!IsCode(block) || !block.text().isEmpty() || IsCode(block.next()))
            continue;
        QTextCursor cursor(block);
        cursor.deletePreviousChar();
    }
}

/// Those that the reader of Markdown leaves behind a table.
void RemoveEmptyParagraphs(QTextDocument& document)
{
    for (const QTextBlock& block : BlocksOf(document))
        if (block.text().isEmpty() && block.next().isValid() && !IsInTable(block) && !IsCode(block))
            QTextCursor(block).deleteChar();
}

void Format(QTextDocument& document, const QDir& pictures, double width)
{
    NumberChapters(document);
    RemoveEmptyCode(document);
    RemoveEmptyParagraphs(document);
    for (const QTextBlock& block : BlocksOf(document)) {
        const QTextImageFormat image = ImageOf(block);
        if (!image.name().isEmpty())
            FormatPicture(block, image, pictures, width);
        else if (HeadingLevel(block) > 0)
            FormatHeading(block);
        else if (IsCode(block))
            FormatCode(block);
        else
            FormatParagraph(block);
    }
    for (QTextFrame* const frame : document.rootFrame()->childFrames())
        if (auto* const table = qobject_cast<QTextTable*>(frame))
            FormatTable(*table);
}

int PageOfLine(const QTextDocument& document, const QTextBlock& block, int line)
{
    // Its middle: a line that is pushed to the next page can begin a hair before it.
    return static_cast<int>(LineBox(document, block, line).center().y() / document.pageSize().height());
}

QRectF BoxOfLetters(const QTextDocument& document, const QTextBlock& block, int from, int length)
{
    const QTextLine line = block.layout()->lineForTextPosition(from);
    const double left = line.cursorToX(from);
    const int end = std::min(from + length, line.textStart() + line.textLength());
    const QRectF whole = LineBox(document, block, line.lineNumber());
    const double origin = whole.left() - line.x();
    return QRectF(origin + left, whole.top(), line.cursorToX(end) - left, whole.height());
}

/// A list's first two lines stay together, and so do its last two.
bool IsFirstOrLastButOne(const QTextBlock& block)
{
    const QTextList* const list = block.textList();
    if (!list || block.next().textList() != list)
        return false;
    const int number = list->itemNumber(block);
    return number == 0 || number == list->count() - 2;
}

bool StandsWithNext(const QTextBlock& block)
{
    if (!block.next().isValid() || IsInTable(block))
        return false;
    const bool introduces = block.text().endsWith(QLatin1Char(':')) || IsCode(block);
    const bool isCodeEnd = IsCode(block) && !IsCode(block.next());
    const bool leadsIn =
        !block.textList() && (IsInTable(block.next()) || !ImageOf(block.next()).name().isEmpty());
    return HeadingLevel(block) > 0 || leadsIn || IsFirstOrLastButOne(block) ||
           !ImageOf(block).name().isEmpty() || (introduces && !isCodeEnd);
}

/// The first block of those that must not be parted from this one.
QTextBlock FirstOfGroup(QTextBlock block)
{
    while (block.previous().isValid() && StandsWithNext(block.previous()))
        block = block.previous();
    return block;
}

/// Of a page, that would stay empty if the block began on the next one.
double GapBefore(const QTextDocument& document, const QTextBlock& block)
{
    const double top = LineBox(document, FirstOfGroup(block), 0).top() / document.pageSize().height();
    return 1.0 - (top - std::floor(top));
}

/// Where the block is the first of a table that does not fit on the rest of this page, and little is left of
/// that.
bool BeginsTornTable(const QTextDocument& document, const QTextBlock& block)
{
    const QTextTable* const table = QTextCursor(block).currentTable();
    if (!table || table->firstCursorPosition().block() != block)
        return false;
    const QRectF box = document.documentLayout()->frameBoundingRect(const_cast<QTextTable*>(table));
    const double height = document.pageSize().height();
    return static_cast<int>(box.top() / height) != static_cast<int>(box.bottom() / height) &&
           GapBefore(document, block) < kLargestGap;
}

bool IsTornApart(const QTextDocument& document, const QTextBlock& block)
{
    if (BeginsTornTable(document, block))
        return true;
    const int page = PageOf(document, block);
    const double top = document.documentLayout()->blockBoundingRect(block).top();
    // A block that begins with its margin alone would be painted on both pages.
    if (!IsInTable(block) && static_cast<int>(top / document.pageSize().height()) != page)
        return true;
    if (StandsWithNext(block))
        return PageOf(document, block.next()) != page;
    const int lines = block.layout()->lineCount();
    if (IsInTable(block) || lines < 2)
        return false;
    return PageOfLine(document, block, lines <= kWholeLines ? lines - 1 : 1) != page;
}

/// Makes a picture that is torn from the block, or is the block and torn from its caption, smaller, where it
/// then has room below what stands before it.
/// @return whether that was done
bool FitPictureBelow(QTextDocument& document, const QTextBlock& block)
{
    const bool isPicture = !ImageOf(block).name().isEmpty();
    const QTextBlock above = isPicture ? block.previous() : block, below = above.next();
    QTextImageFormat image = below.isValid() ? ImageOf(below) : QTextImageFormat();
    if (image.name().isEmpty())
        return false;
    const QAbstractTextDocumentLayout& layout = *document.documentLayout();
    const double height = document.pageSize().height();
    const double end = (PageOf(document, above) + 1) * height;
    const double caption = 3 * layout.blockBoundingRect(below.next()).height(); // with the room around both
    const double shown = LineBox(document, below, 0).height();
    const double scale = (end - layout.blockBoundingRect(above).bottom() - caption) / shown;
    if (scale < kSmallerPicture || scale >= 1)
        return false;
    image.setWidth(scale * image.width());
    image.setHeight(scale * image.height());
    Whole(below).setCharFormat(image);
    document.markContentsDirty(0, document.characterCount());
    return true;
}

/// A table that ends on the next page with nothing but the room below it would have its header painted there
/// again, over the text.
void EndTableOnPageOf(QTextDocument& document, const QTextBlock& last)
{
    QTextTable& table = *QTextCursor(last).currentTable();
    const QRectF box = document.documentLayout()->frameBoundingRect(&table);
    const int page = PageOfLine(document, last, std::max(last.layout()->lineCount() - 1, 0));
    if (static_cast<int>(box.bottom() / document.pageSize().height()) == page)
        return;
    QTextTableFormat format = table.format();
    format.setBottomMargin(0);
    table.setFormat(format);
    document.markContentsDirty(0, document.characterCount());
}

void BreakBefore(const QTextBlock& block)
{
    if (QTextTable* const table = QTextCursor(block).currentTable()) {
        QTextTableFormat format = table->format();
        format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
        table->setFormat(format);
        return;
    }
    QTextBlockFormat format = block.blockFormat();
    format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
    format.setTopMargin(0);
    QTextCursor(block).setBlockFormat(format);
}

} // namespace

std::unique_ptr<QTextDocument> MakeDocument(const QStringList& chapters, const QDir& pictures,
                                            QPaintDevice& device, const QSizeF& page)
{
    QString text;
    for (const QString& chapter : chapters)
        text += ReadText(chapter) + QStringLiteral("\n\n");
    auto document = std::make_unique<QTextDocument>();
    document->setDefaultFont(Letters(kTextPoints));
    document->setDocumentMargin(0);
    document->setIndentWidth(25);
    document->setMarkdown(text, QTextDocument::MarkdownDialectGitHub);
    const double unit = device.logicalDpiX() / 96.0;
    Format(*document, pictures, page.width() / unit);
    document->documentLayout()->setPaintDevice(&device);
    document->setPageSize(page);
    return document;
}

void KeepTogether(QTextDocument& document)
{
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        if (!IsInTable(block) && block.previous().isValid() && IsInTable(block.previous()))
            EndTableOnPageOf(document, block.previous());
        if (!IsTornApart(document, block) ||
            (FitPictureBelow(document, block) && !IsTornApart(document, block)))
            continue;
        BreakBefore(FirstOfGroup(block));
        // All of it: what follows a new break can be left without lines otherwise.
        document.markContentsDirty(0, document.characterCount());
    }
}

QRectF LineBox(const QTextDocument& document, const QTextBlock& block, int line)
{
    const QPointF corner = document.documentLayout()->blockBoundingRect(block).topLeft();
    const QTextLine at = block.layout()->lineAt(line);
    return at.isValid() ? at.rect().translated(corner) : QRectF(corner, QSizeF());
}

std::vector<Mention> FindMentions(const QTextDocument& document)
{
    std::vector<Mention> mentions;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        if (HeadingLevel(block) > 0)
            continue;
        for (auto found = MentionPattern().globalMatch(block.text()); found.hasNext();) {
            const auto mention = found.next();
            mentions.push_back(
                {mention.captured(1).toInt(),
                 BoxOfLetters(document, block, mention.capturedStart(), mention.capturedLength())});
        }
    }
    return mentions;
}

QImage ReadPicture(const QString& path)
{
    QImage picture(path);
    if (picture.isNull())
        throw std::runtime_error("cannot read " + path.toStdString());
    return picture;
}

int PageOf(const QTextDocument& document, const QTextBlock& block)
{
    return PageOfLine(document, block, 0);
}

QFont Letters(double points, QFont::Weight weight)
{
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPointSizeF(points);
    font.setWeight(weight);
    // Too little to see; with it there are no ligatures, which a search in the file would not find.
    font.setLetterSpacing(QFont::AbsoluteSpacing, 0.02);
    return font;
}

int HeadingLevel(const QTextBlock& block)
{
    return block.blockFormat().headingLevel();
}

} // namespace manual
