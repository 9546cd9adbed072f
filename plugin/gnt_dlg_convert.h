// What is asked before a conversion: which morphs to make, under what names, and against which bases.
// SPDX-License-Identifier: MIT

#pragma once

#include "gnt_params.h"
#include "ks_dlg_base.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <QSize>

class DzAppSettings;

/// Modal. Its dials move the target figure at once; rejecting the dialog puts them back. Which morphs to
/// make, and their paths, are remembered for the next run when it is accepted. Reports nothing itself: what
/// the host throws passes to the caller.
class GntConvertDialog : public kst::DialogBase {
    Q_OBJECT

public:
    class Impl;

    /// @param params             of the run; borrowed, as are its figures
    /// @param activeMorphCount   morphs of the source that are dialed in
    /// @param defaultMorphName   UTF-8; also begins the names of head and body
    /// @param settings           where the choices are remembered; must outlive the dialog
    GntConvertDialog(QWidget* parent, GntParams& params, std::size_t activeMorphCount,
                     std::string_view defaultMorphName, DzAppSettings& settings);
    ~GntConvertDialog() override;

    // The user's decisions, once the dialog is accepted. Lists hold one value a job, by GntJobIndex.

    std::vector<std::string> getMorphNames() const; ///< UTF-8, as typed
    std::vector<std::string> getMorphPaths() const; ///< UTF-8, as typed
    int getJobs() const;                            ///< the bits of GntJobFlag, as they were remembered
    /// @param subd  receives the source's subdivision level; 0 for base resolution
    GntResolution getBaseOrHighResolution(int& subd) const;
    bool getDebugSteps() const; ///< false: the user is never asked about single steps

    /// As high as the introduction needs at that width.
    QSize sizeHint() const override;
    void accept() override;
    void reject() override;

private:
    std::unique_ptr<Impl> _pImpl;
};
