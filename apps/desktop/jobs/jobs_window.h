// The window of conversions that are done one after the other.
// SPDX-License-Identifier: MIT

#pragma once

#include "../dropped_files.h"
#include "job_queue.h"
#include "job_table_opening.h"

#include <QDialog>
#include <QTimer>

class QGridLayout;
class QLabel;
class QPlainTextEdit;
class QPushButton;
class QTableView;

namespace desktop {

/// The list, which is kept between runs of the program, and what can be done with it. Conversions go on while
/// the window is closed, if the user wants that.
class JobsWindow : public QDialog {
    Q_OBJECT

public:
    /// @param program  the command line's; empty where there is none
    JobsWindow(QWidget* parent, const QString& program, std::unique_ptr<JobStore> store);

    JobQueue& queue() { return _queue; }
    /// Asks where something runs. False when the user would rather go on.
    bool mayQuit();
    void addSources(const QStringList& files); ///< asks for their settings
    void openTable(const QString& file, const QStringList& options);

public slots:
    void bringUp();
    void reject() override; ///< by key or button

signals:
    /// Of a conversion that is done.
    /// @param dials  of the new morphs
    void resultWanted(const QString& target, const QStringList& dials);

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private slots:
    void add();
    void openTable();
    void takeRows(const QVector<desktop::Job>& jobs);
    void tellNoTable(const QString& reason);
    void takeDropped();
    void saveTable();
    void changeSettings();
    void removeChosen();
    void showReport();
    void openResult();
    void updateButtons();

private:
    QPushButton* addButton(const QString& text, const char* name, const char* slot, QObject* receiver);
    void arrange();
    void arrangeMessage();
    void openNext();
    void endOpening();
    bool mayClose();
    QVector<int> chosen() const;
    const Job* onlyChosen() const; ///< null for none, or several
    QString stateText() const;

    JobQueue _queue;
    QTableView* _table;
    QLabel* _state;
    QPlainTextEdit* _message; ///< of the job that is chosen, whole
    QPushButton *_add, *_open, *_save, *_settings, *_remove, *_report, *_result;
    QPushButton *_start, *_stopAfter, *_cancel, *_retry;
    QTimer _soon; ///< tells of many changes at once
    std::unique_ptr<JobTableOpening> _opening;
    QVector<std::pair<QString, QStringList>> _toOpen; ///< tables, with their options
    DroppedFiles _dropped;                            ///< what has not been looked at yet
};

} // namespace desktop
