// The parts of the convert dialog and how they work together.
// SPDX-License-Identifier: MIT

#pragma once

#include "gnt_dlg_convert.h"
#include "ks_app-setting.h"
#include "ks_ctl_checkbox.h"
#include "ks_ctl_flag-set.h"
#include "ks_ctl_slider.h"
#include "ks_gui_button.h"
#include "ks_gui_check_radio.h"
#include "ks_timer.h"

#include "ui_gnt_dlg_convert.h"

#include <array>

class QToolButton;

namespace kst {
class FloatPropertySetting;
}

class GntConvertDialog::Impl {
public:
    class MorphPathControl;

    Impl(GntConvertDialog& owner, GntParams& runParams, DzAppSettings& appSettings);
    ~Impl();

    void showIntro(std::size_t activeMorphCount);
    void showNames(std::string_view defaultMorphName);
    /// Stores the user's choices.
    void commit();
    /// Puts the target's dials back to where they were when the dialog opened.
    void restoreDials();

    Ui_ConvertFigureDialog ui;
    GntConvertDialog& dialog;
    GntParams& params;
    DzAppSettings& settings;
    std::vector<std::shared_ptr<kst::FloatSliderController>> dials; ///< in row order
    std::shared_ptr<kst::FloatSliderController> pHeightDial;        ///< one of them
    std::unique_ptr<kst::Timer> pTimer; ///< of the first height matching, as long as that may come
    kst::BoolAppSetting autoAdjust;
    std::unique_ptr<kst::CheckBoxController> pAutoAdjustController;
    kst::FlagAppSetting<GntJobFlag> lastJobFlags;
    kst::FlagSetController<GntJobFlag> jobFlagsController;
    kst::RadioGroup<GntResolution> resolutionGroup;
    kst::ToolButtons toolButtons;
    int subdLevel = 0; ///< of the source
    std::vector<MorphPathControl> morphPaths;

private:
    struct Dial {
        std::string label; ///< UTF-8, plain
        std::shared_ptr<kst::FloatPropertySetting> pSetting;
    };
    static const int dialCount = 4;
    typedef std::array<Dial, dialCount> Dials;

    Dials listDials() const;
    std::string makeDialHelp(const Dials& rows) const;

    void initBases();
    void addDial(const Dial& dial, std::string_view help);
    QHBoxLayout& dialRow(int row) const;
    QToolButton& addHeightButton();
    /// Leaves as much room behind the other rows as the last one's additional button takes.
    void alignRows(const QToolButton& lastButton);
    void initAutoAdjust();
    void setAutoAdjust(bool on);
    void matchHeight();

    void initJobs();
    void addMorphPath(QHBoxLayout& row, QLineEdit& edit, const char* job);
    void pickMorphPath(QLineEdit& edit, kst::StringAppSetting& setting);
    void enableConvert();

    void initResolutions();
    GntResolution readSourceResolution();

    void setUpButtons();
    void orderTabs();
};

/// One row's path: typed, or picked with the button that is put behind it.
class GntConvertDialog::Impl::MorphPathControl {
public:
    MorphPathControl(Impl& impl, QHBoxLayout& row, QLineEdit& edit,
                     std::shared_ptr<kst::StringAppSetting> pSetting);

    std::string getPath() const; ///< UTF-8, as typed
    void acceptValue();
    QWidget& getButton() const;

private:
    QHBoxLayout& _row;
    QLineEdit& _edit;
    std::shared_ptr<kst::StringAppSetting> _pSetting;
};
