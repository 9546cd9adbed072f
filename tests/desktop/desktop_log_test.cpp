// The window that shows what went wrong.
// SPDX-License-Identifier: MIT

#include "openhost/diagnostics.h"
#include "tests/desktop/desktop_fixture.h"
#include "tests/host/content_fixture.h"
#include "tests/windows/modal_answer.h"
#include "tests/windows/picture.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QFile>
#include <QPushButton>
#include <QTableWidget>

#include <dzmainwindow.h>

namespace {

using base::Severity;

const base::Diagnostic bent{Severity::Warning, "/data/Up.dsf", "Up", "is bent"};
const base::Diagnostic gone{Severity::Error, "/data/Down.dsf", "", "is gone"};

class DesktopLog : public DesktopTest {
protected:
    /// What the module's second loading in one process has to say is out of the way.
    void startEmpty()
    {
        start();
        button("ClearLog").click();
    }
    static QDialog& log() { return *window().findChild<QDialog*>(QStringLiteral("LogWindow")); }
    static QTableWidget& table() { return *log().findChild<QTableWidget*>(); }
    static QPushButton& button(const char* name)
    {
        return *log().findChild<QPushButton*>(QLatin1String(name));
    }
    static QStringList row(int index)
    {
        QStringList cells;
        for (int column = 0; column < table().columnCount(); ++column)
            cells << table().item(index, column)->text();
        return cells;
    }
};

TEST_F(DesktopLog, is_opened_by_the_window_menu_and_shows_the_parts_newest_last)
{
    startEmpty();
    openhost::Report(bent);
    EXPECT_FALSE(log().isVisible());
    ASSERT_NE(entry("Log"), nullptr);
    entry("Log")->trigger();
    EXPECT_TRUE(log().isVisible());
    openhost::Report(gone);
    ASSERT_EQ(table().rowCount(), 2);
    EXPECT_EQ(row(0), (QStringList{"Warning", "/data/Up.dsf", "Up", "is bent"}));
    EXPECT_EQ(row(1), (QStringList{"Error", "/data/Down.dsf", "", "is gone"}));
    QStringList titles;
    for (int column = 0; column < table().columnCount(); ++column)
        titles << table().horizontalHeaderItem(column)->text();
    EXPECT_EQ(titles, (QStringList{"Severity", "File", "Asset", "What"}));
    SavePicture(log(), "log");
}

TEST_F(DesktopLog, has_what_was_wrong_with_the_settings_that_the_window_reads_first)
{
    desktop.reset();
    const QString settings = TestFolder() + QLatin1String("/settings/settings.json");
    QFile file(settings);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("{ nonsense");
    file.close();
    desktop.reset(new desktop::DesktopWindow(attendant));
    ASSERT_EQ(table().rowCount(), 1);
    EXPECT_EQ(row(0).last(),
              QStringLiteral("the settings in \"%1\" cannot be read; they are kept as \"%1.broken\"")
                  .arg(settings));
    EXPECT_TRUE(QFile::remove(settings + QLatin1String(".broken")));
}

TEST_F(DesktopLog, tells_why_a_file_could_not_be_opened)
{
    startEmpty();
    const QString file = TestFolder() + QStringLiteral("/bent.duf");
    WriteBytes(file.toStdString(), "{");
    const ModalAnswer box;
    EXPECT_FALSE(desktop->files().openFile(file));
    ASSERT_GT(table().rowCount(), 0);
    EXPECT_EQ(row(table().rowCount() - 1),
              (QStringList{"Error", file, "", "ends too early, at line 1, column 2"}));
}

TEST_F(DesktopLog, follows_the_newest_unless_somebody_has_scrolled_back)
{
    startEmpty();
    entry("Log")->trigger();
    const auto isSeen = [](int row) {
        return table().viewport()->rect().intersects(table().visualItemRect(table().item(row, 0)));
    };
    for (int i = 0; i < 100; ++i)
        openhost::Report(bent);
    QCoreApplication::processEvents();
    openhost::Report(gone);
    EXPECT_TRUE(isSeen(100));
    table().scrollToTop();
    openhost::Report(gone);
    EXPECT_TRUE(isSeen(0));
}

TEST_F(DesktopLog, is_copied_as_lines_whole_or_in_part)
{
    startEmpty();
    EXPECT_FALSE(button("CopyLog").isEnabled());
    openhost::Report(bent);
    openhost::Report(gone);
    button("CopyLog").click();
    const QString first = QStringLiteral("Warning: /data/Up.dsf: Up: is bent\n");
    const QString second = QStringLiteral("Error: /data/Down.dsf: is gone\n");
    EXPECT_EQ(QApplication::clipboard()->text(), first + second);
    table().selectRow(1);
    button("CopyLog").click();
    EXPECT_EQ(QApplication::clipboard()->text(), second);
}

TEST_F(DesktopLog, can_be_cleared_and_remembers_nothing)
{
    startEmpty();
    openhost::Report(bent);
    EXPECT_EQ(table().rowCount(), 1);
    button("ClearLog").click();
    EXPECT_EQ(table().rowCount(), 0);
    EXPECT_FALSE(button("ClearLog").isEnabled());
    EXPECT_FALSE(button("CopyLog").isEnabled());
    openhost::Report(gone);
    EXPECT_EQ(table().rowCount(), 1);
    TearDown();
    SetUp();
    EXPECT_EQ(table().rowCount(), 0);
}

} // namespace
