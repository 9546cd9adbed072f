// That nothing of the windows stays English where another language is chosen.
// SPDX-License-Identifier: MIT

#include "apps/desktop/choose_figures_dialog.h"
#include "apps/desktop/folders_dialog.h"
#include "apps/desktop/jobs/job_dialog.h"
#include "apps/desktop/jobs/job_store.h"
#include "apps/desktop/jobs/jobs_window.h"
#include "apps/desktop/log_window.h"
#include "apps/desktop/preferences_dialog.h"
#include "apps/desktop/save_morphs_dialog.h"
#include "tests/desktop/german_desktop.h"
#include "tests/windows/picture.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDockWidget>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QRegularExpression>
#include <QSpinBox>
#include <QTabBar>
#include <QTreeWidget>

#include <dzdrawstyle.h>
#include <dzfigure.h>
#include <dzmainwindow.h>
#include <dzpane.h>
#include <dzundostack.h>
#include <dzviewport.h>
#include <dzviewportmgr.h>

#include <set>

namespace {

using Texts = std::set<QString>;

void Add(QString text, Texts& texts)
{
    static const QRegularExpression word(QStringLiteral("[A-Za-z]{3}"));
    text.remove(QLatin1Char('&'));
    if (text.contains(word))
        texts.insert(text);
}

void AddOwn(const QWidget& widget, Texts& texts)
{
    for (const QString& text : {widget.windowTitle(), widget.toolTip(), widget.statusTip(),
                                widget.whatsThis(), widget.accessibleName(), widget.accessibleDescription()})
        Add(text, texts);
    if (auto* const label = qobject_cast<const QLabel*>(&widget))
        Add(label->text(), texts);
    if (auto* const button = qobject_cast<const QAbstractButton*>(&widget))
        Add(button->text(), texts);
    if (auto* const group = qobject_cast<const QGroupBox*>(&widget))
        Add(group->title(), texts);
    if (auto* const line = qobject_cast<const QLineEdit*>(&widget))
        Add(line->placeholderText(), texts);
    if (auto* const number = qobject_cast<const QSpinBox*>(&widget))
        for (const QString& text : {number->prefix(), number->suffix(), number->specialValueText()})
            Add(text, texts);
    if (auto* const box = qobject_cast<const QComboBox*>(&widget))
        for (int i = 0; i < box->count(); ++i)
            Add(box->itemText(i), texts);
    if (auto* const tabs = qobject_cast<const QTabBar*>(&widget))
        for (int i = 0; i < tabs->count(); ++i)
            Add(tabs->tabText(i), texts);
    if (auto* const list = qobject_cast<const QListWidget*>(&widget))
        for (int i = 0; i < list->count(); ++i)
            Add(list->item(i)->text(), texts);
    if (auto* const tree = qobject_cast<const QTreeWidget*>(&widget))
        for (int i = 0; i < tree->columnCount() && !tree->isHeaderHidden(); ++i)
            Add(tree->headerItem()->text(i), texts);
}

/// All that a window has for people to read, menus and what is hidden included.
void AddAll(const QWidget& window, Texts& texts)
{
    AddOwn(window, texts);
    for (const QWidget* const widget : window.findChildren<QWidget*>())
        AddOwn(*widget, texts);
    for (const QAction* const action : window.findChildren<QAction*>())
        for (const QString& text : {action->text(), action->toolTip(), action->statusTip()})
            Add(text, texts);
}

/// What a step that can be undone is called after this was done.
template <class Work>
QString CaptionOf(const Work& work)
{
    work();
    QCoreApplication::processEvents();
    return dzUndoStack->getUndoCaption();
}

class TranslatedTest : public GermanDesktop {
protected:
    static Texts allTexts()
    {
        Texts texts;
        AddAll(window(), texts);
        desktop::Preferences preferences;
        preferences.contentFolders = QStringList{QStringLiteral("/1")};
        AddAll(desktop::PreferencesDialog(&window(), preferences), texts);
        AddAll(desktop::ChooseFiguresDialog(&window()), texts);
        AddAll(desktop::FoldersDialog(&window(), {}), texts);
        AddAll(desktop::JobDialog(&window(), {}), texts);
        AddAll(desktop::LogWindow(&window()), texts);
        AddAll(desktop::SaveMorphsDialog(&window()), texts);
        AddAll(
            desktop::JobsWindow(&window(), QString(),
                                std::make_unique<desktop::JobStore>(TestFolder() + QStringLiteral("/jobs"))),
            texts);
        return texts;
    }
};

TEST_F(TranslatedTest, has_no_text_of_its_own_in_english)
{
    start();
    const Texts english = allTexts();
    EXPECT_GT(english.size(), 150u);
    ASSERT_NO_FATAL_FAILURE(restartInGerman());
    // Names, languages in their own words, and what is German as well.
    const std::set<QString> sameInBoth{"Convert", "Smart Content", "Deutsch", "English", "Code", "Morphs:",
                                       "Name:",   "Start",         "System",  "Threads", " MiB"};
    const Texts german = allTexts();
    EXPECT_GT(german.size(), 150u);
    for (const QString& text : german)
        EXPECT_TRUE(english.count(text) == 0 || sameInBoth.count(text) == 1 ||
                    text.startsWith(QLatin1Char('/'))) // a folder
            << text.toStdString();
}

TEST_F(TranslatedTest, names_steps_and_styles_in_german_and_knows_styles_and_panes_by_their_english_names)
{
    ASSERT_NO_FATAL_FAILURE(restartInGerman());
    DzFigure& figure = openFigure(sourceFile);
    EXPECT_EQ(CaptionOf([&] { figure.setLabel(QStringLiteral("Vera")); }).toStdString(), "Vera umbenennen");
    EXPECT_EQ(CaptionOf([&] { figure.setVisible(false); }).toStdString(), "Vera ausblenden");
    const Texts texts = allTexts();
    EXPECT_EQ(texts.count(QString::fromUtf8("Rückgängig: Vera ausblenden")), 1u);
    SavePicture(window(), "desktop-german");
    QAction* const style = entry("Drahtgitter");
    ASSERT_NE(style, nullptr);
    style->trigger();
    const DzViewportMgr& views = *window().getViewportMgr();
    EXPECT_EQ(views.getActiveViewport()->get3DViewport()->getDrawStyle()->getDescription(),
              QLatin1String("Wireframe"));
    EXPECT_NE(views.findUserDrawStyle(QStringLiteral("Wireframe")), nullptr);
    EXPECT_EQ(pane("DzHierarchyPane").getLabel(), QLatin1String("Scene"));
    EXPECT_EQ(pane("DzHierarchyPane").windowTitle(), QLatin1String("Szene"));
}

} // namespace
