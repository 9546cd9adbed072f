// The menu of the files that were opened or saved last.
// SPDX-License-Identifier: MIT

#include "recent_files.h"

#include "desktop_settings.h"
#include "openhost/plain_tip.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace desktop {

namespace {

/// The file's name, with its folder where another one is called the same.
QString TextFor(const QString& file, const QStringList& all)
{
    const QFileInfo info(file);
    const auto isNamesake = [&](const QString& other) {
        return other != file && QFileInfo(other).fileName() == info.fileName();
    };
    const bool hasNamesake = std::any_of(all.begin(), all.end(), isNamesake);
    return hasNamesake
               ? QStringLiteral("%1 \u2013 %2").arg(info.fileName(), QDir::toNativeSeparators(info.path()))
               : info.fileName();
}

} // namespace

RecentFilesMenu::RecentFilesMenu() : QMenu(tr("Open &Recent"))
{
    setToolTipsVisible(true);
    connect(this, SIGNAL(triggered(QAction*)), SLOT(choose(QAction*)));
    fill(RememberedRecentFiles());
}

QStringList RecentFilesMenu::files() const
{
    return RememberedRecentFiles();
}

void RecentFilesMenu::note(const QString& file)
{
    QStringList files = RememberedRecentFiles();
    files.removeAll(file);
    files.prepend(file);
    remember(files.mid(0, most));
}

void RecentFilesMenu::forget(const QString& file)
{
    QStringList files = RememberedRecentFiles();
    files.removeAll(file);
    remember(files);
}

void RecentFilesMenu::clearList()
{
    remember({});
}

void RecentFilesMenu::choose(QAction* entry)
{
    const QString file = entry->data().toString();
    if (!file.isEmpty())
        emit chosen(file);
}

void RecentFilesMenu::remember(const QStringList& files)
{
    RememberRecentFiles(files);
    fill(files);
    emit listChanged(files);
}

void RecentFilesMenu::fill(const QStringList& files)
{
    constexpr int widest = 60; // characters
    // Later, since one of the entries may be the one that was chosen.
    for (QAction* const entry : actions()) {
        removeAction(entry);
        entry->deleteLater();
    }
    for (int i = 0; i < files.size(); ++i) {
        QString text = fontMetrics().elidedText(TextFor(files[i], files), Qt::ElideMiddle,
                                                widest * fontMetrics().averageCharWidth());
        text.replace(QLatin1Char('&'), QLatin1String("&&"));
        QAction* const entry = addAction(QStringLiteral("&%1 %2").arg(i + 1).arg(text));
        entry->setData(files[i]);
        entry->setToolTip(openhost::PlainTip(QDir::toNativeSeparators(files[i])));
    }
    addSeparator();
    addAction(tr("&Clear List"), this, SLOT(clearList()));
    menuAction()->setEnabled(!files.isEmpty());
}

} // namespace desktop
