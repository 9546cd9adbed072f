// What scripts may do in the desktop application.
// SPDX-License-Identifier: MIT

#include "host/ui/script_pane.h"
#include "tests/desktop/desktop_fixture.h"
#include "tools/morph_loader.h"

#include <QDesktopServices>
#include <QFile>
#include <QTemporaryDir>
#include <QUrl>

#include <dzapp.h>

namespace {

/// Takes the addresses that would be shown.
class AddressTaker : public QObject {
    Q_OBJECT

public:
    AddressTaker() { QDesktopServices::setUrlHandler(QStringLiteral("https"), this, "take"); }
    ~AddressTaker() override { QDesktopServices::unsetUrlHandler(QStringLiteral("https")); }

    QStringList taken;

public slots:
    void take(const QUrl& address) { taken << address.toString(); }
};

class DesktopScript : public DesktopTest {
protected:
    void SetUp() override
    {
        DesktopTest::SetUp();
        // The temporary folder is the scripts' own, and what lies in it could be written anyway.
        ASSERT_TRUE(outside.isValid());
        ASSERT_FALSE(outside.path().startsWith(dzApp->getTempPath() + QLatin1Char('/')));
    }

    static std::string run(const QString& code)
    {
        auto& ide = dynamic_cast<DzScriptPane&>(pane("DzScriptPane"));
        ide.setCode(code);
        ide.run();
        return ide.getOutput().toStdString();
    }
    /// Whether a script can save into a file there.
    static bool canSave(const QString& file)
    {
        run(QStringLiteral("new DzMorphLoader().saveObjectSettingsToConfigFile('%1', 'x', false);")
                .arg(file));
        return QFile::remove(file);
    }

    QTemporaryDir outside{QCoreApplication::applicationDirPath() + QLatin1String("/scripts-XXXXXX")};
};

TEST_F(DesktopScript, writes_into_content_and_temporary_folders_only)
{
    start();
    EXPECT_TRUE(canSave(pathOf(targetFile) + QLatin1String(".settings")));
    EXPECT_TRUE(canSave(dzApp->getTempFilename()));
    EXPECT_FALSE(canSave(outside.filePath(QStringLiteral("settings"))));
}

TEST_F(DesktopScript, writes_where_the_user_lets_it)
{
    desktop::Options options = smallLibrary();
    options.scriptFolders = {outside.filePath(QStringLiteral("other")).toStdString(),
                             outside.path().toStdString()};
    start(options);
    EXPECT_TRUE(canSave(outside.filePath(QStringLiteral("settings"))));
}

TEST_F(DesktopScript, is_the_only_one_that_is_bound)
{
    start();
    run(QStringLiteral("1"));
    const QString file = outside.filePath(QStringLiteral("settings"));
    EXPECT_TRUE(DzMorphLoader().saveObjectSettingsToConfigFile(file, QStringLiteral("x"), false));
    EXPECT_TRUE(QFile::exists(file));
}

TEST_F(DesktopScript, starts_no_program_unless_the_user_lets_it)
{
    const AddressTaker addresses;
    start();
    run(QStringLiteral("App.showURL('https://example.org/a');"));
    EXPECT_EQ(addresses.taken, QStringList());
    dzApp->showURL(QStringLiteral("https://example.org/b"));
    EXPECT_EQ(addresses.taken, QStringList("https://example.org/b")) << "by hand it works";
}

TEST_F(DesktopScript, starts_programs_when_the_user_lets_it)
{
    const AddressTaker addresses;
    desktop::Options options = smallLibrary();
    options.scriptProcesses = true;
    start(options);
    run(QStringLiteral("App.showURL('https://example.org/c');"));
    EXPECT_EQ(addresses.taken, QStringList("https://example.org/c"));
}

} // namespace

#include "desktop_script_test.moc"
