// The desktop application's window, with a small library.
// SPDX-License-Identifier: MIT

#pragma once

#include "apps/desktop/desktop_attendant.h"
#include "apps/desktop/desktop_options.h"
#include "apps/desktop/desktop_window.h"
#include "tests/host/host_fixture.h"

#include <QStringList>

#include <memory>

class DzFigure;
class DzMainWindow;
class DzPane;
class QAction;
class QTreeWidget;
class QTreeWidgetItem;

constexpr const char* sourceFile = "People/Genesis 8 Female/Developer Kit/Genesis 8 Female Dev Load.duf";
constexpr const char* targetFile = "People/Genesis 9/Genesis 9.duf";

/// Nothing is remembered at the beginning of a test; the module is loaded once and stays.
class DesktopTest : public HostTest {
protected:
    void SetUp() override;
    void TearDown() override;

    /// Shows the window and starts with the small library as content and with the plug-in.
    void start();
    void start(const desktop::Options& options);
    desktop::Options smallLibrary() const;
    /// Another run of the program, which finds what this one remembers.
    void restart();

    /// Into the scene.
    /// @param file  of the small library
    DzFigure& openFigure(const char* file);

    static DzMainWindow& window();
    static DzPane& pane(const char* className);
    static QStringList menuTitles();
    static QAction* entry(const char* text); ///< of a menu, without its mnemonic; null for none
    static QTreeWidget& sceneTree();
    static QTreeWidgetItem* sceneItem(const DzNode& node);
    static void click(const DzNode& node, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    static QString pathOf(const char* relative); ///< in the small library

    desktop::DesktopAttendant attendant;
    openhost::AttendantOverride answering{attendant};
    std::unique_ptr<desktop::DesktopWindow> desktop;
};

/// Chooses a file in the toolkit's own file dialog, as a user who types.
std::function<void(QWidget&)> TypeFile(const QString& file);
