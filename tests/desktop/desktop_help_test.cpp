// The manual, on systems with and without programs that show it.
// SPDX-License-Identifier: MIT

#include "tests/desktop/desktop_fixture.h"
#include "tests/desktop/viewer_register.h"
#include "tests/windows/modal_answer.h"
#include "tests/windows/picture.h"

#include <QAction>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QUrl>

#include <dzapp.h>

/// Takes the files that would be shown.
class FileTaker : public QObject {
    Q_OBJECT
public:
    FileTaker() { QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "take"); }
    ~FileTaker() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }

    QStringList taken;

public slots:
    void take(const QUrl& url) { taken.append(QDir::cleanPath(url.toLocalFile())); }
};

namespace {

class DesktopHelp : public DesktopTest {
protected:
    void SetUp() override
    {
        DesktopTest::SetUp();
        start();
        const QString folder =
            dzApp->getDocumentationPath() + QStringLiteral("/Plugins/Gantrel for Genesis 9");
        ASSERT_TRUE(QDir().mkpath(folder));
        pdf = folder + QStringLiteral("/Gantrel for Genesis 9 Manual.pdf");
        page = folder + QStringLiteral("/Gantrel for Genesis 9 Manual.html");
        WriteBytes(pdf.toStdString(), "%PDF-1.4");
        WriteBytes(page.toStdString(), "<!DOCTYPE html><title>Manual</title>");
    }
    void TearDown() override
    {
        QFile::remove(pdf);
        QFile::remove(page);
        DesktopTest::TearDown();
    }
    void haveProgramsFor(const std::string& types) { _register.haveProgramsFor(types); }
    /// @return what the user is told; empty for nothing
    static QString askForManual()
    {
        ModalAnswer box([](QWidget& window) {
            const auto* const text = window.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
            EXPECT_TRUE(text && text->textInteractionFlags() & Qt::TextSelectableByMouse);
            SavePicture(window, "no-viewer");
            Press("OK")(window);
        });
        entry("Gantrel Manual")->trigger();
        return box.text;
    }

    QString pdf, page;
    FileTaker files;

private:
    ViewerRegister _register;
};

} // namespace

TEST_F(DesktopHelp, is_the_pdf_where_that_can_be_shown)
{
    haveProgramsFor("application/pdf|text/html");
    EXPECT_EQ(askForManual(), QString());
    EXPECT_EQ(files.taken, QStringList(pdf));
}

TEST_F(DesktopHelp, is_the_page_where_only_a_browser_is_there)
{
    haveProgramsFor("text/html");
    EXPECT_EQ(askForManual(), QString());
    EXPECT_EQ(files.taken, QStringList(page));
}

TEST_F(DesktopHelp, is_told_by_its_place_where_nothing_shows_it)
{
    haveProgramsFor("none");
    const QString text = askForManual();
    EXPECT_TRUE(text.contains(pdf)) << text.toStdString();
    EXPECT_TRUE(text.contains(QStringLiteral("there is no program on this computer that shows it")));
    EXPECT_EQ(files.taken, QStringList());
}

TEST_F(DesktopHelp, is_told_by_its_place_where_there_is_no_page_either)
{
    haveProgramsFor("text/html");
    ASSERT_TRUE(QFile::remove(page));
    EXPECT_TRUE(askForManual().contains(pdf));
    EXPECT_EQ(files.taken, QStringList());
}

TEST_F(DesktopHelp, is_tried_where_the_system_keeps_no_register)
{
    const QTemporaryDir none;
    qputenv("PATH", none.path().toUtf8());
    EXPECT_EQ(askForManual(), QString());
    EXPECT_EQ(files.taken, QStringList(pdf));
}

#include "desktop_help_test.moc"
