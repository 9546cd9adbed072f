// The user manual as its tests read it.
// SPDX-License-Identifier: MIT

#include "tests/desktop/manual_reading.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>

QString ManualPlace()
{
    return QStringLiteral("/Plugins/Gantrel for Genesis 9/Gantrel for Genesis 9 Manual.pdf");
}

QString BuiltManual()
{
    return QFileInfo(QStringLiteral(GANTREL_DESKTOP)).absolutePath() + QStringLiteral("/documentation") +
           ManualPlace();
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

QString Comparable(QString text)
{
    text.replace(QLatin1String("``"), QStringLiteral("\u201C"));
    text.replace(QLatin1String("''"), QStringLiteral("\u201D"));
    text.remove(QRegularExpression(QStringLiteral("\\s+")));
    return text.toLower();
}

namespace {

const QString& ManualText()
{
    static const QString text =
        Comparable(Output(QStringLiteral("pdftotext"), {BuiltManual(), QStringLiteral("-")}));
    return text;
}

} // namespace

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

QStringList ChapterFiles()
{
    const QDir folder(QStringLiteral(GANTREL_SOURCE "/docs/manual"));
    return folder.entryList({QStringLiteral("*.md")}, QDir::Files, QDir::Name);
}

QString ChapterText(const QString& name)
{
    return QString::fromUtf8(BytesOf(QStringLiteral(GANTREL_SOURCE "/docs/manual/") + name));
}
