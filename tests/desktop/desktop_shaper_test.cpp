// Smoothed and pushed meshes of what is converted in the desktop application.
// SPDX-License-Identifier: MIT

#include "openhost/diagnostics.h"
#include "tests/desktop/desktop_fixture.h"
#include "tests/host/content_fixture.h"
#include "tests/windows/modal_answer.h"

#include <QApplication>
#include <QDialog>
#include <QTemporaryDir>
#include <QtTest/QTest>

#include <dzapp.h>
#include <dzfigure.h>
#include <dzfloatproperty.h>
#include <dzmainwindow.h>
#include <dzmorph.h>
#include <dzobject.h>

namespace {

constexpr const char* genesis8 = "/data/Daz 3D/Genesis 8/Female/Genesis8Female.dsf";
constexpr const char* genesis9 = "/data/Daz 3D/Genesis 9/Base/Genesis9.dsf";

class DesktopShapers : public DesktopTest {
protected:
    void SetUp() override
    {
        DesktopTest::SetUp();
        start();
    }
    /// A figure that is pushed outwards by half a centimetre, as a saved scene would have it.
    DzFigure& openPushed(const char* label, const std::string& figure)
    {
        const std::string id = std::filesystem::path(figure).stem().string();
        std::string address = figure;
        for (std::size_t at; (at = address.find(' ')) != address.npos;)
            address.replace(at, 1, "%20");
        const std::string url = R"("url": ")" + address + "#" + id;
        const QString file = _folder.filePath(QLatin1String(label) + QLatin1String(".duf"));
        WriteBytes(file.toStdString(), R"({"file_version": "0.6.0.0",
            "asset_info": {"id": "/People/x.duf", "type": "character"},
            "modifier_library": [{"id": "M", "name": "M", "label": "Even out", "parent": "#g", "extra": [
                {"type": "studio/modifier/push"}, {"type": "studio_modifier_channels", "channels": [{"channel":
                    {"id": "Value", "name": "Value", "type": "float", "value": 0.5}}]}]}],
            "scene": {"nodes": [{"id": "n", "label": ")" +
                                           std::string(label) + R"(", )" + url +
                                           R"(", "geometries": [{"id": "g", )" + url + R"(-1"}]}],
                "modifiers": [{"id": "M-1", "url": "#M", "parent": "#g"}]}})");
        EXPECT_TRUE(desktop->files().openFile(file));
        return *qobject_cast<DzFigure*>(dzScene->getPrimarySelection());
    }
    void loadBoth()
    {
        source = &openPushed("Vera", genesis8);
        qobject_cast<DzMorph*>(source->getObject()->findModifier(QStringLiteral("Wide")))
            ->getValueChannel()
            ->setValue(1.0f);
        target = &openPushed("Nine", genesis9);
    }
    /// What is told of meshes while the dialog for both is answered.
    std::vector<std::string> toldWhile(const std::function<void(QWidget&)>& answer)
    {
        const openhost::DiagnosticsCollector met(dzApp->diagnostics());
        click(*source);
        click(*target, Qt::ControlModifier);
        ModalAnswer dialog(answer);
        QTest::keyClick(&window(), Qt::Key_C, Qt::ControlModifier | Qt::AltModifier);
        EXPECT_TRUE(dialog.seen);
        std::vector<std::string> told;
        for (const base::Diagnostic& diagnostic : met.all())
            if (diagnostic.what.find("moves the mesh") != std::string::npos)
                told.push_back(diagnostic.asset + ": " + diagnostic.what);
        return told;
    }

    /// What a conversion has to say stays open.
    static void closeDialogs()
    {
        for (QWidget* const widget : QApplication::topLevelWidgets())
            if (widget->isVisible() && qobject_cast<QDialog*>(widget))
                widget->close();
        window().activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window()));
    }

    const std::vector<std::string> both{
        "Vera: the modifier \"Even out\" moves the mesh, and the new morphs hold what it does",
        "Nine: the modifier \"Even out\" moves the mesh, and the new morphs may hold some of what it does"};
    DzFigure* source = nullptr;
    DzFigure* target = nullptr;

private:
    QTemporaryDir _folder;
};

} // namespace

TEST_F(DesktopShapers, are_told_when_a_conversion_takes_them_for_shapes)
{
    loadBoth();
    EXPECT_EQ(toldWhile(Press("Convert")), both);
}

TEST_F(DesktopShapers, are_told_again_when_the_same_morphs_get_another_shape)
{
    loadBoth();
    toldWhile(Press("Convert"));
    closeDialogs();
    const int count = target->getObject()->getNumModifiers();
    EXPECT_EQ(toldWhile(Press("Convert")).size(), 2u);
    EXPECT_EQ(target->getObject()->getNumModifiers(), count);
}

TEST_F(DesktopShapers, are_not_told_when_the_dialog_is_cancelled)
{
    loadBoth();
    EXPECT_EQ(toldWhile(Press("Cancel")), std::vector<std::string>());
}
