// The small library in the host of a test.
// SPDX-License-Identifier: MIT

#include "tests/plugin/mini_scene.h"

#include "dzcontentmgr.h"
#include "dzfigure.h"
#include "tests/host/host_fixture.h"
#include "tests/plugin/mini_library.h"

void AddMiniLibrary()
{
    static const std::filesystem::path library = [] {
        const std::filesystem::path path = TestFolder().toStdString() + "/mini";
        WriteMiniLibrary(path);
        return path;
    }();
    qputenv("TMPDIR", TestFolder().toUtf8());
    dzApp->getContentMgr()->addContentDirectory(QString::fromStdString(library.string()), false);
}

DzFigure& LoadMini(const char* relativePath)
{
    DzContentMgr& content = *dzApp->getContentMgr();
    EXPECT_TRUE(content.openFile(content.getAbsolutePath(QLatin1String(relativePath), true), true))
        << LogText().toStdString();
    return *qobject_cast<DzFigure*>(dzScene->getPrimarySelection());
}
