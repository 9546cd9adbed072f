// Other languages: their catalogues, the choice of one, and the window in it.
// SPDX-License-Identifier: MIT

#include "tests/desktop/german_desktop.h"

#include <QDir>
#include <QFile>
#include <QMenu>
#include <QMenuBar>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QXmlStreamReader>

#include <dzmainwindow.h>

#include <map>

namespace {

const QString catalogueFile = QStringLiteral(GANTREL_SOURCE "/apps/desktop/translations/gantrel_de.ts");

struct Entry {
    QStringList forms;
    QString state; ///< empty when it is finished
};

/// By context and source text.
std::map<QString, Entry> Read(const QString& filename)
{
    std::map<QString, Entry> entries;
    QFile file(filename);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << filename.toStdString();
    QXmlStreamReader xml(&file);
    QString context, source;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == QLatin1String("name")) {
            context = xml.readElementText();
        } else if (xml.name() == QLatin1String("source")) {
            source = xml.readElementText();
        } else if (xml.name() == QLatin1String("translation")) {
            Entry& entry = entries[context + QLatin1Char('|') + source];
            entry.state = xml.attributes().value(QStringLiteral("type")).toString();
            const QString text = xml.readElementText(QXmlStreamReader::IncludeChildElements);
            entry.forms = text.trimmed().isEmpty() ? QStringList() : QStringList(text);
        }
    }
    EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
    return entries;
}

QStringList PlaceHolders(const QString& text)
{
    QStringList found;
    static const QRegularExpression holder(QStringLiteral("%[1-9n]"));
    for (auto one = holder.globalMatch(text); one.hasNext();)
        found.append(one.next().captured());
    found.removeDuplicates();
    found.sort();
    return found;
}

TEST(Catalogue, has_every_text_with_the_same_place_holders)
{
    const auto entries = Read(catalogueFile);
    EXPECT_GT(entries.size(), 400u);
    for (const auto& [name, entry] : entries) {
        EXPECT_TRUE(entry.state.isEmpty()) << name.toStdString() << ": " << entry.state.toStdString();
        ASSERT_FALSE(entry.forms.isEmpty()) << name.toStdString() << " is empty";
        const QString source = name.section(QLatin1Char('|'), 1);
        EXPECT_EQ(PlaceHolders(entry.forms.first()), PlaceHolders(source)) << name.toStdString();
    }
}

TEST(Catalogue, has_what_the_sources_have)
{
    ASSERT_FALSE(QStandardPaths::findExecutable(QStringLiteral("lupdate")).isEmpty())
        << "lupdate is missing, which scripts/setup installs";
    const QString fresh = QDir::temp().filePath(QStringLiteral("fresh catalogue_de.ts"));
    QFile::remove(fresh);
    QProcess program;
    program.start(QStringLiteral(GANTREL_SOURCE "/scripts/update-translations"), {fresh});
    ASSERT_TRUE(program.waitForFinished(120000));
    ASSERT_EQ(program.exitCode(), 0) << program.readAllStandardError().toStdString();
    const auto present = Read(catalogueFile), wanted = Read(fresh);
    EXPECT_GT(wanted.size(), 400u);
    for (const auto& one : wanted)
        EXPECT_EQ(present.count(one.first), 1u) << "new: " << one.first.toStdString();
    for (const auto& one : present)
        EXPECT_EQ(wanted.count(one.first), 1u) << "gone: " << one.first.toStdString();
    QFile::remove(fresh);
}

using LanguageTest = GermanDesktop;

TEST_F(LanguageTest, titles_of_menus_are_translated_and_keep_their_order)
{
    ASSERT_NO_FATAL_FAILURE(restartInGerman());
    QStringList titles = menuTitles();
    titles.replaceInStrings(QStringLiteral("&"), QString());
    EXPECT_EQ(titles.join(' ').toStdString(), "Datei Bearbeiten Ansicht Convert Fenster Hilfe");
}

TEST_F(LanguageTest, no_two_entries_of_a_menu_have_one_mnemonic)
{
    ASSERT_NO_FATAL_FAILURE(restartInGerman());
    QList<QList<QAction*>> menus{window().menuBar()->actions()};
    int seen = 0;
    while (!menus.isEmpty()) {
        std::map<QChar, QString> taken;
        for (QAction* const action : menus.takeFirst()) {
            if (action->menu())
                menus.append(action->menu()->actions());
            const QString text = action->text();
            const int mark = text.indexOf(QLatin1Char('&'));
            if (mark < 0 || mark + 1 >= text.size())
                continue;
            const auto [place, isFree] = taken.emplace(text[mark + 1].toLower(), text);
            EXPECT_TRUE(isFree) << place->second.toStdString() << " and " << text.toStdString();
            ++seen;
        }
    }
    EXPECT_GT(seen, 30);
}

TEST_F(LanguageTest, is_the_chosen_one_at_the_next_start_and_the_systems_where_its_file_says_nothing)
{
    EXPECT_EQ(desktop::RememberedLanguage(), QString());
    EXPECT_EQ(desktop::RememberLanguage(QStringLiteral("en")), QString());
    EXPECT_EQ(desktop::RememberedLanguage(), QLatin1String("en"));
    for (const char* const odd : {"xx", "../de", "\xff\xfe", ""}) {
        EXPECT_EQ(desktop::RememberLanguage(QString::fromLatin1(odd)), QString());
        EXPECT_EQ(desktop::RememberedLanguage(), QString()) << odd;
    }
}

} // namespace
