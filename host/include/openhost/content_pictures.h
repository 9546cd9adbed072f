// Pictures of content files.
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QPixmap>
#include <QString>
#include <QStringList>

#include <memory>

class QImage;

namespace openhost {

/// How pictures are made of files that have none.
struct PictureDrawing {
    QString program;             ///< `gantrel`, whose `render` draws; empty: nothing is drawn
    QString folder;              ///< of the user's cache, made when needed
    qint64 mostBytes = 64 << 20; ///< of the folder; those that were used longest ago go
};

/// The picture that stands beside a file, such as "Vera.duf.png", or one that is drawn of a figure. Drawn in
/// the background by another program, one at a time, and kept until the file changes. A kept picture that is
/// damaged is drawn anew.
class ContentPictures : public QObject {
    Q_OBJECT
public:
    static constexpr int size = 256; ///< edge in pixels, enough for screens with two pixels for one

    ContentPictures();
    ~ContentPictures() override; ///< ends what is being drawn

    /// The running application's; it goes with that.
    static ContentPictures& Shared();

    /// From now on.
    void setDrawing(const PictureDrawing& drawing);

    /// At most `size` pixels wide and high; null as long as there is none. What is asked for last comes
    /// first.
    QPixmap picture(const QString& file);
    bool isBusy() const;

    /// The one beside the file; empty where there is none.
    static QString OwnPicture(const QString& file);
    /// Whether files of the type show a figure, which can be drawn.
    static bool CanBeDrawn(const QString& assetType);

signals:
    void pictureReady(const QString& file);

private slots:
    void work();
    void handleDrawn();
    void handleFound(const QString& file, const QString& key, const QImage& picture);

private:
    void look(const QString& file);

    struct Impl;
    std::unique_ptr<Impl> _impl;
};

} // namespace openhost
