// How the list of jobs looks.
// SPDX-License-Identifier: MIT

#include "job_views.h"

#include "../path_delegate.h"
#include "job_model.h"

#include <QApplication>
#include <QHeaderView>
#include <QStyledItemDelegate>
#include <QTableView>

namespace desktop {

namespace {

class ProgressDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        const int percent = index.data(JobModel::percentRole).toInt();
        if (percent < 0)
            return QStyledItemDelegate::paint(painter, option, index);
        QStyleOptionProgressBar bar;
        bar.rect = option.rect.adjusted(2, 2, -2, -2);
        bar.direction = option.direction;
        bar.palette = option.palette;
        bar.fontMetrics = option.fontMetrics;
        bar.state = option.state | QStyle::State_Horizontal | QStyle::State_Enabled;
        bar.minimum = 0;
        bar.maximum = 100;
        bar.progress = percent;
        bar.text = index.data().toString();
        bar.textVisible = true;
        bar.textAlignment = Qt::AlignCenter;
        const QWidget* const view = option.widget;
        (view ? view->style() : QApplication::style())
            ->drawControl(QStyle::CE_ProgressBar, &bar, painter, view);
    }
};

} // namespace

QTableView* MakeJobTable(JobQueue& queue, QWidget& parent)
{
    auto* const table = new QTableView(&parent);
    table->setObjectName(QStringLiteral("Jobs"));
    table->setAccessibleName(JobModel::tr("Jobs"));
    table->setModel(new JobModel(queue, table));
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setWordWrap(false);
    table->setTabKeyNavigation(false);
    table->setItemDelegateForColumn(JobModel::Source, new PathDelegate(table));
    table->setItemDelegateForColumn(JobModel::Target, new PathDelegate(table));
    table->setItemDelegateForColumn(JobModel::Progress, new ProgressDelegate(table));
    const int letter = table->fontMetrics().averageCharWidth();
    const std::pair<JobModel::Column, int> widths[] = {{JobModel::Name, 14},     {JobModel::Source, 18},
                                                       {JobModel::Target, 14},   {JobModel::State, 9},
                                                       {JobModel::Progress, 10}, {JobModel::Time, 8}};
    for (const auto& [column, letters] : widths)
        table->setColumnWidth(column, letters * letter);
    table->horizontalHeader()->setStretchLastSection(true);
    table->horizontalHeader()->setHighlightSections(false);
    return table;
}

} // namespace desktop
