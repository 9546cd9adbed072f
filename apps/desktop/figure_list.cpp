// Choosing one of the figures in the content folders.
// SPDX-License-Identifier: MIT

#include "figure_list.h"

#include "openhost/content_files.h"
#include "openhost/content_pictures.h"
#include "openhost/plain_tip.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace desktop {

namespace {

constexpr int fileRole = Qt::UserRole;

/// Asked for its picture only while it is in sight.
class FigureItem : public QListWidgetItem {
public:
    using QListWidgetItem::QListWidgetItem;

    QVariant data(int role) const override
    {
        if (role != Qt::DecorationRole)
            return QListWidgetItem::data(role);
        const QPixmap picture =
            openhost::ContentPictures::Shared().picture(QListWidgetItem::data(fileRole).toString());
        if (!picture.isNull())
            return QIcon(picture);
        QPixmap blank(listWidget()->iconSize()); // so that texts line up
        blank.fill(Qt::transparent);
        return blank;
    }
};

} // namespace

FigureList::FigureList(const QString& title)
    : QGroupBox(title), _search(new QLineEdit), _list(new QListWidget)
{
    const int edge = 3 * fontMetrics().height();
    _search->setPlaceholderText(tr("Search"));
    _search->setAccessibleName(tr("Search: %1").arg(title));
    _search->setClearButtonEnabled(true);
    _list->setAccessibleName(title);
    _list->setIconSize(QSize(edge, edge));
    _list->setTextElideMode(Qt::ElideMiddle);
    _list->setUniformItemSizes(true);
    _list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    _list->setMinimumWidth(36 * fontMetrics().averageCharWidth());
    auto* const browse = new QPushButton(tr("Browse..."));
    browse->setAccessibleName(tr("Browse: %1").arg(title));
    browse->setAutoDefault(false);
    auto* const column = new QVBoxLayout(this);
    column->addWidget(_search);
    column->addWidget(_list, 1);
    column->addWidget(browse, 0, Qt::AlignLeft);
    connect(browse, SIGNAL(clicked()), SLOT(browse()));
    connect(_search, SIGNAL(textChanged(QString)), SLOT(filter()));
    connect(_list, SIGNAL(itemSelectionChanged()), SIGNAL(choiceChanged()));
    connect(_list, SIGNAL(itemActivated(QListWidgetItem*)), SIGNAL(activated()));
    connect(&openhost::ContentPictures::Shared(), SIGNAL(pictureReady(QString)), _list->viewport(),
            SLOT(update()));
    setFocusProxy(_list);
}

void FigureList::add(const openhost::UserFile& file)
{
    const QString name = QFileInfo(file.path).completeBaseName();
    const QString text = file.note.isEmpty() ? name : name + QLatin1Char('\n') + file.note;
    auto* const item = new FigureItem(text);
    item->setData(fileRole, file.path);
    item->setToolTip(openhost::PlainTip(file.path));
    int row = 0;
    for (int end = _list->count(); row < end;) {
        const int middle = (row + end) / 2;
        if (_list->item(middle)->text().compare(text, Qt::CaseInsensitive) <= 0)
            row = middle + 1;
        else
            end = middle;
    }
    _list->insertItem(row, item);
    filter(*item);
}

QString FigureList::chosenFile() const
{
    const QList<QListWidgetItem*> chosen = _list->selectedItems();
    return chosen.isEmpty() ? QString() : chosen.first()->data(fileRole).toString();
}

void FigureList::proposePlain()
{
    for (int row = 0; row < _list->count() && chosenFile().isEmpty(); ++row) {
        const QStringList lines = _list->item(row)->text().split(QLatin1Char('\n'));
        if (lines.first() == lines.last() && !_list->item(row)->isHidden())
            _list->setCurrentRow(row);
    }
}

int FigureList::count() const
{
    return _list->count();
}

void FigureList::browse()
{
    const QString file =
        QFileDialog::getOpenFileName(this, title(), QString(), tr("Figures (*.duf *.dsf);;All files (*)"));
    if (file.isEmpty())
        return;
    _search->clear();
    add({file, QString(), QString()});
    for (int row = 0; row < _list->count(); ++row)
        if (_list->item(row)->data(fileRole).toString() == file)
            _list->setCurrentRow(row);
}

void FigureList::filter()
{
    for (int row = 0; row < _list->count(); ++row)
        filter(*_list->item(row));
}

void FigureList::filter(QListWidgetItem& item)
{
    const QStringList words = _search->text().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    const bool suits = std::all_of(words.begin(), words.end(), [&](const QString& word) {
        return item.text().contains(word, Qt::CaseInsensitive);
    });
    item.setHidden(!suits);
    if (!suits)
        item.setSelected(false);
}

} // namespace desktop
