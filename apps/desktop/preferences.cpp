// What the user wishes of all runs.
// SPDX-License-Identifier: MIT

#include <tbb/global_control.h> // before the toolkit, which makes "emit" a word of its own

#include "languages.h"
#include "look_menu.h"
#include "openhost/content_pictures.h"
#include "picture_drawing.h"
#include "preferences.h"
#include "settings.h"

#include <dzundostack.h>

#include <algorithm>
#include <optional>
#include <stdexcept>

namespace desktop {

namespace {

std::string Utf8(const QString& text)
{
    return text.toStdString();
}

QString Sentence(const std::exception& error)
{
    QString text = QString::fromStdString(error.what());
    if (!text.isEmpty())
        text[0] = text[0].toUpper();
    return text + QLatin1Char('.');
}

/// Of the settings that the command line has too.
class Shared {
public:
    explicit Shared(QStringList* troubles) : _troubles(troubles)
    {
        attempt([this] { _settings.emplace(); });
    }

    /// Empty where it is not set.
    QStringList find(const char* name) const
    {
        QStringList values;
        attempt([&] {
            const std::optional<cli::Setting> setting =
                _settings ? _settings->find(cli::FindSettingKind(name)) : std::nullopt;
            if (setting)
                for (const std::string& value : setting->values)
                    values.append(QString::fromStdString(value));
        });
        return values;
    }

private:
    template <class Work>
    void attempt(const Work& work) const
    {
        try {
            work();
        } catch (const std::exception& error) {
            if (_troubles)
                _troubles->append(Sentence(error));
        }
    }

    QStringList* _troubles;
    std::optional<cli::Settings> _settings;
};

/// @return whether it is kept
bool Keep(const char* name, const QStringList& values, QStringList& troubles)
{
    std::vector<std::string> texts;
    for (const QString& value : values)
        if (!value.isEmpty())
            texts.push_back(Utf8(value));
    try {
        cli::KeepSetting(cli::FindSettingKind(name), texts);
        return true;
    } catch (const std::exception& error) {
        troubles.append(Sentence(error));
        return false;
    }
}

} // namespace

Preferences RememberedPreferences(QStringList* troubles)
{
    const Shared shared(troubles);
    Preferences all;
    all.contentFolders = shared.find("content");
    if (all.contentFolders.isEmpty())
        all.contentFolders = RememberedContentFolders();
    all.author = RememberedAuthor();
    const QString name = shared.find("author").value(0);
    if (!name.isEmpty())
        all.author = DzAuthor(name, all.author.getEmail(), all.author.getURL());
    all.threads = shared.find("threads").value(0).toInt();
    const OwnPreferences own = RememberedOwnPreferences();
    all.lengths = openhost::LengthUnit(std::clamp(own.lengthUnit, 0, int(openhost::LengthUnit::Inch)));
    all.pictureCacheMiB = std::clamp(own.pictureCacheMiB, 1, mostPictureCacheMiB);
    all.undoMiB = std::clamp(own.undoMiB, leastUndoMiB, mostUndoMiB);
    all.look = RememberedLook();
    all.language = RememberedLanguage();
    return all;
}

QStringList RememberPreferences(const Preferences& before, const Preferences& now)
{
    QStringList troubles;
    // What earlier versions kept apart goes once it is kept for all.
    if (now.contentFolders != before.contentFolders && Keep("content", now.contentFolders, troubles))
        RememberContentFolders({});
    QString keptApart = RememberedAuthor().getName();
    if (now.author.getName() != before.author.getName() && Keep("author", {now.author.getName()}, troubles))
        keptApart.clear();
    RememberAuthor(DzAuthor(keptApart, now.author.getEmail(), now.author.getURL()));
    if (now.threads != before.threads)
        Keep("threads", {now.threads > 0 ? QString::number(now.threads) : QString()}, troubles);
    RememberOwnPreferences({int(now.lengths), now.pictureCacheMiB, now.undoMiB});
    RememberLook(now.look);
    const QString trouble = now.language != before.language ? RememberLanguage(now.language) : QString();
    if (!trouble.isEmpty())
        troubles.append(trouble);
    return troubles;
}

QString VariableBefore(const char* setting)
{
    const std::string& variable = cli::FindSettingKind(setting).variable;
    return qEnvironmentVariableIsEmpty(variable.c_str()) ? QString() : QString::fromStdString(variable);
}

void ApplyPreferences(const Preferences& preferences)
{
    openhost::ShowLengthsIn(preferences.lengths);
    openhost::PictureDrawing drawing = DrawingOfPictures();
    drawing.mostBytes = qint64(preferences.pictureCacheMiB) << 20;
    openhost::ContentPictures::Shared().setDrawing(drawing);
    dzUndoStack->setMostBytes(std::size_t(preferences.undoMiB) << 20);
    TakeLook(preferences.look);
    static std::optional<tbb::global_control> threads;
    threads.reset();
    if (preferences.threads > 0)
        threads.emplace(tbb::global_control::max_allowed_parallelism, std::size_t(preferences.threads));
}

} // namespace desktop
