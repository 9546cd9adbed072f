// One conversion of the list of jobs.
// SPDX-License-Identifier: MIT

#include "job.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QUuid>

#include <algorithm>
#include <iterator>
#include <stdexcept>

#include <csv.h>

namespace desktop {

namespace {

/// Columns that say "yes" or nothing; any other may have that word for a value.
const char* const flags[] = {"accept-missing", "adjust-rig", "compress",  "controllers",
                             "correctives",    "keep-temp",  "overwrite", "register"};
const char* const files[] = {"source", "target", "save-library", "export-obj", "pictures", "report", "list"};

QString CellText(const QJsonValue& value)
{
    const QStringList texts = TextsIn(value);
    for (const QString& one : texts)
        if (value.isArray() && one.contains(QLatin1Char(';')))
            throw std::runtime_error(QCoreApplication::translate("desktop::Job",
                                                                 "\"%1\" has a semicolon, which such a table "
                                                                 "has between values; a name that ends with "
                                                                 ".json makes a table that can hold it")
                                         .arg(one)
                                         .toStdString());
    return texts.join(QLatin1Char(';'));
}

QByteArray Csv(const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    if (bytes.isEmpty())
        return bytes;
    QByteArray cell(2 * bytes.size() + 2, Qt::Uninitialized);
    cell.resize(
        int(csv_write(cell.data(), std::size_t(cell.size()), bytes.constData(), std::size_t(bytes.size()))));
    return cell;
}

/// Names count from the folder of the table that they stand in.
QJsonObject FromAnywhere(const Job& job)
{
    QJsonObject cells = job.cells;
    for (const char* const column : files)
        if (const QString file = FileOf(job, column); !file.isEmpty())
            cells.insert(QLatin1String(column), file);
    if (!job.isOwn() && cells.contains(QLatin1String("content"))) {
        QJsonArray folders;
        for (const QString& folder : TextsIn(cells.value(QLatin1String("content"))))
            folders.append(QFileInfo(job.table).absoluteDir().absoluteFilePath(folder));
        cells.insert(QStringLiteral("content"), folders);
    }
    return cells;
}

QByteArray CsvTable(const QVector<QJsonObject>& rows)
{
    QStringList columns;
    for (const QJsonObject& row : rows)
        for (const QString& column : row.keys())
            if (!columns.contains(column))
                columns.append(column);
    QByteArray text = columns.join(QLatin1Char(',')).toUtf8() + '\n';
    for (const QJsonObject& row : rows) {
        QList<QByteArray> line;
        for (const QString& column : columns)
            line.append(Csv(CellText(row.value(column))));
        text += line.join(',') + '\n';
    }
    return text;
}

QString StateName(Job::State state)
{
    switch (state) {
    case Job::State::Done:
        return QStringLiteral("done");
    case Job::State::Failed:
        return QStringLiteral("failed");
    case Job::State::Running:
    case Job::State::Stopped:
        return QStringLiteral("stopped");
    default:
        return QStringLiteral("waiting");
    }
}

Job::State StateNamed(const QString& name)
{
    for (const Job::State state : {Job::State::Done, Job::State::Failed, Job::State::Stopped})
        if (StateName(state) == name)
            return state;
    return Job::State::Waiting;
}

} // namespace

QStringList TextsIn(const QJsonValue& value)
{
    QStringList texts;
    if (!value.isArray())
        return value.toString().isEmpty() ? texts : QStringList{value.toString()};
    for (const QJsonValue& one : value.toArray())
        texts.append(one.toString());
    return texts;
}

QString FileOf(const Job& job, const char* column)
{
    const QString file = TextsIn(job.cells.value(QLatin1String(column))).value(0);
    return file.isEmpty() || job.isOwn() ? file : QFileInfo(job.table).absoluteDir().absoluteFilePath(file);
}

QString NameOf(const Job& job)
{
    const QString name = job.cells.value(QLatin1String("name")).toString();
    return name.isEmpty() ? QFileInfo(FileOf(job, "source")).completeBaseName() : name;
}

QStringList OptionsOf(const QJsonObject& cells)
{
    QStringList options;
    for (auto cell = cells.begin(); cell != cells.end(); ++cell) {
        const QString option = QStringLiteral("--") + cell.key();
        const bool isFlag = std::find(std::begin(flags), std::end(flags), cell.key()) != std::end(flags);
        for (const QString& text : TextsIn(cell.value()))
            options.append(isFlag ? option : option + QLatin1Char('=') + text);
    }
    return options;
}

QJsonObject KeptOf(const Job& job)
{
    QJsonObject kept{{QStringLiteral("id"), job.id},
                     {QStringLiteral("cells"), job.cells},
                     {QStringLiteral("state"), StateName(job.state)}};
    if (!job.isOwn()) {
        kept.insert(QStringLiteral("table"), job.table);
        kept.insert(QStringLiteral("row"), job.row);
        kept.insert(QStringLiteral("table_sum"), QString::fromLatin1(job.tableSum));
        kept.insert(QStringLiteral("options"), QJsonArray::fromStringList(job.options));
    }
    kept.insert(QStringLiteral("seconds"), job.seconds);
    kept.insert(QStringLiteral("message"), job.message);
    kept.insert(QStringLiteral("report"), job.report);
    kept.insert(QStringLiteral("dials"), QJsonArray::fromStringList(job.dials));
    return kept;
}

Job JobFrom(const QJsonObject& kept)
{
    Job job;
    // It becomes a part of file names: whatever else stands there is none.
    if (const QUuid id(kept.value(QLatin1String("id")).toString()); !id.isNull())
        job.id = id.toString(QUuid::WithoutBraces);
    job.cells = kept.value(QLatin1String("cells")).toObject();
    job.table = kept.value(QLatin1String("table")).toString();
    job.row = kept.value(QLatin1String("row")).toInt();
    job.tableSum = kept.value(QLatin1String("table_sum")).toString().toLatin1();
    job.options = TextsIn(kept.value(QLatin1String("options")));
    job.state = StateNamed(kept.value(QLatin1String("state")).toString());
    job.seconds = kept.value(QLatin1String("seconds")).toDouble();
    job.message = kept.value(QLatin1String("message")).toString();
    job.report = kept.value(QLatin1String("report")).toString();
    job.dials = TextsIn(kept.value(QLatin1String("dials")));
    return job;
}

QByteArray TableOf(const QVector<Job>& jobs, const QString& name)
{
    QVector<QJsonObject> rows;
    for (const Job& job : jobs)
        rows.append(FromAnywhere(job));
    if (!name.endsWith(QLatin1String(".json"), Qt::CaseInsensitive))
        return CsvTable(rows);
    QJsonArray list;
    for (const QJsonObject& row : rows)
        list.append(row);
    return QJsonDocument(list).toJson();
}

QByteArray SumOf(const QString& file)
{
    QFile bytes(file);
    QCryptographicHash sum(QCryptographicHash::Sha256);
    return bytes.open(QIODevice::ReadOnly) && sum.addData(&bytes) ? sum.result().toHex() : QByteArray();
}

} // namespace desktop
