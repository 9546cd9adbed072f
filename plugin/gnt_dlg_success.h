// What is told after a conversion: the new morphs, their dials, and a way to save them.
// SPDX-License-Identifier: MIT

#pragma once

#include "gnt_params.h"
#include "ks_dlg_base.h"

#include <memory>
#include <string_view>
#include <vector>

/// Shows itself without blocking and deletes itself when it is closed. The figures and their morphs may go
/// while it is open: the row of a morph that is gone is disabled. It opens beside those that are open
/// already.
class GntSuccessDialog : public kst::DialogBase {
    Q_OBJECT

public:
    /// @param parent   owns the dialog, which may close before it; null for a window of its own
    /// @param params   of the conversion; never null
    /// @param created  one row each; the list is copied
    /// @param elapsed  the time taken, for the user, such as "12 seconds"
    /// @param note     HTML below the introduction; empty when there is nothing to add
    /// @throws kst::Exception  the host has no content manager
    static GntSuccessDialog* Create(QWidget* parent, std::shared_ptr<GntParams> params,
                                    const std::vector<GntCreatedMorph>& created, std::string_view elapsed,
                                    std::string_view note);
    ~GntSuccessDialog() override;

    void done(int result) override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;

private slots:
    void slotPropertyValueChanged();
    void slotPropertyRemoved();
    void slotNameChanged();

private:
    GntSuccessDialog(QWidget* parent, std::shared_ptr<GntParams> params,
                     const std::vector<GntCreatedMorph>& created, std::string_view elapsed,
                     std::string_view note);

    class Impl;
    const std::unique_ptr<Impl> _pImpl;
};
