// Pictures of content files.
// SPDX-License-Identifier: MIT

#include "openhost/content_pictures.h"

#include "dzapp.h"
#include "openhost/content_files.h"
#include "openhost/dependent_process.h"
#include "picture_cache.h"

#include <QCache>
#include <QDateTime>
#include <QFileInfo>
#include <QPointer>
#include <QSet>
#include <QThreadPool>
#include <QTimer>

#include <optional>
#include <unistd.h>

namespace openhost {

namespace {

constexpr int mostInMemory = 32 << 10; ///< KiB
constexpr int mostRequests = 200;      ///< what was asked for before them has been scrolled away
constexpr int longestDrawingMs = 120000;

/// Gives way to everything else on the machine.
class BackgroundProcess : public DependentProcess {
protected:
    void setupChildProcess() override
    {
        DependentProcess::setupChildProcess();
        constexpr int lowest = 19;
        [[maybe_unused]] const int before = nice(lowest);
    }
};

} // namespace

struct ContentPictures::Impl {
    PictureDrawing drawing;
    std::optional<PictureCache> cache;
    QCache<QString, QPixmap> ready{mostInMemory};
    QStringList requests;  ///< to be looked for; the last one comes first
    QStringList toDraw;    ///< likewise
    QSet<QString> without; ///< as keys: files that have no picture, and of which none can be drawn
    BackgroundProcess process;
    QString drawn;      ///< the file whose picture the process draws
    QString drawnKey;   ///< of that file as it was before
    QString lookedFor;  ///< the one whose picture the thread looks for
    QThreadPool thread; ///< since a large picture takes seconds
    QTimer next, patience;

    bool isDrawing() const { return !drawn.isEmpty(); }

    /// Of the file as it is now, and of the picture that somebody has put beside it.
    static QString KeyOf(const QString& file)
    {
        QString key = file;
        for (const QString& one : {file, OwnPicture(file)})
            key += QLatin1Char('\n') + QString::number(QFileInfo(one).lastModified().toMSecsSinceEpoch());
        return key;
    }

    static void ask(QStringList& queue, const QString& file)
    {
        queue.removeOne(file);
        queue.append(file);
        if (queue.size() > mostRequests)
            queue.removeFirst();
    }

    /// What can be had without drawing. On any thread.
    static QImage Find(const QString& file, const std::optional<PictureCache>& cache)
    {
        const QString own = OwnPicture(file);
        const QImage picture = own.isEmpty() ? QImage() : ReadSmallPicture(own, size);
        return picture.isNull() && cache ? cache->find(file, size) : picture;
    }

    /// @param key  from before the picture was read, so that one of a file that changed meanwhile is no
    /// answer
    void keep(const QString& key, const QImage& picture)
    {
        auto* const pixmap = new QPixmap(QPixmap::fromImage(picture));
        ready.insert(key, pixmap, 1 + picture.width() * picture.height() * 4 / 1024);
    }

    void draw(const QString& file)
    {
        drawnKey = KeyOf(file);
        QStringList arguments{QStringLiteral("render"),    QFileInfo(file).absoluteFilePath(),
                              QStringLiteral("--out"),     cache->placeOf(file),
                              QStringLiteral("--size"),    QStringLiteral("%1x%1").arg(size),
                              QStringLiteral("--threads"), QStringLiteral("1")};
        for (const QString& directory : ContentDirectories())
            arguments << QStringLiteral("--content") << directory;
        drawn = file;
        process.setStandardInputFile(QProcess::nullDevice());
        process.setStandardOutputFile(QProcess::nullDevice());
        process.setStandardErrorFile(QProcess::nullDevice());
        process.begin(drawing.program, arguments);
        patience.start(longestDrawingMs);
    }
};

ContentPictures::ContentPictures() : _impl(new Impl)
{
    _impl->next.setInterval(0);
    _impl->thread.setMaxThreadCount(1);
    _impl->patience.setSingleShot(true);
    connect(&_impl->next, SIGNAL(timeout()), SLOT(work()));
    connect(&_impl->patience, SIGNAL(timeout()), &_impl->process, SLOT(kill()));
    connect(&_impl->process, SIGNAL(finished(int, QProcess::ExitStatus)), SLOT(handleDrawn()));
    connect(&_impl->process, SIGNAL(errorOccurred(QProcess::ProcessError)), SLOT(handleDrawn()));
}

ContentPictures::~ContentPictures()
{
    constexpr int shortWaitMs = 3000;
    _impl->process.disconnect(this);
    _impl->thread.waitForDone();
    if (!_impl->isDrawing())
        return;
    _impl->process.kill();
    _impl->process.waitForFinished(shortWaitMs);
}

ContentPictures& ContentPictures::Shared()
{
    static QPointer<ContentPictures> shared;
    if (!shared) {
        shared = new ContentPictures;
        shared->setParent(dzApp);
    }
    return *shared;
}

void ContentPictures::setDrawing(const PictureDrawing& drawing)
{
    _impl->drawing = drawing;
    _impl->cache.reset();
    if (!drawing.folder.isEmpty())
        _impl->cache.emplace(drawing.folder, drawing.mostBytes);
    _impl->without.clear();
    if (_impl->cache)
        _impl->cache->trim();
}

QPixmap ContentPictures::picture(const QString& file)
{
    const QString key = Impl::KeyOf(file);
    if (const QPixmap* const picture = _impl->ready.object(key))
        return *picture;
    if (!_impl->without.contains(key) && file != _impl->drawn && file != _impl->lookedFor &&
        !_impl->toDraw.contains(file))
        _impl->ask(_impl->requests, file);
    if (!_impl->requests.isEmpty())
        _impl->next.start();
    return QPixmap();
}

bool ContentPictures::isBusy() const
{
    return _impl->isDrawing() || !_impl->lookedFor.isEmpty() || !_impl->requests.isEmpty() ||
           !_impl->toDraw.isEmpty();
}

QString ContentPictures::OwnPicture(const QString& file)
{
    const QString stem = file.left(file.lastIndexOf(QLatin1Char('.')));
    for (const QString& own :
         {stem + QLatin1String(".png"), file + QLatin1String(".png"), stem + QLatin1String(".tip.png")})
        if (QFileInfo(own).isFile())
            return own;
    return QString();
}

bool ContentPictures::CanBeDrawn(const QString& assetType)
{
    for (const char* const type : {"character", "figure", "scene", "scene_subset", "prop", "wearable"})
        if (assetType == QLatin1String(type))
            return true;
    return false;
}

/// One file at a time, the one that was asked for last.
void ContentPictures::work()
{
    _impl->next.stop();
    if (!_impl->lookedFor.isEmpty())
        return;
    if (!_impl->requests.isEmpty())
        return look(_impl->requests.takeLast());
    if (!_impl->isDrawing() && !_impl->toDraw.isEmpty())
        _impl->draw(_impl->toDraw.takeLast());
}

void ContentPictures::look(const QString& file)
{
    _impl->lookedFor = file;
    _impl->thread.start([this, file, key = Impl::KeyOf(file), cache = _impl->cache] {
        const QImage picture = Impl::Find(file, cache);
        QMetaObject::invokeMethod(this, "handleFound", Qt::QueuedConnection, Q_ARG(QString, file),
                                  Q_ARG(QString, key), Q_ARG(QImage, picture));
    });
}

void ContentPictures::handleFound(const QString& file, const QString& key, const QImage& picture)
{
    _impl->lookedFor.clear();
    if (!picture.isNull()) {
        _impl->keep(key, picture);
        emit pictureReady(file);
    } else if (_impl->cache && !_impl->drawing.program.isEmpty() && CanBeDrawn(AssetTypeOf(file))) {
        _impl->ask(_impl->toDraw, file);
    } else {
        _impl->without.insert(key);
    }
    _impl->next.start(); // for what is waiting
}

void ContentPictures::handleDrawn()
{
    if (!_impl->isDrawing() || _impl->process.state() != QProcess::NotRunning)
        return; // a failure is told twice
    _impl->patience.stop();
    const QString file = _impl->drawn;
    _impl->drawn.clear();
    const QImage picture = _impl->cache ? _impl->cache->find(file, size) : QImage();
    if (picture.isNull())
        _impl->without.insert(_impl->drawnKey);
    else
        _impl->keep(_impl->drawnKey, picture);
    if (_impl->cache)
        _impl->cache->trim();
    _impl->next.start(); // for what is waiting
    emit pictureReady(file);
}

} // namespace openhost
