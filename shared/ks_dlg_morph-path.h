// A picker for the property-group path of a new morph.
// SPDX-License-Identifier: MIT

#pragma once

#include "ks_dlg_morph-base.h"

#include <memory>
#include <string>
#include <string_view>

namespace kst {

/// Modal; exec() tells whether the user chose a path. Changes nothing by itself.
class MorphPathDialog : public MorphPathDialogBase {
    Q_OBJECT

public:
    /// @param node          whose paths are offered; borrowed, and read only here
    /// @param initialPath   UTF-8; selected at first, whether the node has it or not; may be empty
    /// @param windowPosKey  settings key of the window's geometry
    MorphPathDialog(QWidget* parent, DzNode& node, std::string_view initialPath, const char* windowPosKey);
    ~MorphPathDialog() override;

    std::string getPropertyPathFromLineEdit() const; ///< UTF-8, as it stands there

protected:
    void enableDisableWidgets() override;

private:
    void addRule();
    void makeRoom(int formWidth);

    class Impl;
    std::unique_ptr<Impl> _pImpl;
};

} // namespace kst
