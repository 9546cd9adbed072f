// Whole conversions through the product's own dialogs.
// SPDX-License-Identifier: MIT

#pragma once

#include "gnt_dlg_success.h"
#include "tests/host/host_fixture.h"

#include <QPointer>
#include <QTemporaryDir>

#include <functional>
#include <string>

class DzFigure;
class DzFloatProperty;
class DzFloatSlider;
class DzMorph;
class QAbstractButton;
class QLineEdit;

/// What is entered in the convert dialog; what is left out stays as the dialog shows it.
struct Wish {
    struct Row {
        bool isWanted = false;
        QString name; ///< null for the one that is shown; empty is a name too
        QString path;
    };
    Row full, head, body;
    std::function<void(QWidget&)> before; ///< looks at the dialog before anything is entered
    std::function<void(QWidget&)> after;  ///< and at the end
};

/// A shape that is made for the full figure alone.
Wish FullFigure(const char* name);

/// The small library's figures, the source being "Vera" with the dial Wide at 1, nothing remembered, and an
/// empty content library of the test's own.
class DialogUseTest : public HostTest {
protected:
    void SetUp() override;
    void TearDown() override;

    /// Selects both figures and converts as the menu action does.
    /// @return the dialog that tells of it; null when there is none
    GntSuccessDialog* convert(const Wish& wish);
    QString boxText; ///< of the message box that the last conversion ended with; empty for none

    static void selectOnly(std::initializer_list<DzFigure*> figures);
    static DzMorph* morphOf(const DzFigure& figure, const QString& name);
    static int countMorphs(const DzFigure& figure);
    /// The longest move of a vertex by a dial at 1; cm.
    static float reach(DzFigure& figure, DzFloatProperty& dial);

    // Parts of a success dialog.
    static QAbstractButton& box(const QWidget& dialog, int row);
    static DzFloatSlider& slider(const QWidget& dialog, int row);
    /// Presses Save morph assets and the box that follows.
    /// @return the box's text
    static QString save(QWidget& dialog);

    template <class Widget>
    static Widget& named(const QWidget& dialog, const char* name)
    {
        auto* const widget = dialog.findChild<Widget*>(QLatin1String(name));
        if (!widget)
            throw std::out_of_range(name);
        return *widget;
    }
    static void type(QLineEdit& line, const QString& text);
    static QStringList filesIn(const QString& folder); ///< relative, also hidden ones

    QString own() const { return _folder.path(); }

    DzFigure* source = nullptr;
    DzFigure* target = nullptr;

private:
    void note(QWidget& window, const Wish& wish, bool& isAsked);

    QTemporaryDir _folder;
};
