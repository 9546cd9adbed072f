// What stands in the place of the view while the scene is empty.
// SPDX-License-Identifier: MIT

#include "start_page.h"

#include "openhost/content_pictures.h"
#include "openhost/plain_tip.h"

#include <dzprogress.h>
#include <dzscene.h>

#include <QDir>
#include <QEvent>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace desktop {

namespace {

constexpr int fileRole = Qt::UserRole;
constexpr int afterWorkMs = 200;

struct Task {
    const char* text;
    const char* description;
    const char* signal;
    const char* name;
};

const Task tasks[] = {
    {QT_TRANSLATE_NOOP("desktop::StartPage", "&Convert a Figure..."),
     QT_TRANSLATE_NOOP("desktop::StartPage", "Choose a figure and the Genesis 9 that is to get its shape."),
     SIGNAL(conversionWanted()), "StartConvert"},
    {QT_TRANSLATE_NOOP("desktop::StartPage", "&Open..."),
     QT_TRANSLATE_NOOP("desktop::StartPage", "Open a scene or a figure from its file."), SIGNAL(openWanted()),
     "StartOpen"},
    {QT_TRANSLATE_NOOP("desktop::StartPage", "Make the &Sample Library..."),
     QT_TRANSLATE_NOOP("desktop::StartPage", "Figures to try everything with, in a folder of your choice."),
     SIGNAL(samplesWanted()), "StartSamples"},
    {QT_TRANSLATE_NOOP("desktop::StartPage", "&Manual"),
     QT_TRANSLATE_NOOP("desktop::StartPage", "Read how all of this is used."), SIGNAL(manualWanted()),
     "StartManual"},
};

QLabel* MakeHeading(const QString& text)
{
    auto* const heading = new QLabel(text);
    QFont font = heading->font();
    font.setPointSizeF(font.pointSizeF() * 1.4);
    heading->setFont(font);
    return heading;
}

} // namespace

StartPage::StartPage(QWidget& covered) : QScrollArea(&covered)
{
    setObjectName(QStringLiteral("StartPage"));
    setAccessibleName(tr("Start page"));
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    auto* const page = new QWidget;
    _grid = new QGridLayout(page);
    _tasks = makeTasks();
    _recentPart = makeRecent();
    setWidget(page);
    setAutoFillBackground(true);
    arrange();

    _later.setInterval(afterWorkMs);
    for (QTimer* const timer : {&_soon, &_later}) {
        timer->setSingleShot(true);
        connect(timer, SIGNAL(timeout()), SLOT(follow()));
    }
    connect(dzScene, SIGNAL(nodeListChanged()), &_soon, SLOT(start()));
    connect(&openhost::ContentPictures::Shared(), SIGNAL(pictureReady(QString)), SLOT(showPicture(QString)));
    covered.installEventFilter(this);
    setGeometry(covered.rect());
    showRecent({});
    follow();
}

QWidget* StartPage::makeTasks()
{
    auto* const part = new QWidget;
    part->setMaximumWidth(60 * fontMetrics().averageCharWidth());
    auto* const column = new QVBoxLayout(part);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(MakeHeading(tr("Start")));
    for (const Task& task : tasks) {
        auto* const button = new QPushButton(tr(task.text));
        button->setObjectName(QLatin1String(task.name));
        button->setAccessibleDescription(tr(task.description));
        button->setFocusPolicy(Qt::StrongFocus);
        auto* const description = new QLabel(tr(task.description));
        description->setWordWrap(true);
        connect(button, SIGNAL(clicked()), task.signal);
        column->addWidget(button);
        column->addWidget(description);
        column->addSpacing(fontMetrics().height() / 2);
    }
    column->addStretch();
    return part;
}

QWidget* StartPage::makeRecent()
{
    auto* const part = new QWidget;
    auto* const column = new QVBoxLayout(part);
    column->setContentsMargins(0, 0, 0, 0);
    auto* const heading = MakeHeading(tr("&Recent Files"));
    _recent = new QListWidget;
    _recent->setObjectName(QStringLiteral("StartRecent"));
    _recent->setAccessibleName(tr("Recent files"));
    _recent->setFrameShape(QFrame::NoFrame);
    _recent->setTextElideMode(Qt::ElideMiddle);
    const int edge = 4 * fontMetrics().height();
    _recent->setIconSize(QSize(edge, edge));
    _recent->setMinimumSize(2 * edge, 2 * edge);
    _recent->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    heading->setBuddy(_recent);
    connect(_recent, SIGNAL(itemActivated(QListWidgetItem*)), SLOT(choose(QListWidgetItem*)));
    column->addWidget(heading);
    column->addWidget(_recent, 1);
    return part;
}

/// Beside each other where there is room.
void StartPage::arrange()
{
    const int enough = 90 * fontMetrics().averageCharWidth();
    const bool isWide = width() >= enough;
    const int margin = (isWide ? 2 : 1) * fontMetrics().height();
    _grid->setContentsMargins(margin, margin, margin, margin);
    _grid->setHorizontalSpacing(margin);
    _grid->removeWidget(_recentPart);
    _grid->addWidget(_tasks, 0, 0);
    _grid->addWidget(_recentPart, isWide ? 0 : 1, isWide ? 1 : 0);
    _grid->setColumnStretch(0, 1);
    _grid->setColumnStretch(1, isWide ? 1 : 0);
    _grid->setRowStretch(0, isWide ? 1 : 0);
    _grid->setRowStretch(1, isWide ? 0 : 1);
}

void StartPage::showRecent(const QStringList& files)
{
    _recent->clear();
    QPixmap blank(_recent->iconSize());
    blank.fill(Qt::transparent);
    for (const QString& file : files) {
        auto* const item = new QListWidgetItem(
            QIcon(blank), QStringLiteral("%1\n%2").arg(QFileInfo(file).fileName(),
                                                       QDir::toNativeSeparators(QFileInfo(file).path())));
        item->setData(fileRole, file);
        item->setData(Qt::AccessibleTextRole, QFileInfo(file).fileName());
        item->setToolTip(openhost::PlainTip(QDir::toNativeSeparators(file)));
        _recent->addItem(item);
        showPicture(file);
    }
    _recentPart->setVisible(!files.isEmpty());
}

void StartPage::showPicture(const QString& file)
{
    for (int row = 0; row < _recent->count(); ++row) {
        QListWidgetItem& item = *_recent->item(row);
        if (item.data(fileRole).toString() != file)
            continue;
        const QPixmap picture = openhost::ContentPictures::Shared().picture(file);
        if (!picture.isNull())
            item.setIcon(QIcon(picture));
    }
}

void StartPage::follow()
{
    // Work that is under way fills the scene, and may take it away before.
    if (DzProgress::getDepth() > 0) {
        _later.start();
        return;
    }
    setVisible(dzScene->getNumNodes() == 0);
}

void StartPage::choose(QListWidgetItem* item)
{
    emit fileChosen(item->data(fileRole).toString());
}

bool StartPage::eventFilter(QObject* object, QEvent* event)
{
    if (event->type() == QEvent::Resize && object == parent())
        resize(parentWidget()->size());
    return QScrollArea::eventFilter(object, event);
}

void StartPage::resizeEvent(QResizeEvent* event)
{
    QScrollArea::resizeEvent(event);
    arrange();
}

void StartPage::showEvent(QShowEvent* event)
{
    QScrollArea::showEvent(event);
    raise();
}

} // namespace desktop
