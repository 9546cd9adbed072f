// The user manual: what it is made of, what it tells, and that the product opens it.
// SPDX-License-Identifier: MIT

#include "tests/desktop/desktop_fixture.h"
#include "tests/windows/modal_answer.h"

#include <QAbstractButton>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QProcess>
#include <QRegularExpression>
#include <QUrl>

#include <dzfigure.h>
#include <dzfloatproperty.h>
#include <dzmorph.h>
#include <dzobject.h>

namespace {

const QString manualPlace = QStringLiteral("/Plugins/Gantrel for Genesis 9/Gantrel for Genesis 9 Manual.pdf");

/// Where the desktop application finds it.
QString BuiltManual()
{
    return QFileInfo(QStringLiteral(GANTREL_DESKTOP)).absolutePath() + QStringLiteral("/documentation") +
           manualPlace;
}

QByteArray BytesOf(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

QString Output(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForFinished(60000)) << program.toStdString();
    EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
    return QString::fromUtf8(process.readAllStandardOutput());
}

/// Lines are broken anywhere on a page, and a message is a sentence there.
QString Comparable(QString text)
{
    text.replace(QLatin1String("``"), QStringLiteral("\u201C"));
    text.replace(QLatin1String("''"), QStringLiteral("\u201D"));
    text.remove(QRegularExpression(QStringLiteral("\\s+")));
    return text.toLower();
}

const QString& ManualText()
{
    static const QString text =
        Comparable(Output(QStringLiteral("pdftotext"), {BuiltManual(), QStringLiteral("-")}));
    return text;
}

QStringList Pages()
{
    return Output(QStringLiteral("pdftotext"),
                  {QStringLiteral("-layout"), BuiltManual(), QStringLiteral("-")})
        .split(QLatin1Char('\f'));
}

/// Whether the manual has the message with anything in the place of each "{}".
testing::AssertionResult HasMessage(const QString& message)
{
    QStringList parts;
    for (const QString& part : message.split(QStringLiteral("{}")))
        parts << QRegularExpression::escape(Comparable(part));
    const QRegularExpression pattern(parts.join(QStringLiteral(".{1,80}?")));
    if (pattern.match(ManualText()).hasMatch())
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "the manual does not tell of: " << message.toStdString();
}

/// The texts that a source file throws.
QStringList MessagesIn(const QString& source)
{
    static const QRegularExpression thrown(
        QStringLiteral("\\bException\\([^\";]*((?:\"(?:[^\"\\\\]|\\\\.)*\"\\s*)+)"));
    static const QRegularExpression literal(QStringLiteral("\"((?:[^\"\\\\]|\\\\.)*)\""));
    QStringList messages;
    const QString code = QString::fromUtf8(BytesOf(source));
    for (auto found = thrown.globalMatch(code); found.hasNext();) {
        QString message;
        for (auto part = literal.globalMatch(found.next().captured(1)); part.hasNext();)
            message += part.next().captured(1);
        messages << message;
    }
    return messages;
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
                          QStringLiteral("/documentation") + manualPlace;
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
        const auto line = QRegularExpression(QStringLiteral("^ *\\d+ +%1 +(\\d+)$").arg(heading),
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

TEST(Manual, is_not_made_without_one_of_its_pictures)
{
    const QDir folder(TestFolder());
    const QString chapter = folder.filePath(QStringLiteral("chapter.md"));
    QFile file(chapter);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("# Heading\n\n![A picture](pictures/missing.png)\n");
    file.close();
    QProcess maker;
    maker.start(QStringLiteral(GANTREL_MANUAL_PDF),
                {folder.filePath(QStringLiteral("out.pdf")), QStringLiteral("1"), folder.path(), chapter});
    ASSERT_TRUE(maker.waitForFinished(60000));
    EXPECT_EQ(maker.exitCode(), 1);
    EXPECT_TRUE(maker.readAllStandardError().contains("pictures/missing.png"));
}

TEST(Manual, tells_of_every_message_that_the_product_throws)
{
    const QDir plugin(QStringLiteral(GANTREL_SOURCE "/plugin"));
    QStringList messages;
    for (const QString& name : plugin.entryList({QStringLiteral("*.cpp")}, QDir::Files))
        messages += MessagesIn(plugin.filePath(name));
    EXPECT_TRUE(messages.contains(QStringLiteral("source figure {} has no morphs dialed in; nothing to do")));
    for (const QString& message : qAsConst(messages))
        EXPECT_TRUE(HasMessage(message));
}

TEST(Manual, tells_of_the_messages_of_the_library_below)
{
    const QDir library(QStringLiteral(GANTREL_SOURCE "/shared"));
    // What is not among them is not reached from the product.
    for (const char* const name :
         {"ks_daz-properties.cpp", "ks_filtered-save.cpp", "ks_morph-loader.cpp", "ks_obj-settings.cpp",
          "ks_qt-magic.cpp", "ks_transfer-utility.cpp", "ks_daz-managers.cpp"})
        for (const QString& message : MessagesIn(library.filePath(QLatin1String(name))))
            EXPECT_TRUE(HasMessage(message)) << name;
    for (const char* const message :
         {"node {} is not a DzFigure", "failed to export OBJ {}: {}", "failed to export import OBJ {}: {}",
          "failed to find property {} in node {}", "expected modifier to have exactly one property",
          "failed to get Daz Studio main window", "failed to get Daz Studio content manager",
          "failed to get Daz Studio asset manager", "failed to get Daz Studio asset IO manager",
          "failed to get Daz Studio action manager", "failed to find DzObjExporter",
          "failed to find DzObjImporter", "failed to invoke DzParametersPane::jumpToProperty()",
          "The file {} does not exist. Did you install the plugin correctly?"})
        EXPECT_TRUE(HasMessage(QLatin1String(message)));
}

TEST(Manual, tells_of_the_headings_of_the_boxes)
{
    for (const char* const heading :
         {"Could not convert figure", "Could not open PDF file", "Failed to save morph support assets",
          "Unhandled exception in button handler"})
        EXPECT_TRUE(HasMessage(QLatin1String(heading)));
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
}

/// The manual in the host's documentation folder, as after an installation.
class ManualOpening : public DesktopTest {
protected:
    void SetUp() override
    {
        DesktopTest::SetUp();
        start();
        _installed = dzApp->getDocumentationPath() + manualPlace;
        ASSERT_TRUE(QDir().mkpath(QFileInfo(_installed).absolutePath()));
        ASSERT_TRUE(QFile::copy(BuiltManual(), _installed));
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

TEST(DesktopPaths, has_the_documentation_beside_the_program)
{
    EXPECT_EQ(desktop::DocumentationFolderBesideProgram(),
              QCoreApplication::applicationDirPath() + QStringLiteral("/documentation"));
}

} // namespace

#include "manual_test.moc"
