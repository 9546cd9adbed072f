// What the host had to say since the program began.
// SPDX-License-Identifier: MIT

#include "log_window.h"

#include "openhost/plain_tip.h"
#include "path_delegate.h"

#include <dzapp.h>
#include <openhost/diagnostics.h>

#include <QClipboard>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QPushButton>
#include <QScrollBar>
#include <QTableWidget>
#include <QVBoxLayout>

namespace desktop {

namespace {

enum Column { SeverityColumn, FileColumn, AssetColumn, WhatColumn, ColumnCount };

QString SeverityText(base::Severity severity)
{
    switch (severity) {
    case base::Severity::Note:
        return LogWindow::tr("Note");
    case base::Severity::Warning:
        return LogWindow::tr("Warning");
    default:
        return LogWindow::tr("Error");
    }
}

QTableWidgetItem* MakeItem(const QString& text)
{
    auto* const item = new QTableWidgetItem(text);
    item->setToolTip(openhost::PlainTip(text));
    return item;
}

} // namespace

LogWindow::LogWindow(QWidget* parent) : QDialog(parent), _table(new QTableWidget(0, ColumnCount, this))
{
    setObjectName(QStringLiteral("LogWindow"));
    setWindowTitle(tr("Log"));
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    _table->setHorizontalHeaderLabels({tr("Severity"), tr("File"), tr("Asset"), tr("What")});
    _table->verticalHeader()->hide();
    _table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    _table->setSelectionBehavior(QAbstractItemView::SelectRows);
    _table->setWordWrap(false);
    _table->setItemDelegateForColumn(FileColumn, new PathDelegate(this));
    _table->setColumnWidth(FileColumn, 40 * fontMetrics().averageCharWidth());
    _table->horizontalHeader()->setStretchLastSection(true);

    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    buttons->addButton(_copy = makeButton(tr("C&opy"), "CopyLog", SLOT(copy())),
                       QDialogButtonBox::ActionRole);
    buttons->addButton(_clear = makeButton(tr("C&lear"), "ClearLog", SLOT(clear())),
                       QDialogButtonBox::ActionRole);
    connect(buttons, SIGNAL(rejected()), SLOT(reject()));
    auto* const column = new QVBoxLayout(this);
    column->addWidget(_table);
    column->addWidget(buttons);
    resize(110 * fontMetrics().averageCharWidth(), 24 * fontMetrics().lineSpacing());
    updateButtons();
    connect(&dzApp->diagnostics(), SIGNAL(reported(base::Diagnostic)), SLOT(add(base::Diagnostic)));
}

QPushButton* LogWindow::makeButton(const QString& text, const char* name, const char* slot)
{
    auto* const button = new QPushButton(text, this);
    button->setObjectName(QLatin1String(name));
    button->setAutoDefault(false);
    connect(button, SIGNAL(clicked()), slot);
    return button;
}

void LogWindow::bringUp()
{
    show();
    raise();
    activateWindow();
    _table->scrollToBottom();
}

void LogWindow::add(const base::Diagnostic& diagnostic)
{
    // Who has scrolled back to read something wants to stay there.
    const QScrollBar& bar = *_table->verticalScrollBar();
    const bool followsNewest = bar.value() == bar.maximum();
    const int row = _table->rowCount();
    _table->insertRow(row);
    _table->setItem(row, SeverityColumn, MakeItem(SeverityText(diagnostic.severity)));
    _table->setItem(row, FileColumn, MakeItem(QString::fromStdString(diagnostic.file)));
    _table->setItem(row, AssetColumn, MakeItem(QString::fromStdString(diagnostic.asset)));
    _table->setItem(row, WhatColumn, MakeItem(QString::fromStdString(diagnostic.what)));
    if (followsNewest)
        _table->scrollToBottom();
    updateButtons();
}

void LogWindow::clear()
{
    _table->setRowCount(0);
    updateButtons();
}

/// The rows that are selected, or all.
void LogWindow::copy()
{
    const QItemSelectionModel& selection = *_table->selectionModel();
    QStringList lines;
    for (int row = 0; row < _table->rowCount(); ++row) {
        if (selection.hasSelection() && !selection.isRowSelected(row, QModelIndex()))
            continue;
        QStringList parts;
        for (int column = 0; column < ColumnCount; ++column)
            if (!_table->item(row, column)->text().isEmpty())
                parts.append(_table->item(row, column)->text());
        lines.append(parts.join(QLatin1String(": ")) + QLatin1Char('\n'));
    }
    QApplication::clipboard()->setText(lines.join(QString()));
}

void LogWindow::updateButtons()
{
    _clear->setEnabled(_table->rowCount() > 0);
    _copy->setEnabled(_table->rowCount() > 0);
}

} // namespace desktop
