// The window of conversions that are done one after the other.
// SPDX-License-Identifier: MIT

#include "jobs_window.h"

#include "../content_folders.h"
#include "../quoted.h"
#include "base/atomic_file.h"
#include "job_dialog.h"
#include "job_model.h"
#include "job_views.h"
#include "openhost/plain_tip.h"

#include <dzapp.h>

#include <QCloseEvent>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableView>
#include <QUrl>
#include <QVBoxLayout>

#include <utility>

namespace desktop {

namespace {

const QStringList tableKinds{QStringLiteral("csv"), QStringLiteral("json")};
const QStringList droppedKinds = tableKinds + QStringList{QStringLiteral("duf"), QStringLiteral("dsf")};

bool IsTable(const QString& file)
{
    return tableKinds.contains(QFileInfo(file).suffix(), Qt::CaseInsensitive);
}

} // namespace

JobsWindow::JobsWindow(QWidget* parent, const QString& program, std::unique_ptr<JobStore> store)
    : QDialog(parent), _queue(program, std::move(store)), _table(MakeJobTable(_queue, *this)),
      _state(new QLabel), _message(new QPlainTextEdit)
{
    setObjectName(QStringLiteral("JobsWindow"));
    setWindowTitle(tr("Conversion Jobs"));
    setWindowFlags((windowFlags() & ~Qt::WindowContextHelpButtonHint) | Qt::WindowMaximizeButtonHint);
    setAcceptDrops(true);
    _add = addButton(tr("&Add..."), "AddJobs", SLOT(add()), this);
    _open = addButton(tr("&Open Table..."), "OpenJobTable", SLOT(openTable()), this);
    _save = addButton(tr("Save as &Table..."), "SaveJobTable", SLOT(saveTable()), this);
    _settings = addButton(tr("S&ettings..."), "JobSettings", SLOT(changeSettings()), this);
    _remove = addButton(tr("Re&move"), "RemoveJobs", SLOT(removeChosen()), this);
    _report = addButton(tr("Show &Report"), "ShowJobReport", SLOT(showReport()), this);
    _result = addButton(tr("Open Res&ult"), "OpenJobResult", SLOT(openResult()), this);
    _start = addButton(tr("&Start"), "StartJobs", SLOT(start()), &_queue);
    _stopAfter = addButton(tr("Stop After This O&ne"), "StopJobsAfter", SLOT(stopAfterThis()), &_queue);
    _cancel = addButton(tr("&Cancel"), "CancelJobs", SLOT(cancel()), &_queue);
    _retry = addButton(tr("Retr&y Failed"), "RetryJobs", SLOT(retryFailed()), &_queue);
    arrange();
    connect(&_queue, SIGNAL(stateChanged()), SLOT(updateButtons()));
    _soon.setSingleShot(true);
    connect(&_queue, SIGNAL(jobChanged(int)), &_soon, SLOT(start()));
    connect(&_soon, SIGNAL(timeout()), SLOT(updateButtons()));
    connect(&_queue, SIGNAL(listChanged()), SLOT(updateButtons()));
    connect(_table->selectionModel(), SIGNAL(selectionChanged(QItemSelection, QItemSelection)),
            SLOT(updateButtons()));
    connect(_table, SIGNAL(activated(QModelIndex)), SLOT(changeSettings()));
    updateButtons();
}

QPushButton* JobsWindow::addButton(const QString& text, const char* name, const char* slot, QObject* receiver)
{
    auto* const button = new QPushButton(text, this);
    button->setObjectName(QLatin1String(name));
    button->setAutoDefault(false);
    connect(button, SIGNAL(clicked()), receiver, slot);
    return button;
}

void JobsWindow::arrange()
{
    auto* const work = new QHBoxLayout;
    for (QPushButton* const button : {_start, _stopAfter, _cancel, _retry})
        work->addWidget(button);
    work->addStretch();
    auto* const close = new QPushButton(tr("Close"));
    close->setAutoDefault(false);
    connect(close, SIGNAL(clicked()), SLOT(reject()));
    work->addWidget(close);
    auto* const list = new QVBoxLayout;
    for (QPushButton* const button : {_add, _open, _save, _settings, _remove, _report, _result})
        list->addWidget(button);
    list->addStretch();
    auto* const middle = new QHBoxLayout;
    middle->addWidget(_table, 1);
    middle->addLayout(list);
    arrangeMessage();
    _state->setObjectName(QStringLiteral("JobsState"));
    _state->setWordWrap(true);
    _state->setTextFormat(Qt::PlainText);
    _state->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* const column = new QVBoxLayout(this);
    column->addLayout(middle, 1);
    column->addWidget(_message);
    column->addWidget(_state);
    column->addLayout(work);
    resize(130 * fontMetrics().averageCharWidth(), 26 * fontMetrics().lineSpacing());
}

/// Some lines high, however many there are: a list of warnings is not to push the buttons off the screen.
void JobsWindow::arrangeMessage()
{
    _message->setObjectName(QStringLiteral("JobMessage"));
    _message->setAccessibleName(tr("What became of the job"));
    _message->setReadOnly(true);
    _message->setTabChangesFocus(true);
    const int shown = 3 * fontMetrics().lineSpacing();
    const int around = 2 * (_message->frameWidth() + int(_message->document()->documentMargin()));
    _message->setFixedHeight(shown + around);
}

void JobsWindow::bringUp()
{
    show();
    raise();
    activateWindow();
    _table->setFocus();
}

bool JobsWindow::mayQuit()
{
    if (!_queue.isRunning())
        return true;
    QMessageBox box(QMessageBox::Question, windowTitle(),
                    tr("A conversion is running. It is stopped when you quit; the others stay in the list."),
                    QMessageBox::Cancel, isVisible() ? this : parentWidget());
    QPushButton* const quit = box.addButton(tr("Stop and &Quit"), QMessageBox::DestructiveRole);
    box.setDefaultButton(QMessageBox::Cancel);
    box.exec();
    return box.clickedButton() == quit;
}

bool JobsWindow::mayClose()
{
    if (!_queue.isRunning())
        return true;
    QMessageBox box(QMessageBox::Question, windowTitle(), tr("Conversions are running. Keep them running?"),
                    QMessageBox::Cancel, this);
    QPushButton* const keep = box.addButton(tr("&Keep Running"), QMessageBox::AcceptRole);
    QPushButton* const stop = box.addButton(tr("&Stop Them"), QMessageBox::DestructiveRole);
    box.setDefaultButton(keep);
    box.exec();
    if (box.clickedButton() == stop)
        _queue.cancel();
    return box.clickedButton() == keep || box.clickedButton() == stop;
}

void JobsWindow::reject()
{
    if (mayClose())
        QDialog::reject();
}

void JobsWindow::closeEvent(QCloseEvent* event)
{
    // The toolkit's own calls reject() as well.
    event->ignore();
    reject();
}

void JobsWindow::dragEnterEvent(QDragEnterEvent* event)
{
    TakeFiles(*event, droppedKinds);
}

void JobsWindow::dropEvent(QDropEvent* event)
{
    if (!TakeFiles(*event, droppedKinds))
        return;
    const DroppedFiles files = FilesIn(*event->mimeData(), droppedKinds);
    _dropped.wanted += files.wanted;
    _dropped.others += files.others;
    // Later: who dropped them waits, and settings are asked for.
    QMetaObject::invokeMethod(this, "takeDropped", Qt::QueuedConnection);
}

void JobsWindow::takeDropped()
{
    const DroppedFiles dropped = std::exchange(_dropped, {});
    if (!dropped.others.isEmpty())
        QMessageBox::warning(this, windowTitle(),
                             tr("Only figures (.duf, .dsf) and tables (.csv, .json) can be added, not %1.")
                                 .arg(Enumerated(dropped.others)));
    QStringList sources;
    for (const QString& file : dropped.wanted)
        if (IsTable(file))
            openTable(file, _queue.contentOptions());
        else
            sources.append(file);
    if (!sources.isEmpty())
        addSources(sources);
}

void JobsWindow::add()
{
    const QStringList files = QFileDialog::getOpenFileNames(
        this, tr("Figures to Convert"), FirstContentFolder(), tr("Figures (*.duf *.dsf);;All files (*)"));
    if (!files.isEmpty())
        addSources(files);
}

void JobsWindow::addSources(const QStringList& files)
{
    JobDialog dialog(this, files);
    if (dialog.exec() != QDialog::Accepted)
        return;
    QVector<Job> jobs;
    for (const QString& file : files) {
        Job job;
        job.cells = dialog.cells();
        job.cells.insert(QStringLiteral("source"), QFileInfo(file).absoluteFilePath());
        jobs.append(job);
    }
    _queue.add(jobs);
}

void JobsWindow::openTable()
{
    const QString file =
        QFileDialog::getOpenFileName(this, tr("Open a Table of Conversions"), QDir::homePath(),
                                     tr("Tables (*.csv *.json);;All files (*)"));
    if (!file.isEmpty())
        openTable(file, _queue.contentOptions());
}

void JobsWindow::openTable(const QString& file, const QStringList& options)
{
    if (_queue.program().isEmpty()) {
        QMessageBox::warning(this, windowTitle(),
                             tr("The program \"gantrel\", which converts, is not beside this one."));
        return;
    }
    _toOpen.append({file, options});
    openNext();
}

/// One at a time, in the order of the files; the others wait also while a box is answered.
void JobsWindow::openNext()
{
    if (_opening || _toOpen.isEmpty())
        return;
    const auto [file, options] = _toOpen.takeFirst();
    _opening = std::make_unique<JobTableOpening>(_queue.program(), file, options);
    connect(_opening.get(), SIGNAL(read(QVector<desktop::Job>)), SLOT(takeRows(QVector<desktop::Job>)));
    connect(_opening.get(), SIGNAL(failed(QString)), SLOT(tellNoTable(QString)));
}

void JobsWindow::endOpening()
{
    _opening.release()->deleteLater(); // it is what calls
    openNext();
}

void JobsWindow::takeRows(const QVector<Job>& jobs)
{
    _queue.add(jobs);
    endOpening();
}

/// Often a row leaves something open that the command line would say.
void JobsWindow::tellNoTable(const QString& reason)
{
    const QString table = _opening->table();
    QMessageBox box(QMessageBox::Warning, windowTitle(),
                    tr("The table %1 cannot be worked on.\n\n%2").arg(Quoted(table), reason),
                    QMessageBox::Close, this);
    box.setTextFormat(Qt::PlainText);
    QPushButton* const settings = box.addButton(tr("&Say What Rows Leave Open..."), QMessageBox::AcceptRole);
    box.exec();
    if (box.clickedButton() == settings) {
        JobDialog dialog(this, {});
        if (dialog.exec() == QDialog::Accepted)
            _toOpen.prepend({table, _queue.contentOptions() + OptionsOf(dialog.cells())});
    }
    endOpening();
}

void JobsWindow::saveTable()
{
    QString file = QFileDialog::getSaveFileName(this, tr("Save as Table"),
                                                QDir::homePath() + QStringLiteral("/jobs.csv"),
                                                tr("Tables (*.csv *.json)"));
    if (file.isEmpty())
        return;
    if (!IsTable(file))
        file += QStringLiteral(".csv");
    try {
        const QByteArray text = TableOf(_queue.jobs(), file);
        base::WriteFileAtomically(file.toStdString(), {text.constData(), std::size_t(text.size())});
    } catch (const std::exception& error) {
        QMessageBox::warning(
            this, windowTitle(),
            tr("The table could not be written: %1.").arg(QString::fromStdString(error.what())));
    }
}

void JobsWindow::changeSettings()
{
    const Job* const job = onlyChosen();
    if (!job || !_settings->isEnabled())
        return;
    const QString id = job->id;
    JobDialog dialog(this, {FileOf(*job, "source")});
    dialog.setCells(job->cells);
    // What runs meanwhile may have come to this one.
    if (dialog.exec() == QDialog::Accepted && !_queue.setCells(id, dialog.cells()))
        QMessageBox::warning(this, windowTitle(),
                             tr("The job has begun meanwhile; its settings are as they were."));
}

void JobsWindow::removeChosen()
{
    _queue.remove(chosen());
}

void JobsWindow::showReport()
{
    if (const Job* const job = onlyChosen())
        dzApp->showURL(QUrl::fromLocalFile(job->report).toString());
}

void JobsWindow::openResult()
{
    if (const Job* const job = onlyChosen())
        emit resultWanted(FileOf(*job, "target"), job->dials);
}

QVector<int> JobsWindow::chosen() const
{
    QVector<int> rows;
    for (const QModelIndex& index : _table->selectionModel()->selectedRows())
        rows.append(index.row());
    return rows;
}

const Job* JobsWindow::onlyChosen() const
{
    const QVector<int> rows = chosen();
    return rows.size() == 1 ? &_queue.jobs()[rows.first()] : nullptr;
}

QString JobsWindow::stateText() const
{
    if (_queue.jobs().isEmpty())
        return tr("There are no jobs yet: add figures, open a table, or drop files here.") +
               QLatin1Char(' ') + _queue.store().place();
    QStringList parts{tr("%1 of %2 done").arg(_queue.count(Job::State::Done)).arg(_queue.jobs().size())};
    if (const int failed = _queue.count(Job::State::Failed); failed > 0)
        parts.append(tr("%n failed", nullptr, failed));
    if (_queue.isStopping())
        parts.append(tr("stopping after this one"));
    QStringList sentences{parts.join(QStringLiteral(", ")) + QLatin1Char('.')};
    sentences.append(_queue.store().place());
    if (!_queue.trouble().isEmpty())
        sentences.append(_queue.trouble());
    return sentences.join(QLatin1Char(' '));
}

void JobsWindow::updateButtons()
{
    const Job* const job = onlyChosen();
    const bool isRunning = _queue.isRunning();
    const int failed = _queue.count(Job::State::Failed) + _queue.count(Job::State::Stopped);
    _save->setEnabled(!_queue.jobs().isEmpty());
    _settings->setEnabled(job && job->isOwn() && job->state != Job::State::Running);
    _settings->setToolTip(openhost::PlainTip(
        job && !job->isOwn() ? tr("This is a row of %1; change it there.").arg(job->table) : QString()));
    _remove->setEnabled(!chosen().isEmpty() && !(job && job->state == Job::State::Running));
    _report->setEnabled(job && !job->report.isEmpty() && job->state != Job::State::Running);
    _result->setEnabled(job && job->state == Job::State::Done);
    _start->setEnabled(_queue.count(Job::State::Waiting) > 0 && (!isRunning || _queue.isStopping()));
    _stopAfter->setEnabled(isRunning && !_queue.isStopping());
    _cancel->setEnabled(isRunning);
    _retry->setEnabled(failed > 0);
    const QString message = !job ? QString() : job->state == Job::State::Running ? job->step : job->message;
    if (message != _message->toPlainText()) // who has scrolled down in it wants to stay there
        _message->setPlainText(message);
    _state->setText(stateText());
}

} // namespace desktop
