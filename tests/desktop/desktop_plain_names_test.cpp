// Names that look like markup: they are shown letter for letter.
// SPDX-License-Identifier: MIT

#include "openhost/plain_tip.h"
#include "tests/desktop/desktop_fixture.h"
#include "tests/windows/modal_answer.h"

#include <QAction>
#include <QFile>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QTreeWidget>

#include <dzfigure.h>
#include <dzmainwindow.h>
#include <dzpane.h>

namespace {

const char* const name = "<b>Vera</b> & <img src=x>";

/// What a tool tip shows.
QString Shown(const QString& tip)
{
    return Qt::mightBeRichText(tip) ? QTextDocumentFragment::fromHtml(tip).toPlainText() : tip;
}

/// Whether a message box that shows text shows it letter for letter.
bool IsPlain(const QWidget& box)
{
    auto* const label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
    return label && label->textFormat() == Qt::PlainText;
}

TEST(PlainTip, shows_letter_for_letter_what_is_or_is_not_like_markup)
{
    for (const char* const text :
         {name, "<b>", "a < b & c > d", "Tom & Jerry", "two\nlines", "<i>two\nlines"})
        EXPECT_EQ(Shown(openhost::PlainTip(QLatin1String(text))).toStdString(), text);
    EXPECT_EQ(openhost::PlainTip(QStringLiteral("Vera")), QStringLiteral("Vera"));
}

class PlainNamesTest : public DesktopTest {};

TEST_F(PlainNamesTest, are_in_message_boxes_unless_these_say_that_they_have_markup)
{
    start();
    bool isPlain = false;
    const QString file = TestFolder() + QStringLiteral("/<b>Gone<b>.xyz");
    ModalAnswer answer([&](QWidget& box) { isPlain = IsPlain(box); });
    QMessageBox::warning(&window(), QStringLiteral("Title"), file);
    ASSERT_TRUE(answer.seen);
    EXPECT_TRUE(isPlain);
    ModalAnswer about([&](QWidget& box) { isPlain = IsPlain(box); });
    entry("About Gantrel")->trigger();
    ASSERT_TRUE(about.seen);
    EXPECT_FALSE(isPlain);
}

TEST_F(PlainNamesTest, are_in_tool_tips_of_recent_files)
{
    const QString file = TestFolder() + QStringLiteral("/<b>Vera<b>.duf");
    start();
    ASSERT_TRUE(QFile::exists(file) || QFile::copy(pathOf(targetFile), file));
    ASSERT_TRUE(desktop->files().openFile(file));
    int seen = 0;
    for (const QAction* const action : entry("Open Recent")->menu()->actions())
        if (action->toolTip().contains(QStringLiteral("Vera"))) {
            ++seen;
            EXPECT_EQ(Shown(action->toolTip()), file);
        }
    EXPECT_EQ(seen, 1);
}

} // namespace
