// Finding files in all content folders.
// SPDX-License-Identifier: MIT

#include "file_finder.h"

#include "favorite_files.h"
#include "openhost/content_files.h"
#include "pane_property_row.h"

#include <QComboBox>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace openhost {

namespace {

constexpr int pauseMs = 120; ///< after the last key

struct Kind {
    const char* text;
    std::vector<const char*> types; ///< none: all
};

const std::vector<Kind>& Kinds()
{
    static const std::vector<Kind> kinds{
        {QT_TRANSLATE_NOOP("openhost::FileFinder", "All Kinds"), {}},
        {QT_TRANSLATE_NOOP("openhost::FileFinder", "Figures"), {"character", "figure"}},
        {QT_TRANSLATE_NOOP("openhost::FileFinder", "Shapes"), {"preset_shape", "modifier"}},
        {QT_TRANSLATE_NOOP("openhost::FileFinder", "Poses"), {"preset_pose", "preset_hierarchical_pose"}},
        {QT_TRANSLATE_NOOP("openhost::FileFinder", "Scenes"), {"scene", "scene_subset"}}};
    return kinds;
}

/// Below the content folder that the file is in.
QString PlaceIn(const QStringList& folders, const QString& path)
{
    for (const QString& folder : folders)
        if (path.startsWith(folder + QLatin1Char('/')))
            return path.mid(folder.size() + 1);
    return path;
}

} // namespace

struct FileFinder::Known {
    QString path, place, name, type;
};

FileFinder::FileFinder(QWidget* parent)
    : QWidget(parent), _words(new QLineEdit), _kind(new QComboBox), _favorites(new QToolButton),
      _state(new QLabel)
{
    _words->setPlaceholderText(tr("Search all folders"));
    _words->setAccessibleName(tr("Search all content folders"));
    _words->setClearButtonEnabled(true);
    _kind->setAccessibleName(tr("Kind of files"));
    _kind->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    for (const Kind& kind : Kinds())
        _kind->addItem(tr(kind.text));
    _favorites->setText(tr("Favorites"));
    _favorites->setToolTip(tr("Favorites only"));
    _favorites->setAccessibleName(tr("Favorites only"));
    _favorites->setFocusPolicy(Qt::StrongFocus);
    _favorites->setCheckable(true);
    _favorites->setIcon(OnOffStar());
    _state->setWordWrap(true);
    _state->hide();
    auto* const row = new QHBoxLayout;
    row->addWidget(_kind, 1);
    row->addWidget(_favorites);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(_words);
    column->addLayout(row);
    column->addWidget(_state);
    _soon.setSingleShot(true);
    _soon.setInterval(pauseMs);
    _rest.setSingleShot(true);
    connect(&_rest, SIGNAL(timeout()), SLOT(refilter()));
    connect(&_soon, SIGNAL(timeout()), SLOT(refilter()));
    connect(_words, SIGNAL(textChanged(QString)), &_soon, SLOT(start()));
    connect(_kind, SIGNAL(currentIndexChanged(int)), &_soon, SLOT(start()));
    connect(_favorites, SIGNAL(toggled(bool)), &_soon, SLOT(start()));
}

FileFinder::~FileFinder() = default;

bool FileFinder::isActive() const
{
    return !_words->text().trimmed().isEmpty() || _kind->currentIndex() > 0 || _favorites->isChecked();
}

void FileFinder::clear()
{
    _words->clear();
    _kind->setCurrentIndex(0);
    _favorites->setChecked(false);
    refilter();
}

void FileFinder::rescan()
{
    _scan.reset();
    _known.clear();
    if (isActive())
        refilter();
}

/// While files are still being found. Each time all of them are gone through, so that the pause grows with
/// them: the window has most of the time for other things.
void FileFinder::filterSoon()
{
    constexpr int share = 10;
    if (!_soon.isActive() && !_rest.isActive())
        _rest.start(std::max(pauseMs, share * _lastMs));
}

void FileFinder::refilter()
{
    QElapsedTimer clock;
    clock.start();
    _soon.stop();
    _rest.stop();
    _files.clear();
    if (isActive()) {
        if (!_scan) {
            _scan = std::make_unique<ContentScan>(ContentDirectories());
            connect(_scan.get(), SIGNAL(moved()), SLOT(filterSoon()));
        }
        takeFound();
        _wanted = _words->text().split(QLatin1Char(' '), Qt::SkipEmptyParts);
        for (const Known& file : _known)
            if (suits(file))
                _files.append(file.path);
    }
    tell();
    emit changed();
    _lastMs = int(clock.elapsed());
}

void FileFinder::takeFound()
{
    const std::vector<UserFile>& found = _scan->files();
    if (_known.size() == found.size())
        return;
    const QStringList folders = ContentDirectories();
    const auto sorted = std::ptrdiff_t(_known.size());
    for (std::size_t i = _known.size(); i < found.size(); ++i)
        _known.push_back({found[i].path, PlaceIn(folders, found[i].path),
                          QFileInfo(found[i].path).completeBaseName().toLower(), found[i].type});
    const auto isBefore = [](const Known& one, const Known& other) { return one.name < other.name; };
    std::stable_sort(_known.begin() + sorted, _known.end(), isBefore);
    std::inplace_merge(_known.begin(), _known.begin() + sorted, _known.end(), isBefore);
}

bool FileFinder::suits(const Known& file) const
{
    const std::vector<const char*>& types = Kinds()[std::size_t(_kind->currentIndex())].types;
    const bool isOfKind = types.empty() || std::any_of(types.begin(), types.end(), [&](const char* type) {
                              return file.type == QLatin1String(type);
                          });
    return isOfKind && (!_favorites->isChecked() || IsFavoriteFile(file.path)) &&
           std::all_of(_wanted.begin(), _wanted.end(),
                       [&](const QString& word) { return file.place.contains(word, Qt::CaseInsensitive); });
}

void FileFinder::tell()
{
    _state->setVisible(isActive());
    if (!isActive())
        return;
    const QString found = tr("%1 of %2 files").arg(_files.size()).arg(_known.size());
    _state->setText(_scan->isDone() ? found : tr("%1, and still looking...").arg(found));
}

} // namespace openhost
