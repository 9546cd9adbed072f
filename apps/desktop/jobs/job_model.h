// The list of jobs as a table.
// SPDX-License-Identifier: MIT

#pragma once

#include <QAbstractTableModel>

namespace desktop {

class JobQueue;

class JobModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Name, Source, Target, State, Progress, Time, Message, ColumnCount };
    static constexpr int percentRole = Qt::UserRole; ///< of the progress; -1 for none

    /// @param queue  borrowed
    JobModel(JobQueue& queue, QObject* parent);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private slots:
    void handleAdding(int first, int last);
    void handleAdded();
    void handleRemoving(int first, int last);
    void handleRemoved();
    void handleJobChanged(int row);
    void updateTime();

private:
    QString text(int row, Column column) const;

    JobQueue& _queue;
};

/// Minutes and seconds, with hours where there are any.
QString TimeText(double seconds);

} // namespace desktop
