// The desktop application's window in German.
// SPDX-License-Identifier: MIT

#pragma once

#include "apps/desktop/languages.h"
#include "tests/desktop/desktop_fixture.h"

#include <QCoreApplication>
#include <QTranslator>

class GermanDesktop : public DesktopTest {
protected:
    void TearDown() override
    {
        for (QTranslator* const translator : qApp->findChildren<QTranslator*>())
            delete translator; // which takes it out
        DesktopTest::TearDown();
    }
    void restartInGerman()
    {
        ASSERT_TRUE(desktop::TranslatedLanguages().contains(QStringLiteral("de")))
            << "built without lrelease, which scripts/setup installs";
        desktop::Translate(QStringLiteral("de"));
        restart();
    }
};
