// Making the sample library from within the window.
// SPDX-License-Identifier: MIT

#include "sample_library_work.h"

#include "base/cancellation.h"
#include "base/folders.h"
#include "quoted.h"
#include "sample_content/figure_kinds.h"
#include "sample_content/sample_library.h"

#include <dzprogress.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileDialog>
#include <QMessageBox>
#include <QThread>

#include <atomic>
#include <exception>
#include <mutex>
#include <thread>

namespace desktop {

namespace {

std::atomic<bool> isCancelled{false};
std::thread::id windowThread;

/// While it lives, what works outside of the window's thread ends when the user says so. Painting goes on.
class Cancelling {
public:
    Cancelling()
    {
        isCancelled = false;
        windowThread = std::this_thread::get_id();
        _before = base::SetCancellationSource(
            [] { return isCancelled.load() && std::this_thread::get_id() != windowThread; });
    }
    ~Cancelling() { base::SetCancellationSource(_before); }
    Cancelling(const Cancelling&) = delete;
    Cancelling& operator=(const Cancelling&) = delete;

private:
    base::CancellationSource _before;
};

/// The library's making in a thread of its own.
class Making {
public:
    explicit Making(const QString& folder) : _folder(folder.toStdString()), _thread([this] { run(); }) {}
    ~Making() { _thread.join(); }
    Making(const Making&) = delete;
    Making& operator=(const Making&) = delete;

    bool isDone() const { return _isDone; }
    int stage() const { return _stage; } ///< how many figures were begun, and the shaping before them
    QString text() const
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        return QString::fromStdString(_text);
    }
    /// Once it is done; empty where the library is there.
    const std::string& failure() const { return _failure; }
    bool wasCancelled() const { return _wasCancelled; }

private:
    void run()
    {
        try {
            base::MadeFolders folders;
            folders.make(_folder);
            content::WriteSampleLibrary(_folder, [this](const std::string& text) {
                const std::lock_guard<std::mutex> lock(_mutex);
                _text = text;
                ++_stage;
            });
        } catch (const base::Cancelled&) {
            _wasCancelled = true;
        } catch (const std::exception& error) {
            _failure = error.what();
        }
        _isDone = true;
    }

    const std::string _folder;
    std::string _text, _failure;
    mutable std::mutex _mutex; ///< of the first text
    std::atomic<int> _stage{0};
    std::atomic<bool> _isDone{false};
    bool _wasCancelled = false;
    std::thread _thread; ///< last, since it uses the rest
};

void Follow(const Making& making, DzProgress& progress)
{
    constexpr unsigned long pauseMs = 50;
    int stage = 0;
    while (!making.isDone()) {
        if (making.stage() != stage) {
            stage = making.stage();
            progress.setInfo(making.text());
            progress.update(stage - 1);
        }
        progress.step(0); // handles events
        isCancelled = progress.isCancelled();
        QThread::msleep(pauseMs);
    }
}

} // namespace

QString MakeSampleLibrary(QWidget& window)
{
    const QString title = QCoreApplication::translate("desktop", "Make the Sample Library");
    const QString folder = QFileDialog::getExistingDirectory(
        &window, QCoreApplication::translate("desktop", "Folder for the Sample Library"), QDir::homePath());
    if (folder.isEmpty())
        return QString();
    const Cancelling cancelling;
    const int stages = 1 + int(content::FigureKinds().size());
    DzProgress progress(title, stages, true);
    Making making(folder);
    Follow(making, progress);
    progress.finish();
    if (making.wasCancelled())
        return QString();
    if (making.failure().empty())
        return folder;
    QMessageBox::warning(&window, title,
                         QCoreApplication::translate("desktop", "The library could not be written to %1: %2.")
                             .arg(Quoted(folder), QString::fromStdString(making.failure())));
    return QString();
}

} // namespace desktop
