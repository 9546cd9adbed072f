// The parts of the success dialog and how they work together.
// SPDX-License-Identifier: MIT

#pragma once

#include "gnt_dlg_success.h"
#include "ks_app-setting.h"
#include "ks_ctl_slider.h"
#include "ks_gui_button.h"
#include "ks_gui_check_radio.h"
#include "ks_property-setting.h"

#include "ui_gnt_dlg_success.h"

#include <string>

#include <QPointer>

#include <dzappsettings.h>
#include <dzcontentmgr.h>
#include <dzfigure.h>
#include <dzfloatproperty.h>

class GntSuccessDialog::Impl {
public:
    struct MorphRow;

    Impl(GntSuccessDialog& dialog, std::shared_ptr<GntParams> params,
         const std::vector<GntCreatedMorph>& created);

    void showIntro(std::string_view elapsed, std::string_view note);
    void addMorphList(GntSuccessDialog& dialog);
    void initSaving(GntSuccessDialog& dialog);
    void orderFocus();
    void watchLines(GntSuccessDialog& dialog);
    /// The return key saves from within the two lines, and closes elsewhere.
    void chooseDefaultButton(const QObject* widget, const QEvent& event);
    /// Makes the window, remembered or not, high enough for its present text.
    void growToFit(GntSuccessDialog& dialog);
    void enableDisableControls();
    /// Marks the names that saving needs and that are empty.
    void markMissingNames();

    /// The row of a float property, which the sender must be; null for one that is not listed.
    MorphRow* findSender(const QObject* sender) const;
    void followProperty(const QObject* sender);
    void onSaveMorphsButtonClicked(const std::shared_ptr<GntParams>& params, GntSuccessDialog& dialog);

    Ui_SuccessDialog ui;

private:
    /// Whose change is under way between a morph and its dial.
    enum UpdateMark : int { Idle = 0, FollowingProperty = 1, MovingDial = 2 };
    class MarkWhile;

    void addMorphRow(GntSuccessDialog& dialog, QGridLayout& grid, const GntCreatedMorph& morph);
    void addDial(MorphRow& row);
    void onDialMoved(MorphRow& row, float value);
    /// On its rows' dials, which are several when jobs shared a name, but for the one that the user moves.
    void showValue(const DzFloatProperty& property, const MorphRow* moved);
    void initContentLibraries();
    std::vector<QWidget*> saveControls() const;

    const std::shared_ptr<GntParams> _params;
    const std::vector<GntCreatedMorph> _created;
    const QPointer<DzFigure> _target; ///< tells when the figure is gone
    DzAppSettings _settings;
    kst::StringAppSetting _lastContentLibrary;
    kst::StringAppSetting _lastVendorName;
    kst::StringAppSetting _lastProductName;
    DzContentMgr& _contentManager;
    std::vector<std::unique_ptr<MorphRow>> _rows;
    kst::ButtonHandler _saveHandler;
    QPushButton* _closeButton = nullptr;
    UpdateMark _updateMark = Idle;
};

/// A created morph with what its row of the list is made of.
struct GntSuccessDialog::Impl::MorphRow {
    DzFloatProperty* property; ///< null when the host has removed it
    std::shared_ptr<kst::FloatPropertySetting> setting;
    std::shared_ptr<kst::FloatSliderController> dial;
    QCheckBox* box = nullptr;
    QHBoxLayout* dialLayout = nullptr;
    QPushButton* showButton = nullptr;
    kst::CheckBox boxHandler;
    kst::ToolButtons dialButtons;
    kst::ButtonHandler showHandler;

    /// What can have the focus, in reading order.
    std::vector<QWidget*> controls() const;
    void disable();
};
