// The files in content directories that people open.
// SPDX-License-Identifier: MIT

#include "openhost/content_files.h"

#include "dson/uri.h"
#include "dzapp.h"
#include "dzcontentmgr.h"
#include "library/content_paths.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>

#include <zlib.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <mutex>
#include <thread>
#include <utility>

namespace openhost {

const char* const userFilePattern = "*.duf";

namespace {

/// The block that tells what a file is stands at its beginning; a preview's text may come before it.
constexpr int headSize = 1 << 16;

} // namespace

QStringList ContentDirectories()
{
    QStringList directories;
    const DzContentMgr* const content = dzApp->getContentMgr();
    for (int i = 0; content && i < content->getNumContentDirectories(); ++i)
        directories.append(QDir(content->getContentDirectoryPath(i)).absolutePath());
    return directories;
}

QString FileBelow(const QString& folder, const QString& path)
{
    int begin = 0;
    while (begin < path.size() && path[begin] == QLatin1Char('/'))
        ++begin;
    const std::filesystem::path found =
        FindIgnoringCase(folder.toStdString(), dson::NormalPath(path.mid(begin).toStdString()));
    return QString::fromStdString(found.u8string());
}

QByteArray HeadOf(const QString& file, int most)
{
    QByteArray head(most, '\0');
    const gzFile stream = gzopen(QFile::encodeName(file).constData(), "rb");
    if (!stream)
        return QByteArray();
    const int count = gzread(stream, head.data(), unsigned(most));
    gzclose(stream);
    head.truncate(std::max(0, count));
    return head;
}

QString AssetTypeOf(const QString& file)
{
    thread_local const QRegularExpression pattern(
        QStringLiteral("\"asset_info\"\\s*:\\s*\\{.*?\"type\"\\s*:\\s*\"([^\"]*)\""),
        QRegularExpression::DotMatchesEverythingOption);
    return pattern.match(QString::fromUtf8(HeadOf(file, headSize))).captured(1);
}

struct ContentScan::Impl {
    Impl(ContentScan& owner, QStringList folders, Look wanted)
        : scan(owner), directories(std::move(folders)), look(std::move(wanted))
    {
    }

    ContentScan& scan;
    const QStringList directories;
    const Look look;
    std::vector<UserFile> files;
    bool isDone = false;

    std::atomic<bool> isToEnd{false};
    std::mutex mutex; ///< of the three below
    std::vector<UserFile> found;
    bool isThrough = false;
    bool isTold = false; ///< and not taken yet
    std::thread thread;

    void run()
    {
        for (const QString& directory : directories) {
            // All files, since to the next one of a pattern it may be far, and the end is asked for in
            // between.
            QDirIterator iterator(directory, QDir::Files, QDirIterator::Subdirectories);
            while (!isToEnd && iterator.hasNext())
                if (const QString path = iterator.next();
                    QDir::match(QLatin1String(userFilePattern), iterator.fileName()))
                    add(path);
        }
        tell([this] { isThrough = true; });
    }

    void add(const QString& path)
    {
        UserFile file{path, AssetTypeOf(path), QString()};
        if (look)
            file.note = look(path, file.type);
        tell([&] { found.push_back(std::move(file)); });
    }

    template <class Change>
    void tell(const Change& change)
    {
        const std::lock_guard<std::mutex> lock(mutex);
        change();
        if (!std::exchange(isTold, true))
            QMetaObject::invokeMethod(&scan, "take", Qt::QueuedConnection);
    }
};

ContentScan::ContentScan(const QStringList& directories, Look look)
    : _impl(new Impl(*this, directories, std::move(look)))
{
    _impl->thread = std::thread([this] { _impl->run(); });
}

ContentScan::~ContentScan()
{
    _impl->isToEnd = true;
    _impl->thread.join();
}

const std::vector<UserFile>& ContentScan::files() const
{
    return _impl->files;
}

bool ContentScan::isDone() const
{
    return _impl->isDone;
}

void ContentScan::take()
{
    std::vector<UserFile> found;
    {
        const std::lock_guard<std::mutex> lock(_impl->mutex);
        found.swap(_impl->found);
        _impl->isTold = false;
        _impl->isDone = _impl->isThrough;
    }
    std::move(found.begin(), found.end(), std::back_inserter(_impl->files));
    emit moved();
}

} // namespace openhost
