// One conversion of the list of jobs.
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QVector>

namespace desktop {

struct Job {
    enum class State { Waiting, Running, Done, Failed, Stopped };

    QString id; ///< no two jobs have the same, in the names of its files; given by the list

    /// What a row of a batch's table says, by the column's name: texts, or lists of texts.
    QJsonObject cells;
    QString table;       ///< the one that it is a row of; empty for a job of the list's own
    int row = 0;         ///< of that table, from 1
    QByteArray tableSum; ///< of what the table held when it was opened
    QStringList options; ///< of the batch, for what rows of that table leave open

    State state = State::Waiting;
    double seconds = 0.0;
    QString message;   ///< what became of it
    QString report;    ///< a page; empty for none
    QStringList dials; ///< those that show the new shape, once it is done
    int percent = -1;  ///< while it runs; -1 where that is not known
    QString step;      ///< likewise

    bool isOwn() const { return table.isEmpty(); }
};

/// Of a cell: one, several or none.
QStringList TextsIn(const QJsonValue& cell);
/// A file as the job names it, from the folder that its names count from.
QString FileOf(const Job& job, const char* column);
/// What the morphs are called; the file's name where the figure's own is taken.
QString NameOf(const Job& job);

/// Options of a batch that say the same as the cells.
QStringList OptionsOf(const QJsonObject& cells);

/// What is kept between runs of the program. One that ran then was interrupted.
QJsonObject KeptOf(const Job& job);
Job JobFrom(const QJsonObject& kept);

/// A batch's table of the jobs, in JSON where the name ends with ".json", else as comma-separated values.
/// @throws std::runtime_error  a value cannot be told in such a table
QByteArray TableOf(const QVector<Job>& jobs, const QString& name);
/// Of a file's bytes; empty where there are none.
QByteArray SumOf(const QString& file);

} // namespace desktop

/// Lists of thousands change in their middles.
Q_DECLARE_TYPEINFO(desktop::Job, Q_MOVABLE_TYPE);
