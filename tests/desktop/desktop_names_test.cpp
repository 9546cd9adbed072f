// Names for screen readers: whatever people can use is told by one.
// SPDX-License-Identifier: MIT

#include "apps/desktop/jobs/job_dialog.h"
#include "apps/desktop/preferences_dialog.h"
#include "tests/desktop/desktop_fixture.h"
#include "tests/plugin/mini_scene.h"
#include "tests/windows/modal_answer.h"

#include <QAccessible>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QListWidget>
#include <QRegularExpression>
#include <QScrollBar>
#include <QtTest/QTest>

#include <dzfigure.h>
#include <dzfloatproperty.h>
#include <dzmainwindow.h>
#include <dzmorph.h>
#include <dzobject.h>
#include <dzpane.h>

namespace {

bool IsUsed(QAccessible::Role role)
{
    switch (role) {
    case QAccessible::Button:
    case QAccessible::ButtonMenu:
    case QAccessible::ButtonDropDown:
    case QAccessible::CheckBox:
    case QAccessible::RadioButton:
    case QAccessible::ComboBox:
    case QAccessible::EditableText:
    case QAccessible::SpinBox:
    case QAccessible::Slider:
    case QAccessible::List:
    case QAccessible::Tree:
    case QAccessible::Table:
    case QAccessible::PageTabList:
    case QAccessible::PageTab:
    case QAccessible::MenuItem:
        return true;
    default:
        return false;
    }
}

/// Parts of a widget that is named itself, which readers reach through it.
bool IsPart(const QObject* object)
{
    if (!object)
        return false;
    const QObject* const parent = object->parent();
    return qobject_cast<const QScrollBar*>(object) ||
           (parent && (parent->inherits("QAbstractSpinBox") || parent->inherits("QComboBox") ||
                       parent->inherits("QComboBoxPrivateContainer") || parent->inherits("QLineEdit") ||
                       parent->inherits("QTabBar")));
}

std::string Described(const QAccessibleInterface& one)
{
    const QObject* const object = one.object();
    std::string text = std::to_string(int(one.role()));
    for (const QObject* above = object; above; above = above->parent())
        text +=
            std::string(" < ") + above->metaObject()->className() + " " + above->objectName().toStdString();
    return text;
}

struct Walk {
    int used = 0;
    std::vector<std::string> nameless;

    void visit(QAccessibleInterface* one)
    {
        if (!one || !one->isValid() || one->state().invisible)
            return;
        if (IsUsed(one->role()) && !IsPart(one->object())) {
            ++used;
            if (one->text(QAccessible::Name).trimmed().isEmpty())
                nameless.push_back(Described(*one));
        }
        // The rows of lists are told by their texts, which may be thousands.
        if (one->role() == QAccessible::List || one->role() == QAccessible::Tree ||
            one->role() == QAccessible::Table)
            return;
        for (int i = 0; i < one->childCount(); ++i)
            visit(one->child(i));
    }
};

/// @param least  so many at least are to be met
void ExpectNames(QWidget& window, int least)
{
    Walk walk;
    walk.visit(QAccessible::queryAccessibleInterface(&window));
    EXPECT_GE(walk.used, least) << window.objectName().toStdString();
    for (const std::string& one : walk.nameless)
        ADD_FAILURE() << window.windowTitle().toStdString() << ": " << one;
}

class NamesTest : public DesktopTest {
protected:
    void expectNamesInDialog(const char* menuEntry, int least)
    {
        ModalAnswer dialog([&](QWidget& window) {
            QCoreApplication::processEvents();
            ExpectNames(window, least);
            QTest::keyClick(&window, Qt::Key_Escape);
        });
        QAction* const action = entry(menuEntry);
        ASSERT_NE(action, nullptr) << menuEntry;
        action->trigger();
        EXPECT_TRUE(dialog.seen) << menuEntry;
    }
};

TEST_F(NamesTest, are_there_in_the_main_window_with_and_without_figures)
{
    start();
    QCoreApplication::processEvents();
    ExpectNames(window(), 15);
    DzFigure& figure = openFigure(sourceFile);
    click(figure);
    for (const char* const one : {"DzContentLibraryPane", "DzSmartContentPane", "DzScriptPane",
                                  "DzHierarchyPane", "DzParametersPane"}) {
        window().getPaneMgr()->showPane(QLatin1String(one));
        QCoreApplication::processEvents();
        ExpectNames(window(), 15);
    }
}

TEST_F(NamesTest, are_there_on_what_stands_in_the_view)
{
    start();
    openFigure(sourceFile);
    openFigure(targetFile);
    QCoreApplication::processEvents();
    for (const char* const text : {"Difference", "Mouse and Keys"}) {
        entry(text)->trigger();
        QCoreApplication::processEvents();
        ExpectNames(window(), 25);
    }
    for (const char* const one : {"ComparisonPanel", "MouseHelp", "ViewButtons", "ToolBar"}) {
        auto* const part = window().findChild<QWidget*>(QLatin1String(one));
        ASSERT_NE(part, nullptr) << one;
        ExpectNames(*part, 1);
        EXPECT_FALSE(part->accessibleName().isEmpty()) << one;
    }
}

TEST_F(NamesTest, are_there_in_the_dialogs_of_the_menus)
{
    start();
    openFigure(sourceFile);
    expectNamesInDialog("Convert a Figure...", 7);
    expectNamesInDialog("Content Folders...", 6);
    expectNamesInDialog("Preferences...", 5);
    expectNamesInDialog("About Gantrel", 1);
}

TEST_F(NamesTest, are_there_in_the_window_of_jobs_and_in_their_settings)
{
    start();
    entry("Conversion Jobs...")->trigger();
    ASSERT_TRUE(desktop->jobs().isVisible());
    ExpectNames(desktop->jobs(), 13);
    desktop::JobDialog settings(nullptr, {pathOf(sourceFile)});
    settings.show();
    ExpectNames(settings, 18);
}

TEST_F(NamesTest, are_there_on_each_page_of_the_preferences)
{
    desktop::PreferencesDialog dialog(nullptr, {});
    dialog.show();
    auto& pages = *dialog.findChild<QListWidget*>(QStringLiteral("Pages"));
    for (int page = 0; page < pages.count(); ++page) {
        pages.setCurrentRow(page);
        QCoreApplication::processEvents();
        ExpectNames(dialog, 5);
    }
}

TEST_F(NamesTest, are_there_in_the_plug_ins_dialogs)
{
    start();
    DzFigure& source = openFigure(sourceFile);
    source.setLabel(QStringLiteral("Vera"));
    auto* const wide = qobject_cast<DzMorph*>(source.getObject()->findModifier(QStringLiteral("Wide")));
    ASSERT_NE(wide, nullptr);
    wide->getValueChannel()->setValue(1.0f);
    DzFigure& target = openFigure(targetFile);
    dzScene->selectAllNodes(false);
    source.select();
    target.select();
    expectNamesInDialog("Convert selected Genesis 3 / 8 / 8.1 figure...", 10);
}

/// What stands on widgets, such as setText(QStringLiteral("Close")).
TEST(TextsOfTheHouse, go_through_their_translation)
{
    const QRegularExpression shown(QStringLiteral(
        "\\b(setText|setWindowTitle|setToolTip|setStatusTip|setPlaceholderText|addAction|addButton|"
        "setAccessibleName|setAccessibleDescription|addRow|addTab|addItem|QPushButton|QCheckBox|"
        "QLabel|QGroupBox|setHeaderLabels|setTitle|setSuffix)\\s*\\(\\s*\\{?\\s*(QStringLiteral|"
        "QLatin1String|QString::fromUtf8)?\\(?\"[^\"]*[A-Za-z]{2}"));
    int seen = 0;
    for (const char* const folder : {"apps/desktop", "apps/desktop/jobs", "host/ui"}) {
        QDir sources(QStringLiteral(GANTREL_SOURCE "/") + QLatin1String(folder));
        for (const QString& name : sources.entryList({QStringLiteral("*.cpp")}, QDir::Files)) {
            QFile file(sources.filePath(name));
            ASSERT_TRUE(file.open(QIODevice::ReadOnly));
            const QString code = QString::fromUtf8(file.readAll());
            seen += code.count(QRegularExpression(QStringLiteral("\\btr\\(\\s*\"")));
            for (auto found = shown.globalMatch(code); found.hasNext();)
                ADD_FAILURE() << folder << '/' << name.toStdString() << ": "
                              << found.next().captured(0).toStdString();
        }
    }
    EXPECT_GT(seen, 200) << "the sources are elsewhere";
}

} // namespace
