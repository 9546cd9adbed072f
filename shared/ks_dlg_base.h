// The base of every dialog.
// SPDX-License-Identifier: MIT

#pragma once

#include <string_view>

#include <QDialog>
#include <QString>

class DzAppSettings;
class QDialogButtonBox;
class QPushButton;
class QVBoxLayout;

namespace kst {

/// A dialog with the product's window title and margins that remembers where it stood, on acceptance and on
/// rejection alike.
class DialogBase : public QDialog {
    Q_OBJECT

public:
    explicit DialogBase(QWidget* parent);
    ~DialogBase() override;

    /// Remembers the window's geometry, then closes.
    void accept() override;
    void reject() override;

    /// Shows the critical box over this dialog, with a log line.
    void criticalBox(std::string_view heading, std::string_view message);

    /// Title, margins and remembered geometry. Call it once, from the constructor, when the form is set up.
    /// @param title  UTF-8; null for the product's title alone
    /// @param group  settings group path; empty when nothing is remembered
    /// @param key    under the group; empty when nothing is remembered
    void initCommon(const char* title, const QString& group, const QString& key);
    /// @param withoutHelpButton  takes the context help button from the title bar, otherwise the close button
    void setOurWindowTitle(const char* title, bool withoutHelpButton);

    /// The window's geometry is kept as text under a key in a settings group.
    void setWindowPosSettingsKey(const QString& group, const QString& key);
    /// @param pSettings  where to keep it; null for the stored group
    void saveWindowPos(DzAppSettings* pSettings);
    void restoreWindowPos(DzAppSettings* pSettings);

    /// @param pCancel  may be null
    void connectOkAndCancelButtons(QPushButton* pOk, QPushButton* pCancel);
    void connectButtonBox(QDialogButtonBox* pBox);
    /// Appends a row with Cancel and OK at the right edge; OK is the default. The row belongs to the dialog.
    /// @param cancelText  empty for a row with OK alone
    void createAndConnectStandardButtons(QVBoxLayout& layout, std::string_view okText,
                                         std::string_view cancelText);

    /// Makes the window as small as its layout likes it.
    void shrinkToFit();
    /// Gives the layout the margins and the spacing of the host's own dialogs.
    void dazzifyLayout();

private:
    void setLayoutMargins(int margin);

    QString _settingsGroup;
    QString _settingsKey;
};

} // namespace kst
