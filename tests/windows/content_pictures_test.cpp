// Pictures of content files: those beside them, and those that a program draws.
// SPDX-License-Identifier: MIT

#include "host/ui/picture_cache.h"
#include "openhost/content_pictures.h"
#include "tests/host/host_fixture.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QTest>

#include <memory>

namespace {

using openhost::ContentPictures;

class ContentPicturesTest : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        static int number = 0;
        _folder = TestFolder() + QStringLiteral("/pictures %1").arg(number++);
        ASSERT_TRUE(QDir().mkpath(_folder));
        pictures = std::make_unique<ContentPictures>();
    }

    QString at(const char* name) const { return _folder + QLatin1Char('/') + QLatin1String(name); }
    QString cacheFolder() const { return at("cache/of pictures"); }
    static void write(const QString& file, const QByteArray& bytes)
    {
        QFile out(file);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly | QIODevice::Truncate));
        out.write(bytes);
    }
    QString writeAsset(const char* name, const char* type) const
    {
        write(at(name), QByteArray("{\"asset_info\":{\"type\":\"") + type + "\"}}");
        return at(name);
    }
    static void paint(const QString& file, const QColor& color, int edge = 64)
    {
        QImage picture(edge, edge, QImage::Format_RGB32);
        picture.fill(color);
        ASSERT_TRUE(picture.save(file, "PNG"));
    }
    /// A program that notes its calls and, as `gantrel render`, writes the picture that its fourth word
    /// names.
    QString writeProgram(const QByteArray& last)
    {
        paint(at("drawn.png"), Qt::blue);
        const QString program = at("draw");
        write(program, "#!/bin/sh\necho \"$2\" >> '" + at("calls").toUtf8() + "'\n" + last + "\n");
        QFile::setPermissions(program,
                              QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
        return program;
    }
    QString drawer() { return writeProgram("cp '" + at("drawn.png").toUtf8() + "' \"$4\""); }
    int calls() const
    {
        QFile file(at("calls"));
        return file.open(QIODevice::ReadOnly) ? file.readAll().count('\n') : 0;
    }
    /// Asks until nothing is under way.
    QColor colorOf(const QString& file) const
    {
        pictures->picture(file);
        EXPECT_TRUE(QTest::qWaitFor([&] { return !pictures->isBusy(); }, 20000));
        const QPixmap picture = pictures->picture(file);
        return picture.isNull() ? QColor() : picture.toImage().pixelColor(1, 1);
    }
    QStringList kept() const { return QDir(cacheFolder()).entryList(QDir::Files); }

    std::unique_ptr<ContentPictures> pictures;

private:
    QString _folder;
};

TEST_F(ContentPicturesTest, prefer_the_picture_beside_the_file)
{
    pictures->setDrawing({drawer(), cacheFolder()});
    const QString file = writeAsset("Vera.duf", "character");
    paint(at("Vera.tip.png"), Qt::red);
    EXPECT_EQ(colorOf(file), QColor(Qt::red));
    EXPECT_EQ(ContentPictures::OwnPicture(file), at("Vera.tip.png"));
    paint(at("Vera.duf.png"), Qt::green);
    EXPECT_EQ(ContentPictures::OwnPicture(file), at("Vera.duf.png"));
    paint(at("Vera.png"), Qt::yellow);
    EXPECT_EQ(ContentPictures::OwnPicture(file), at("Vera.png"));
    EXPECT_EQ(calls(), 0);
}

TEST_F(ContentPicturesTest, beside_a_file_are_seen_when_they_come_later_or_change)
{
    const QString file = writeAsset("Late.duf", "preset_pose");
    EXPECT_EQ(colorOf(file), QColor()) << "nothing can be had";
    paint(at("Late.png"), Qt::red);
    EXPECT_EQ(colorOf(file), QColor(Qt::red));
    paint(at("Late.png"), Qt::green);
    QFile changed(at("Late.png"));
    ASSERT_TRUE(changed.open(QIODevice::ReadWrite));
    changed.setFileTime(QDateTime::currentDateTime().addSecs(60), QFileDevice::FileModificationTime);
    EXPECT_EQ(colorOf(file), QColor(Qt::green));
    ASSERT_TRUE(QFile::remove(at("Late.png")));
    EXPECT_EQ(colorOf(file), QColor());
}

TEST_F(ContentPicturesTest, are_read_outside_of_the_windows_thread_and_in_the_end_all)
{
    QStringList files;
    for (const char* const name : {"A", "B", "C"}) {
        files << writeAsset(qPrintable(QString::fromLatin1(name) + QStringLiteral(".duf")), "preset_pose");
        paint(at(qPrintable(QString::fromLatin1(name) + QStringLiteral(".png"))), Qt::red, 2000);
    }
    for (const QString& file : files)
        EXPECT_TRUE(pictures->picture(file).isNull()) << "comes later";
    ASSERT_TRUE(QTest::qWaitFor([&] { return !pictures->isBusy(); }, 20000));
    for (const QString& file : files) {
        EXPECT_EQ(pictures->picture(file).width(), ContentPictures::size);
        EXPECT_FALSE(pictures->isBusy()) << "is had";
    }
    pictures->picture(writeAsset("Other.duf", "preset_pose"));
    pictures.reset(); // also while one is read
}

TEST_F(ContentPicturesTest, are_drawn_of_figures_without_one_and_kept_until_these_change)
{
    pictures->setDrawing({drawer(), cacheFolder()});
    const QString file = writeAsset("Vera's & \"own\".duf", "character");
    EXPECT_EQ(colorOf(file), QColor(Qt::blue));
    EXPECT_EQ(calls(), 1);
    EXPECT_EQ(kept().size(), 1);
    pictures = std::make_unique<ContentPictures>(); // another run
    pictures->setDrawing({drawer(), cacheFolder()});
    EXPECT_EQ(colorOf(file), QColor(Qt::blue));
    EXPECT_EQ(calls(), 1);
    write(file, "{\"asset_info\":{\"type\":\"character\"}} ");
    EXPECT_EQ(colorOf(file), QColor(Qt::blue));
    EXPECT_EQ(calls(), 2);
}

TEST_F(ContentPicturesTest, of_files_that_change_while_they_are_drawn_are_drawn_again)
{
    const QString file = writeAsset("Vera.duf", "character");
    pictures->setDrawing({writeProgram("if [ ! -e '" + at("changed").toUtf8() + "' ]; then touch '" +
                                       at("changed").toUtf8() + "'; touch -d '1 hour' '" + file.toUtf8() +
                                       "'; fi; cp '" + at("drawn.png").toUtf8() + "' \"$4\""),
                          cacheFolder()});
    colorOf(file);
    EXPECT_EQ(colorOf(file), QColor(Qt::blue)) << "what was drawn first is of the file before";
    EXPECT_EQ(calls(), 2);
}

TEST_F(ContentPicturesTest, that_change_while_they_are_read_are_read_again)
{
    const QString file = writeAsset("Vera.duf", "preset_pose");
    paint(at("Vera.png"), Qt::red, 4000);
    paint(at("next"), Qt::green, 4000);
    QFile next(at("next"));
    ASSERT_TRUE(next.open(QIODevice::ReadWrite));
    next.setFileTime(QDateTime::currentDateTime().addSecs(60), QFileDevice::FileModificationTime);
    next.close();
    pictures->picture(file);
    QCoreApplication::processEvents(); // the reading begins, which takes a while
    ASSERT_TRUE(pictures->isBusy());
    ASSERT_TRUE(QFile::remove(at("Vera.png")) && QFile::rename(at("next"), at("Vera.png")));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !pictures->isBusy(); }, 20000));
    EXPECT_EQ(colorOf(file), QColor(Qt::green));
}

TEST_F(ContentPicturesTest, are_drawn_anew_where_the_kept_one_is_damaged)
{
    pictures->setDrawing({drawer(), cacheFolder()});
    const QString file = writeAsset("Vera.duf", "character");
    EXPECT_EQ(colorOf(file), QColor(Qt::blue));
    ASSERT_EQ(kept().size(), 1);
    const QString keptFile = cacheFolder() + QLatin1Char('/') + kept().first();
    for (const QByteArray& damage :
         {QByteArray(), QByteArray("no picture"), QByteArray("\x89PNG\r\n\x1a\n", 8)}) {
        write(keptFile, damage);
        const int before = calls();
        pictures = std::make_unique<ContentPictures>();
        pictures->setDrawing({drawer(), cacheFolder()});
        EXPECT_EQ(colorOf(file), QColor(Qt::blue));
        EXPECT_EQ(calls(), before + 1);
    }
}

TEST_F(ContentPicturesTest, are_not_drawn_of_what_shows_no_figure)
{
    pictures->setDrawing({drawer(), cacheFolder()});
    for (const char* const type : {"preset_pose", "preset_material", "", "modifier"})
        EXPECT_FALSE(colorOf(writeAsset("Other.duf", type)).isValid()) << type;
    EXPECT_FALSE(colorOf(at("Gone.duf")).isValid());
    EXPECT_EQ(calls(), 0);
}

TEST_F(ContentPicturesTest, do_without_when_the_program_fails_or_is_not_there)
{
    const QString file = writeAsset("Vera.duf", "character");
    for (const QString& program : {writeProgram("exit 1"), writeProgram("echo x > \"$4\""),
                                   writeProgram("kill -9 $$"), at("no program"), QString()}) {
        pictures = std::make_unique<ContentPictures>();
        pictures->setDrawing({program, cacheFolder()});
        EXPECT_FALSE(colorOf(file).isValid()) << program.toStdString();
    }
    const int before = calls();
    pictures->setDrawing({writeProgram("exit 1"), cacheFolder()});
    EXPECT_FALSE(colorOf(file).isValid());
    EXPECT_FALSE(colorOf(file).isValid());
    EXPECT_EQ(calls(), before + 1) << "it is not tried again and again";
}

TEST_F(ContentPicturesTest, end_what_is_being_drawn_with_themselves)
{
    pictures->setDrawing(
        {writeProgram("echo $$ > '" + at("id").toUtf8() + "'; exec sleep 600"), cacheFolder()});
    pictures->picture(writeAsset("Vera.duf", "character"));
    const auto id = [this] {
        QFile file(at("id"));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).trimmed() : QString();
    };
    ASSERT_TRUE(QTest::qWaitFor([&] { return !id().isEmpty(); }, 20000));
    pictures.reset();
    EXPECT_FALSE(QFile::exists(QStringLiteral("/proc/") + id()));
}

TEST_F(ContentPicturesTest, are_bounded_and_those_used_longest_ago_go)
{
    const openhost::PictureCache cache(cacheFolder(), 3000);
    QStringList files;
    for (int i = 0; i < 5; ++i) {
        files << writeAsset(qPrintable(QStringLiteral("%1.duf").arg(i)), "character");
        QFile kept(cache.placeOf(files.last()));
        ASSERT_TRUE(kept.open(QIODevice::WriteOnly));
        kept.write(QByteArray(1000, 'x'));
        kept.flush(); // what is written later would set the time
        kept.setFileTime(QDateTime::currentDateTime().addDays(i - 10), QFileDevice::FileModificationTime);
    }
    cache.trim();
    EXPECT_EQ(kept().size(), 3);
    EXPECT_FALSE(QFile::exists(cache.placeOf(files[0])));
    EXPECT_FALSE(QFile::exists(cache.placeOf(files[1])));
    EXPECT_TRUE(QFile::exists(cache.placeOf(files[4])));
}

TEST_F(ContentPicturesTest, refuse_pictures_that_nobody_makes_of_files)
{
    QByteArray huge = QByteArray::fromHex("89504e470d0a1a0a0000000d49484452000186a0000186a00802000000");
    write(at("Vera.png"), huge);
    EXPECT_TRUE(openhost::ReadSmallPicture(at("Vera.png"), 64).isNull());
    paint(at("wide.png"), Qt::red, 600);
    EXPECT_EQ(openhost::ReadSmallPicture(at("wide.png"), 64).size(), QSize(64, 64));
}

} // namespace
