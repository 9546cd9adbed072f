// Two figures to convert, with the dialog that asks about it.
// SPDX-License-Identifier: MIT

#pragma once

#include "gnt_dlg_convert.h"
#include "tests/host/host_fixture.h"

#include <QString>

#include <dzappsettings.h>

class DzFigure;
class DzFloatProperty;
class DzFloatSlider;
class QCheckBox;
class QToolButton;

/// The small library's figures as source "Vera" and target "Nova", the source standing 5 cm higher, and no
/// remembered settings.
class ConvertDialogTest : public HostTest {
protected:
    void SetUp() override;
    void TearDown() override;

    /// Opens the dialog anew.
    GntConvertDialog& open(std::size_t activeMorphCount = 1, const char* defaultMorphName = "Foo");
    /// Also reads the selected figures anew, as the next run does.
    GntConvertDialog& openInNextRun();

    template <class Widget>
    Widget& widget(const char* name) const
    {
        return *dialog->findChild<Widget*>(QLatin1String(name));
    }
    QString text(const char* lineEdit) const;
    void type(const char* lineEdit, const char* newText);
    void click(const char* checkOrRadioOrButton);

    // A dial, by its row.
    DzFloatSlider& slider(int row) const;
    QToolButton& dialButton(int row, const char* name) const;
    DzFloatProperty& dial(int row) const;

    /// Where the tops of the two figures are; cm.
    static float top(const DzFigure& figure);
    bool isMatched() const;
    /// Runs the event loop for so long that a waiting height matching would have come.
    static void waitForMatching();

    /// The first tool button of a layout.
    QToolButton& toolButton(const char* layoutName) const;

    static bool isStored(const char* key);

    DzAppSettings settings{QStringLiteral("Kestrom's Gantrel")};
    DzFigure* source = nullptr;
    DzFigure* target = nullptr;
    std::shared_ptr<GntParams> params;
    std::unique_ptr<GntConvertDialog> dialog; ///< the one opened last
};
