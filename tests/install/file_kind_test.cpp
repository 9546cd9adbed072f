// What desktops take content files for, by their names and by what is in them.
// SPDX-License-Identifier: MIT

#include <QDir>
#include <QFile>
#include <QMimeDatabase>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

const char* const content =
    "{\n\t\"file_version\" : \"0.6.0.0\",\n\t\"asset_info\" : { \"type\" : \"scene\" }\n}\n";

QByteArray Compressed(const QStringList& options, const QString& file)
{
    QProcess gzip;
    gzip.start(QStringLiteral("gzip"), options + QStringList{QStringLiteral("--stdout"), file});
    gzip.waitForFinished();
    return gzip.readAllStandardOutput();
}

/// With our kinds and those of the system in one folder, as after an installation.
class FileKind : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        const QString kinds = folder().filePath(QStringLiteral("mime"));
        ASSERT_TRUE(QDir().mkpath(kinds + QStringLiteral("/packages")));
        ASSERT_TRUE(QFile::copy(QStringLiteral("/usr/share/mime/packages/freedesktop.org.xml"),
                                kinds + QStringLiteral("/packages/freedesktop.org.xml")));
        ASSERT_TRUE(
            QFile::copy(QStringLiteral(GANTREL_KINDS), kinds + QStringLiteral("/packages/gantrel.xml")));
        ASSERT_EQ(QProcess::execute(QStringLiteral("update-mime-database"), {kinds}), 0);
        qputenv("XDG_DATA_HOME", folder().path().toUtf8());
        qputenv("XDG_DATA_DIRS", folder().path().toUtf8());
    }
    static QTemporaryDir& folder()
    {
        static QTemporaryDir folder;
        return folder;
    }

    QString write(const char* name, const QByteArray& bytes)
    {
        QFile file(folder().filePath(QLatin1String(name)));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return file.fileName();
    }
    std::string kindOfFile(const QString& file) { return _kinds.mimeTypeForFile(file).name().toStdString(); }
    std::string kindOfData(const QByteArray& bytes)
    {
        return _kinds.mimeTypeForData(bytes).name().toStdString();
    }

private:
    QMimeDatabase _kinds;
};

TEST_F(FileKind, is_told_by_the_name)
{
    EXPECT_EQ(kindOfFile(write("Vera.duf", content)), "application/x-dson-user");
    EXPECT_EQ(kindOfFile(write("Nose.dsf", content)), "application/x-dson-support");
}

TEST_F(FileKind, is_the_same_when_the_file_is_compressed)
{
    const QString plain = write("plain", content);
    const QByteArray bytes = Compressed({QStringLiteral("--no-name")}, plain);
    ASSERT_FALSE(bytes.isEmpty());
    EXPECT_EQ(kindOfFile(write("Vera.duf", bytes)), "application/x-dson-user");
    EXPECT_EQ(kindOfFile(write("Nose.dsf", bytes)), "application/x-dson-support");
}

TEST_F(FileKind, is_told_by_the_text_where_there_is_no_name)
{
    EXPECT_EQ(kindOfData(content), "application/x-dson");
    EXPECT_EQ(kindOfData("{\"file_version\":\"0.6.0.0\",\"asset_info\":{}}"), "application/x-dson");
}

TEST_F(FileKind, is_told_by_the_name_inside_of_what_is_compressed)
{
    EXPECT_EQ(kindOfData(Compressed({}, write("Vera.duf", content))), "application/x-dson-user");
    EXPECT_EQ(kindOfData(Compressed({}, write("Nose.dsf", content))), "application/x-dson-support");
}

TEST_F(FileKind, is_that_of_others_for_files_of_others)
{
    EXPECT_EQ(kindOfData(Compressed({}, write("notes.txt", content))), "application/gzip");
    EXPECT_NE(kindOfData("{ \"version\" : 1 }"), "application/x-dson");
    EXPECT_EQ(kindOfFile(write("data.json", "{ \"version\" : 1 }")), "application/json");
}

} // namespace
