// A converted figure, with the dialog that tells of it.
// SPDX-License-Identifier: MIT

#pragma once

#include "gnt_dlg_success.h"
#include "tests/host/host_fixture.h"

#include <QPointer>

class DzFigure;
class DzFloatSlider;
class DzMorph;
class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QToolButton;

/// The small library's figures as source "Vera" and target "Nova", and no remembered settings.
class SuccessDialogTest : public HostTest {
protected:
    void SetUp() override;
    void TearDown() override;

    /// Adds a morph with a vertex of its own to the target; its dial runs from 0 to 1.
    DzMorph& addMorph(const char* name);
    /// Opens the dialog on new morphs of these names.
    GntSuccessDialog& open(const std::vector<const char*>& names, const char* note = "");
    /// On the morphs that the last dialog had.
    GntSuccessDialog& openAgain(const char* note = "");

    QLabel& intro() const;
    QGroupBox& morphGroup() const;
    // A row of the morph list, by its number.
    QCheckBox& box(int row) const;
    DzFloatSlider& slider(int row) const;
    QPushButton& showButton(int row) const;
    QToolButton& dialButton(int row, const char* text) const;
    DzFloatProperty& dial(int row) const;

    QComboBox& library() const;
    QLineEdit& vendor() const;
    QLineEdit& product() const;
    QCheckBox& compress() const;
    QPushButton& saveButton() const;
    /// All five controls of the saving; fails when they differ.
    bool canSave() const;
    QPushButton& closeButton() const;
    void clickBox(int row) const;

    static QString stored(const char* key);
    static void store(const char* key, const QString& value);

    DzFigure* source = nullptr;
    DzFigure* target = nullptr;
    std::shared_ptr<GntParams> params;
    std::vector<GntCreatedMorph> created;
    QPointer<GntSuccessDialog> dialog; ///< the one opened last

private:
    template <class Widget>
    Widget& inRow(int row, int column) const;
};
