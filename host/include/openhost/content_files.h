// The files in content directories that people open.
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

namespace openhost {

struct UserFile {
    QString path; ///< absolute
    QString type; ///< as the file says, such as "scene" or "preset_pose"; empty when it says none
    QString note; ///< what the one who asked for the scan makes of the file
};

/// People open these; files of other extensions are the data behind them.
extern const char* const userFilePattern;

/// The content directories that the host knows, in order, without slashes at the end.
QStringList ContentDirectories();

/// The file below a folder as it would be found were that a content directory: the path may begin with a
/// slash and be in another case than on disk. Empty where there is none.
QString FileBelow(const QString& folder, const QString& path);

/// The first bytes of a file, expanded if they are compressed; empty where it cannot be read. Any thread may
/// ask.
QByteArray HeadOf(const QString& file, int most);

/// What kind of asset a file says it is, read from its first bytes alone, compressed or not; empty when it
/// cannot be told. Any thread may ask.
QString AssetTypeOf(const QString& file);

/// Goes through folders in a thread of its own, since there may be a great many files. What it tells, it
/// tells in the thread that made it, while that handles events.
class ContentScan : public QObject {
    Q_OBJECT
public:
    /// Makes the note of a file, in the scan's thread.
    using Look = std::function<QString(const QString& path, const QString& type)>;

    /// Begins at once.
    explicit ContentScan(const QStringList& directories, Look look = {});
    /// Waits for the file that is being looked at.
    ~ContentScan() override;

    /// Those that were found until moved() was told last, in the order of the directories.
    const std::vector<UserFile>& files() const;
    bool isDone() const;

signals:
    void moved(); ///< there are more files, or it is done

private slots:
    void take();

private:
    struct Impl;
    std::unique_ptr<Impl> _impl;
};

} // namespace openhost
