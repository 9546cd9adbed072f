// The language of the windows.
// SPDX-License-Identifier: MIT

#include "languages.h"

#include "base/atomic_file.h"
#include "base/folders.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QLibraryInfo>
#include <QLocale>
#include <QStandardPaths>
#include <QTranslator>

#include <exception>

namespace desktop {

namespace {

const QString& CatalogueFolder()
{
    static const QString folder = QStringLiteral(":/translations");
    return folder;
}

QString Folder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QLatin1String("/gantrel");
}

QString FileName()
{
    return Folder() + QLatin1String("/desktop-language");
}

void Install(const QLocale& locale, const QString& name, const QString& folder)
{
    auto* const translator = new QTranslator(QCoreApplication::instance());
    if (translator->load(locale, name, QStringLiteral("_"), folder))
        QCoreApplication::installTranslator(translator);
    else
        delete translator;
}

} // namespace

QStringList TranslatedLanguages()
{
    const QString start = QStringLiteral("gantrel_"), end = QStringLiteral(".qm");
    QStringList languages;
    for (const QString& file : QDir(CatalogueFolder()).entryList({start + QLatin1Char('*') + end}))
        languages.append(file.mid(start.size()).chopped(end.size()));
    return languages;
}

QString RememberedLanguage()
{
    QFile file(FileName());
    constexpr int longest = 16;
    const QString language =
        file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.read(longest)).trimmed() : QString();
    const bool isKnown = language == QLatin1String("en") || TranslatedLanguages().contains(language);
    return isKnown ? language : QString();
}

QString RememberLanguage(const QString& language)
{
    try {
        base::MakeFolders(Folder().toStdString());
        base::WriteFileAtomically(FileName().toStdString(), language.toStdString() + '\n');
        return {};
    } catch (const std::exception& error) {
        return QCoreApplication::translate("desktop::Languages", "The language could not be kept: %1.")
            .arg(QString::fromStdString(error.what()));
    }
}

void Translate(const QString& language)
{
    const QLocale locale = language.isEmpty() ? QLocale::system() : QLocale(language);
    // English stands in the sources. Of a system in Swiss French and then German, the first one that is known
    // counts.
    for (const QString& one : locale.uiLanguages()) {
        const QString code = one.section(QLatin1Char('-'), 0, 0);
        if (code == QLatin1String("en"))
            return;
        if (!TranslatedLanguages().contains(code))
            continue;
        Install(QLocale(code), QStringLiteral("qtbase"),
                QLibraryInfo::location(QLibraryInfo::TranslationsPath));
        Install(QLocale(code), QStringLiteral("gantrel"), CatalogueFolder());
        return;
    }
}

} // namespace desktop
