// The user manual: what it is made of, and that the product opens it.
// SPDX-License-Identifier: MIT

#include "tests/desktop/desktop_fixture.h"
#include "tests/desktop/manual_reading.h"
#include "tests/desktop/viewer_register.h"
#include "tests/windows/modal_answer.h"

#include <QAbstractButton>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QProcess>
#include <QRectF>
#include <QRegularExpression>
#include <QUrl>

#include <algorithm>
#include <string>
#include <vector>

#include <dzaction.h>
#include <dzfigure.h>
#include <dzfloatproperty.h>
#include <dzmorph.h>
#include <dzobject.h>

namespace {

QStringList Pages()
{
    return Output(QStringLiteral("pdftotext"),
                  {QStringLiteral("-layout"), BuiltManual(), QStringLiteral("-")})
        .split(QLatin1Char('\f'));
}

struct Heading {
    int level;
    QString text;
};

/// Of level 1 with the chapters' numbers, as on the pages.
std::vector<Heading> Headings()
{
    std::vector<Heading> headings;
    int number = 0;
    for (const QString& chapter : ChapterFiles()) {
        for (const QString& line : ChapterText(chapter).split(QLatin1Char('\n'))) {
            const int level = line.indexOf(QLatin1Char(' '));
            if (level < 1 || line.leftRef(level) != QString(level, QLatin1Char('#')))
                continue;
            const QString text = line.mid(level + 1);
            headings.push_back({level, level == 1 ? QStringLiteral("%1 %2").arg(++number).arg(text) : text});
        }
    }
    return headings;
}

/// The manual as poppler describes it, with bookmarks and links.
const QString& Described()
{
    static const QString described =
        Output(QStringLiteral("pdftohtml"),
               {QStringLiteral("-xml"), QStringLiteral("-i"), QStringLiteral("-stdout"), BuiltManual()});
    return described;
}

class UrlCatcher : public QObject {
    Q_OBJECT

public:
    UrlCatcher() { QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "note"); }
    ~UrlCatcher() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }

    QList<QUrl> urls;

public slots:
    void note(const QUrl& url) { urls << url; }
};

TEST(Manual, is_a_pdf_of_some_pages)
{
    EXPECT_TRUE(BytesOf(BuiltManual()).startsWith("%PDF"));
    const QString facts = Output(QStringLiteral("pdfinfo"), {BuiltManual()});
    const auto pages = QRegularExpression(QStringLiteral("Pages:\\s+(\\d+)")).match(facts);
    ASSERT_TRUE(pages.hasMatch()) << facts.toStdString();
    EXPECT_GT(pages.captured(1).toInt(), 8);
    EXPECT_TRUE(facts.contains(QStringLiteral("(A4)"))) << facts.toStdString();
    EXPECT_TRUE(facts.contains(QStringLiteral("Gantrel for Genesis 9 Manual"))) << facts.toStdString();
}

TEST(Manual, lies_where_the_command_line_looks_for_it_too)
{
    const QString other = QFileInfo(QStringLiteral(GANTREL_CLI)).absolutePath() +
                          QStringLiteral("/documentation") + ManualPlace();
    EXPECT_EQ(BytesOf(other), BytesOf(BuiltManual()));
}

TEST(Manual, has_every_chapter_in_its_contents_with_the_page_that_it_begins_on)
{
    const QDir chapters(QStringLiteral(GANTREL_SOURCE "/docs/manual"));
    const QStringList pages = Pages();
    int chaptersSeen = 0;
    for (const QString& name : chapters.entryList({QStringLiteral("*.md")}, QDir::Files, QDir::Name)) {
        const QString heading =
            QString::fromUtf8(BytesOf(chapters.filePath(name))).section(QLatin1Char('\n'), 0, 0).mid(2);
        const auto line = QRegularExpression(QStringLiteral("\\b\\d+ +%1 +(\\d+)( |$)").arg(heading),
                                             QRegularExpression::MultilineOption)
                              .match(pages[1]);
        ASSERT_TRUE(line.hasMatch()) << name.toStdString();
        const int page = line.captured(1).toInt();
        ASSERT_LE(page, pages.size()) << name.toStdString();
        EXPECT_TRUE(pages[page - 1].contains(heading)) << name.toStdString();
        ++chaptersSeen;
    }
    EXPECT_GT(chaptersSeen, 8);
}

TEST(Manual, leaves_no_heading_alone_at_the_end_of_a_page)
{
    const QDir chapters(QStringLiteral(GANTREL_SOURCE "/docs/manual"));
    QStringList headings;
    for (const QString& name : chapters.entryList({QStringLiteral("*.md")}, QDir::Files))
        for (const QString& line :
             QString::fromUtf8(BytesOf(chapters.filePath(name))).split(QLatin1Char('\n')))
            if (line.startsWith(QLatin1Char('#')))
                headings << line.section(QLatin1Char(' '), 1);
    EXPECT_GT(headings.size(), 50);
    const QStringList pages = Pages();
    for (int i = 2; i < pages.size(); ++i) {
        QStringList lines = pages[i].split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        if (lines.size() < 2)
            continue;
        lines.removeLast(); // the page's number
        EXPECT_FALSE(headings.contains(lines.last().trimmed())) << "on page " << i + 1;
    }
}

TEST(Manual, fills_two_thirds_of_every_page_but_the_last)
{
    // The letters' boxes, of pages with a height in the same unit; the page's own number stands below the
    // text.
    const QString boxes =
        Output(QStringLiteral("pdftotext"), {QStringLiteral("-bbox"), BuiltManual(), QStringLiteral("-")});
    const QRegularExpression sheet(QStringLiteral("<page width=\"[^\"]*\" height=\"([^\"]*)\">(.*?)</page>"),
                                   QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpression word(QStringLiteral("yMax=\"([^\"]*)\""));
    std::vector<double> filled; // shares of the page
    for (auto page = sheet.globalMatch(boxes); page.hasNext();) {
        const auto found = page.next();
        const double height = found.captured(1).toDouble();
        double lowest = 0;
        for (auto at = word.globalMatch(found.captured(2)); at.hasNext();)
            if (const double bottom = at.next().captured(1).toDouble() / height; bottom < 0.93)
                lowest = std::max(lowest, bottom);
        filled.push_back(lowest);
    }
    ASSERT_GT(filled.size(), 20u);
    for (std::size_t i = 2; i + 1 < filled.size(); ++i) // behind the title and the contents
        EXPECT_GT(filled[i], 2.0 / 3.0) << "page " << i + 1;
}

TEST(Manual, keeps_each_line_of_commands_on_one_line)
{
    QString shown;
    for (const QString& page : Pages())
        for (const QString& line : page.split(QLatin1Char('\n')))
            shown += line.simplified() + QLatin1Char('\n');
    int lines = 0;
    for (const QString& chapter : ChapterFiles()) {
        bool isInside = false;
        for (const QString& line : ChapterText(chapter).split(QLatin1Char('\n'))) {
            if (line.startsWith(QStringLiteral("```"))) {
                isInside = !isInside;
            } else if (isInside && !line.trimmed().isEmpty()) {
                ++lines;
                EXPECT_TRUE(shown.contains(line.simplified() + QLatin1Char('\n')))
                    << "too long for the page: " << line.toStdString();
            }
        }
    }
    EXPECT_GT(lines, 50);
}

TEST(Manual, has_no_word_over_another)
{
    const QString boxes =
        Output(QStringLiteral("pdftotext"), {QStringLiteral("-bbox"), BuiltManual(), QStringLiteral("-")});
    const QRegularExpression word(QStringLiteral(
        "<word xMin=\"([^\"]*)\" yMin=\"([^\"]*)\" xMax=\"([^\"]*)\" yMax=\"([^\"]*)\">([^<]*)</word>"));
    int count = 0;
    for (const QString& page : boxes.split(QStringLiteral("</page>"))) {
        std::vector<std::pair<QRectF, QString>> words;
        for (auto at = word.globalMatch(page); at.hasNext();) {
            const auto found = at.next();
            const auto number = [&found](int which) { return found.captured(which).toDouble(); };
            words.emplace_back(QRectF(QPointF(number(1), number(2)), QPointF(number(3), number(4))),
                               found.captured(5));
        }
        count += static_cast<int>(words.size());
        for (std::size_t i = 0; i < words.size(); ++i)
            for (std::size_t j = i + 1; j < words.size(); ++j) {
                // Boxes of letters are higher than the letters, so that those of two lines may touch.
                const QRectF both = words[i].first.intersected(words[j].first);
                const double height = std::min(words[i].first.height(), words[j].first.height());
                EXPECT_FALSE(both.width() > 1.0 && both.height() > height / 3)
                    << words[i].second.toStdString() << " and " << words[j].second.toStdString();
            }
    }
    EXPECT_GT(count, 5000);
}

TEST(Manual, shows_a_source_and_its_result_on_its_title_and_says_so)
{
    const QString title = Pages()[0].simplified();
    EXPECT_TRUE(title.contains(QStringLiteral("Left: Vera, a Genesis 8 Female"))) << title.toStdString();
    EXPECT_TRUE(title.contains(QStringLiteral("Right: a Genesis 9 figure"))) << title.toStdString();
    const QImage picture(QStringLiteral(GANTREL_MANUAL "/pictures/source-and-result.png"));
    EXPECT_GT(picture.width(), 300);
    // Two figures of different make: the halves are alike and not the same.
    const int half = picture.width() / 2;
    EXPECT_NE(picture.copy(0, 0, half, picture.height()), picture.copy(half, 0, half, picture.height()));
}

TEST(Manual, shows_figures_by_themselves_without_what_lies_over_the_view)
{
    for (const auto& [name, columns] : {std::pair("source-and-result", 2), std::pair("head-and-body", 3)}) {
        const QImage picture(QStringLiteral(GANTREL_MANUAL "/pictures/%1.png").arg(QLatin1String(name)));
        const int width = picture.width() / columns, height = picture.height() / 2;
        for (int i = 0; i < 2 * columns; ++i) {
            // Beside a head there is nothing but the ground.
            QImage corner = picture.copy(width * (i % columns) + width * 3 / 4, height * (i / columns),
                                         width / 4, height / 5);
            QImage ground = corner;
            ground.fill(corner.pixel(0, 0));
            EXPECT_EQ(corner, ground) << name << ", view " << i;
        }
    }
}

TEST(Manual, has_a_bookmark_for_every_heading_that_leads_to_its_page)
{
    const QStringList pages = Pages();
    const QRegularExpression item(QStringLiteral("<item page=\"(\\d+)\">([^<]*)</item>"));
    auto found = item.globalMatch(Described());
    for (const Heading& heading : Headings()) {
        ASSERT_TRUE(found.hasNext()) << heading.text.toStdString();
        const auto bookmark = found.next();
        EXPECT_EQ(bookmark.captured(2), heading.text.toHtmlEscaped());
        const int page = bookmark.captured(1).toInt();
        ASSERT_LE(page, pages.size());
        EXPECT_TRUE(Comparable(pages[page - 1]).contains(Comparable(heading.text)))
            << heading.text.toStdString() << " on page " << page;
    }
    EXPECT_FALSE(found.hasNext());
}

TEST(Manual, folds_its_bookmarks_below_their_chapters)
{
    std::string expected, got;
    int level = 0;
    for (const Heading& heading : Headings()) {
        for (; level < heading.level; ++level)
            expected += '(';
        for (; level > heading.level; --level)
            expected += ')';
        expected += '.';
    }
    const QRegularExpression part(QStringLiteral("<(/?outline|item) ?[^>]*>"));
    for (auto found = part.globalMatch(Described()); found.hasNext();) {
        const QString tag = found.next().captured(1);
        got += tag == QLatin1String("item") ? '.' : tag == QLatin1String("outline") ? '(' : ')';
    }
    expected += std::string(static_cast<std::size_t>(level), ')');
    EXPECT_EQ(got, expected);
}

TEST(Manual, leads_from_each_line_of_the_contents_to_the_page_that_it_names)
{
    const QString contents = Described()
                                 .section(QStringLiteral("<page number=\"2\""), 1, 1)
                                 .section(QStringLiteral("</page>"), 0, 0);
    const QRegularExpression number(QStringLiteral("<a href=\"[^\"]*#(\\d+)\">(?:<b>)?(\\d+)(?:</b>)?</a>"));
    int lines = 0;
    for (auto found = number.globalMatch(contents); found.hasNext(); ++lines) {
        const auto line = found.next();
        EXPECT_EQ(line.captured(1), line.captured(2));
    }
    EXPECT_GT(lines, 40);
}

TEST(Manual, leads_from_the_mention_of_a_chapter_to_its_first_page)
{
    QStringList firstPages;
    const QRegularExpression chapter(QStringLiteral("<item page=\"(\\d+)\">\\d+ "));
    for (auto found = chapter.globalMatch(Described()); found.hasNext();)
        firstPages << found.next().captured(1);
    const QRegularExpression link(QStringLiteral("<a href=\"[^\"]*#(\\d+)\">[Cc]hapter (\\d+)[ ,.;]*</a>"));
    int seen = 0;
    for (auto found = link.globalMatch(Described()); found.hasNext(); ++seen) {
        const auto mention = found.next();
        EXPECT_EQ(mention.captured(1), firstPages.value(mention.captured(2).toInt() - 1));
    }
    EXPECT_GT(seen, 10);
}

TEST(Manual, tells_who_made_it_and_brings_its_letters_along)
{
    const QString facts = Output(QStringLiteral("pdfinfo"), {BuiltManual()});
    EXPECT_TRUE(QRegularExpression(QStringLiteral("Author:\\s+Kestrom\\n")).match(facts).hasMatch());
    EXPECT_TRUE(BytesOf(BuiltManual()).contains("/Lang (en)"));
    QStringList fonts =
        Output(QStringLiteral("pdffonts"), {BuiltManual()}).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    ASSERT_GT(fonts.size(), 3);
    for (const QString& font : fonts.mid(2)) // below the table's head
        EXPECT_TRUE(font.contains(QRegularExpression(QStringLiteral("Identity-H +yes "))))
            << font.toStdString();
}

/// What the maker says about a chapter's text that it refuses.
QByteArray Refusal(const char* text, const QString& pictures)
{
    const QDir folder(TestFolder());
    const QString chapter = folder.filePath(QStringLiteral("chapter.md"));
    QFile file(chapter);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text);
    file.close();
    const QString pdf = folder.filePath(QStringLiteral("refused.pdf"));
    QProcess maker;
    maker.start(QStringLiteral(GANTREL_MANUAL_PDF), {pdf, QStringLiteral("1"), pictures, chapter});
    EXPECT_TRUE(maker.waitForFinished(60000));
    EXPECT_EQ(maker.exitCode(), 1);
    EXPECT_FALSE(QFileInfo::exists(pdf));
    return maker.readAllStandardError();
}

TEST(Manual, is_not_made_without_one_of_its_pictures)
{
    EXPECT_TRUE(Refusal("# Heading\n\n![A picture](pictures/missing.png)\n", TestFolder())
                    .contains("pictures/missing.png"));
}

TEST(Manual, is_not_made_when_it_speaks_of_a_chapter_that_is_not_there)
{
    EXPECT_TRUE(Refusal("# Heading\n\nSee chapter 2.\n", QStringLiteral(GANTREL_MANUAL))
                    .contains("there is no chapter 2"));
}

TEST(Manual, has_each_picture_that_its_text_names)
{
    const QDir chapters(QStringLiteral(GANTREL_SOURCE "/docs/manual"));
    const QRegularExpression named(QStringLiteral("!\\[([^\\]]+)\\]\\(([^)]+)\\)"));
    int seen = 0;
    for (const QString& name : chapters.entryList({QStringLiteral("*.md")}, QDir::Files)) {
        const QString text = QString::fromUtf8(BytesOf(chapters.filePath(name)));
        for (auto found = named.globalMatch(text); found.hasNext(); ++seen) {
            const auto picture = found.next();
            const QImage image(QStringLiteral(GANTREL_MANUAL) + QLatin1Char('/') + picture.captured(2));
            EXPECT_GT(image.width(), 300) << picture.captured(2).toStdString();
            EXPECT_TRUE(HasMessage(picture.captured(1))) << "as a caption";
        }
    }
    EXPECT_GE(seen, 6);
    const QStringList images = Output(QStringLiteral("pdfimages"), {QStringLiteral("-list"), BuiltManual()})
                                   .split(QLatin1Char('\n'));
    EXPECT_GE(images.filter(QStringLiteral(" image ")).size(), seen);
    EXPECT_TRUE(images.filter(QStringLiteral(" jpeg ")).isEmpty()) << "letters in them are blurred";
}

/// The manual in the host's documentation folder, as after an installation.
class ManualOpening : public DesktopTest {
protected:
    void SetUp() override
    {
        DesktopTest::SetUp();
        start();
        _installed = dzApp->getDocumentationPath() + ManualPlace();
        ASSERT_TRUE(QDir().mkpath(QFileInfo(_installed).absolutePath()));
        ASSERT_TRUE(QFile::copy(BuiltManual(), _installed));
        _register.haveProgramsFor("application/pdf");
    }
    void TearDown() override
    {
        QFile::remove(_installed);
        DesktopTest::TearDown();
    }
    /// Of what the host was asked to show.
    void expectOpened() const
    {
        ASSERT_EQ(_catcher.urls.size(), 1);
        EXPECT_EQ(_catcher.urls[0].toString(), QStringLiteral("file:///") + _installed);
        EXPECT_EQ(QDir::cleanPath(_catcher.urls[0].toLocalFile()), _installed);
    }

private:
    ViewerRegister _register;
    UrlCatcher _catcher;
    QString _installed;
};

TEST_F(ManualOpening, by_the_menu_shows_exactly_that_file)
{
    QAction* const action = entry("Open Gantrel PDF manual");
    ASSERT_NE(action, nullptr);
    action->trigger();
    expectOpened();
}

TEST_F(ManualOpening, from_the_help_menu_shows_it_too)
{
    QAction* const action = entry("Gantrel Manual");
    ASSERT_NE(action, nullptr);
    EXPECT_EQ(qobject_cast<const DzAction*>(action)->getDefaultMenuPath(), QLatin1String("&Help"));
    action->trigger();
    expectOpened();
}

TEST_F(ManualOpening, by_the_dialog_s_help_button_shows_exactly_that_file)
{
    ASSERT_TRUE(desktop->files().openFile(pathOf(sourceFile)));
    DzNode* const source = dzScene->getPrimarySelection();
    auto* const wide = qobject_cast<DzMorph*>(source->getObject()->findModifier(QStringLiteral("Wide")));
    ASSERT_NE(wide, nullptr);
    wide->getValueChannel()->setValue(1.0f);
    ASSERT_TRUE(desktop->files().openFile(pathOf(targetFile)));
    source->select(true);
    ModalAnswer dialog([](QWidget& window) {
        for (auto* const button : window.findChildren<QAbstractButton*>())
            if (button->accessibleName() == QStringLiteral("Help"))
                button->click();
    });
    entry("Convert selected Genesis 3 / 8 / 8.1 figure...")->trigger();
    EXPECT_TRUE(dialog.seen);
    expectOpened();
}

} // namespace

#include "manual_test.moc"
